// Links and media: the groups of images, links and documents that a catalog, a chapter or a part
// can carry. The interfaces stand here so that their holders can hand them out; each gains its
// own operations when its class is built.
#pragma once

#include <qvr/object.h>

namespace qvr {

class QVR_API IQVRCatalogImages : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogImages)
};

class QVR_API IQVRCatalogLink : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogLink)
};

class QVR_API IQVRCatalogDocuments : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogDocuments)
};

class QVR_API IQVRCatalogURL : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogURL)
};

class QVR_API IQVRCatalogImage : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogImage)
};

// The files a view's drawings refer to.
class QVR_API IQVRCatalogReferencedFiles : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogReferencedFiles)
};

} // namespace qvr
