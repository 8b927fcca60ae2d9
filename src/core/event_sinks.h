// The sinks of one root, in the order in which they were advised. An unadvised sink leaves an
// empty entry, so cookies stay valid and a sink may unadvise itself while it is being called.
#pragma once

#include <cstdint>
#include <vector>

#include <qvr/events.h>

#include "core/object_types.h"

namespace qvr {

class EventSinks {
public:
    // `side` names the freeze flag that silences this root's sinks.
    explicit EventSinks(EventSide side) : side_(side) {}
    ~EventSinks();
    EventSinks(const EventSinks&) = delete;
    EventSinks& operator=(const EventSinks&) = delete;

    // Whether any root of the process has a sink: when none has, an event reaches no one, and
    // whoever fires may skip making what the event would carry.
    static bool anyAdvised();

    // `held`: the entry keeps a counted reference; otherwise the sink must unadvise before it
    // goes. Cookies count from 1.
    HRESULT advise(IQVRCatalogEvents* sink, bool held, std::uint32_t* cookie);
    // CONNECT_E_NOCONNECTION for a cookie that names no sink.
    HRESULT unadvise(std::uint32_t cookie);

    // A root's fireEvent: `result` true, then delivery by number.
    HRESULT fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position,
                 VARIANT_BOOL* result);
    // Delivery by number without the out value: how a root fires its own changes directly.
    void deliver(std::int32_t event, IQVRCatalogObject* subject, const Variant& position);

private:
    struct Entry {
        Ref<IQVRCatalogEvents> held;
        IQVRCatalogEvents* listener = nullptr;
        IQVRCatalogEvents* sink() const { return held ? held.get() : listener; }
    };
    template <class Call>
    void each(const Call& call);

    std::vector<Entry> entries_;
    EventSide side_;
};

} // namespace qvr
