// Classification and extrinsics: a part's classes by domain, and the named extra data that any
// element can carry. The interfaces stand here so that their holders can hand them out; each
// gains its own operations when its class is built.
#pragma once

#include <qvr/object.h>

namespace qvr {

class QVR_API IQVRCatalogClassifications : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogClassifications)
};

class QVR_API IQVRCatalogExtrinsics : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogExtrinsics)
};

} // namespace qvr
