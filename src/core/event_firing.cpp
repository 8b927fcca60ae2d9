#include "core/event_firing.h"

#include <atomic>

#include "core/event_root.h"
#include "core/event_sinks.h"

namespace qvr {
namespace {

// Atomic only so that two threads working on two catalogs are no data race; the model itself
// runs on one thread and reads the flags as plain switches.
std::atomic<bool> freezeCatalogEvents{false};
std::atomic<bool> freezeTableEvents{false};

std::atomic<bool>& flagOf(EventSide side) {
    return side == EventSide::Catalog ? freezeCatalogEvents : freezeTableEvents;
}

HRESULT objectTypeOf(IQVRCatalogObject* object, QVRObjectType* type) {
    return object ? object->get_objectType(type) : E_POINTER;
}

VARIANT_BOOL fireAtRoot(IQVRCatalogObject* root, std::int32_t event, IQVRCatalogObject* subject,
                        const Variant& position) {
    auto* sinks = detail::interfaceCast<IEventRoot>(root);
    VARIANT_BOOL result = VARIANT_FALSE;
    if (sinks) sinks->fireEvent(event, subject, position, &result);
    return result;
}

VARIANT_BOOL route(EventSide side, std::int32_t event, IQVRCatalogObject* source,
                   IQVRCatalogObject* subject, const Variant& position) {
    if (eventsFrozen(side) || !source || !EventSinks::anyAdvised()) return VARIANT_FALSE;
    Ref<IQVRCatalogObject> catalog;
    if (FAILED(source->get_catalog(&catalog))) return VARIANT_FALSE;
    QVRObjectType type;
    if (FAILED(objectTypeOf(catalog, &type))) return VARIANT_FALSE;
    if (type == qvrCatalog) return fireAtRoot(catalog, event, subject, position);
    if (type != qvrTable) return VARIANT_FALSE;
    // A table answers get_catalog with its catalog when attached, with itself when alone: either
    // way that answer is the root whose sinks hear the event.
    Ref<IQVRCatalogObject> root;
    if (FAILED(catalog->get_catalog(&root)) || FAILED(objectTypeOf(root, &type)))
        return VARIANT_FALSE;
    if (type != qvrCatalog && type != qvrTable) return VARIANT_FALSE;
    return fireAtRoot(root, event, subject, position);
}

} // namespace

bool eventsFrozen(EventSide side) {
    return flagOf(side).load(std::memory_order_relaxed);
}

EventFreeze::EventFreeze() {
    freezeCatalogEvents = true;
    freezeTableEvents = true;
}
EventFreeze::~EventFreeze() {
    freezeCatalogEvents = false;
    freezeTableEvents = false;
}

VARIANT_BOOL fireObjectEvent(std::int32_t event, IQVRCatalogObject* source,
                             IQVRCatalogObject* subject, const Variant& position) {
    return route(EventSide::Catalog, event, source, subject, position);
}

VARIANT_BOOL fireObjectEventTable(std::int32_t event, IQVRCatalogObject* source,
                                  IQVRCatalogObject* subject, const Variant& position) {
    return route(EventSide::Table, event, source, subject, position);
}

} // namespace qvr
