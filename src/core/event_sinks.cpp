#include "core/event_sinks.h"

#include <atomic>

#include "core/event_firing.h"

namespace qvr {
namespace {

using Delivery = void (*)(IQVRCatalogEvents*, IQVRCatalogObject*, const Variant&);

struct EventRow {
    std::int32_t event;
    Delivery deliver;
};

// The sink method of each event number. Any number not listed (30001 among them) arrives as an
// insertion: clients may rely on that.
constexpr EventRow eventTable[] = {
    {qvrEventObjectChanged,
     [](IQVRCatalogEvents* s, IQVRCatalogObject* o, const Variant&) { s->onObjectChanged(o); }},
    {qvrEventObjectRemoved,
     [](IQVRCatalogEvents* s, IQVRCatalogObject* o, const Variant&) { s->onObjectRemoved(o); }},
    // The query's flag tells whether the firing call had an out value, which it always has.
    {qvrEventObjectQuery, [](IQVRCatalogEvents* s, IQVRCatalogObject* o,
                             const Variant&) { s->onObjectQuery(o, VARIANT_TRUE); }},
};

constexpr Delivery insertion = [](IQVRCatalogEvents* s, IQVRCatalogObject* o, const Variant& p) {
    s->onObjectInserted(o, p);
};

Delivery deliveryOf(std::int32_t event) {
    for (const EventRow& row : eventTable)
        if (row.event == event) return row.deliver;
    return insertion;
}

// The sinks advised at all roots together.
std::atomic<std::size_t> advisedSinks{0};

} // namespace

EventSinks::~EventSinks() {
    for (const Entry& entry : entries_)
        if (entry.sink()) advisedSinks.fetch_sub(1, std::memory_order_relaxed);
}

bool EventSinks::anyAdvised() {
    return advisedSinks.load(std::memory_order_relaxed) != 0;
}

HRESULT EventSinks::advise(IQVRCatalogEvents* sink, bool held, std::uint32_t* cookie) {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!sink) return E_POINTER;
    Entry entry;
    if (held)
        entry.held = sink;
    else
        entry.listener = sink;
    entries_.push_back(std::move(entry));
    advisedSinks.fetch_add(1, std::memory_order_relaxed);
    *cookie = static_cast<std::uint32_t>(entries_.size());
    return S_OK;
}

HRESULT EventSinks::unadvise(std::uint32_t cookie) {
    if (cookie == 0 || cookie > entries_.size() || !entries_[cookie - 1].sink())
        return CONNECT_E_NOCONNECTION;
    // The entry is emptied before the reference goes: releasing a sink may run code that fires.
    Ref<IQVRCatalogEvents> released = std::move(entries_[cookie - 1].held);
    entries_[cookie - 1].listener = nullptr;
    advisedSinks.fetch_sub(1, std::memory_order_relaxed);
    return S_OK;
}

template <class Call>
void EventSinks::each(const Call& call) {
    if (eventsFrozen(side_)) return;
    // By index and with the size read at each step: a sink may advise or unadvise while it runs.
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        Ref<IQVRCatalogEvents> sink(entries_[i].sink());
        if (!sink) continue;
        try {
            call(sink.get());
        } catch (...) {
            // A sink's failure is its own affair; the next sink still hears the event.
        }
    }
}

void EventSinks::deliver(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) {
    const Delivery delivery = deliveryOf(event);
    each([&](IQVRCatalogEvents* sink) { delivery(sink, subject, position); });
}

HRESULT EventSinks::fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position,
                         VARIANT_BOOL* result) {
    if (!result) return E_POINTER;
    *result = VARIANT_TRUE;
    deliver(event, subject, position);
    return S_OK;
}

} // namespace qvr
