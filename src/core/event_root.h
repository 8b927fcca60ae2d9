// What a root of the model (the catalog, or a table) offers to the routing of events and to the
// live lists: its sinks. Both roots implement it beside their public interface, whose fireEvent,
// advise and unadvise are these same operations.
#pragma once

#include <cstdint>

#include <qvr/events.h>

namespace qvr {

class IEventRoot {
public:
    // Delivers `event` to this root's sinks; `result` is set to true first.
    virtual HRESULT fireEvent(std::int32_t event, IQVRCatalogObject* subject,
                              const Variant& position, VARIANT_BOOL* result) = 0;
    // A sink the root holds (counted) until unadvise.
    virtual HRESULT advise(IQVRCatalogEvents* sink, std::uint32_t* cookie) = 0;
    virtual HRESULT unadvise(std::uint32_t cookie) = 0;
    // A sink the root does not keep alive: a live list, which itself holds the root and leaves
    // before it dies. Holding it would make a cycle through the list's owner.
    virtual HRESULT adviseListener(IQVRCatalogEvents* sink, std::uint32_t* cookie) = 0;

protected:
    ~IEventRoot() = default;
};

} // namespace qvr
