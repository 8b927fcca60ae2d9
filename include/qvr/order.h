// Order information of a part or a catalog. The interface stands here so that its holders can
// hand it out; it gains its own operations when its class is built.
#pragma once

#include <qvr/object.h>

namespace qvr {

class QVR_API IQVRCatalogOrderInfo : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogOrderInfo)
};

} // namespace qvr
