// How an object's change reaches the sinks: an object has no sinks of its own, so its event climbs
// to the root of its document through get_catalog. A table that stands alone is a root; a table
// attached to a catalog passes its events on to the catalog.
//
// Two process-wide flags silence every firing while a wrapper is being made or a table handed
// over. They are plain flags, not counters: whoever clears them clears them for all.
#pragma once

#include <cstdint>

#include <qvr/object.h>

#include "core/object_types.h"

namespace qvr {

// Whether the flag of `side` is set.
bool eventsFrozen(EventSide side);

// Sets both flags for its life and clears both at its end.
class EventFreeze {
public:
    EventFreeze();
    ~EventFreeze();
    EventFreeze(const EventFreeze&) = delete;
    EventFreeze& operator=(const EventFreeze&) = delete;
};

// Routes an event of `source` to the sinks of its root. The answer is the root's out value, or
// false when nothing was fired; callers have no use for it.
VARIANT_BOOL fireObjectEvent(std::int32_t event, IQVRCatalogObject* source,
                             IQVRCatalogObject* subject, const Variant& position);
// The same routing under the table's flag.
VARIANT_BOOL fireObjectEventTable(std::int32_t event, IQVRCatalogObject* source,
                                  IQVRCatalogObject* subject, const Variant& position);

} // namespace qvr
