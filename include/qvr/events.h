// Listening to a document. Every change of the model is told to the sinks advised at the root of
// its document (the catalog, or a table that stands alone), synchronously, in the middle of the
// operation that made the change, after the change itself. Sinks are called in the order in
// which they were advised; a sink that fails or throws does not keep the next one from hearing.
#pragma once

#include <cstdint>

#include <qvr/object.h>

namespace qvr {

// The event numbers, as a root's fireEvent takes them.
enum QVREventId : std::int32_t {
    qvrEventObjectInserted = 30001,
    qvrEventObjectChanged = 30002,
    qvrEventObjectRemoved = 30003,
    qvrEventObjectQuery = 30004,
};

class QVR_API IQVRCatalogEvents : public IUnknown {
public:
    QVR_INTERFACE_ID(IQVRCatalogEvents)

    // A child has been inserted; `position` is what the inserting call was given (empty for an
    // append).
    virtual HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant& position) = 0;
    // A property of `object` has changed, or one of its single children was set or removed.
    virtual HRESULT onObjectChanged(IQVRCatalogObject* object) = 0;
    // `object` has been removed from its parent.
    virtual HRESULT onObjectRemoved(IQVRCatalogObject* object) = 0;
    // Only ever sent by a client's own fireEvent with qvrEventObjectQuery.
    virtual HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL flag) = 0;
};

} // namespace qvr
