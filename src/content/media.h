// The containers of links and media. Link, Image, Document and a view's XRefFiles hold URLs, one
// per language; Images and Documents hold images and documents side by side. What they accept,
// how a duplicate language is answered and that none gives up its last child stand in their
// container rows (core/object_types.h); the classes add only the names of documents.
#pragma once

#include <qvr/media.h>

#include "core/accessors.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRCatalogLink final : public CatalogObject<IQVRCatalogLink, qvrLink> {};
class CQVRCatalogImage final : public CatalogObject<IQVRCatalogImage, qvrImage> {};
class CQVRCatalogImages final : public CatalogObject<IQVRCatalogImages, qvrImages> {};
class CQVRCatalogReferencedFiles final
    : public CatalogObject<IQVRCatalogReferencedFiles, qvrReferencedFiles> {};

// A document and a group of documents both carry a `name` that an empty text removes.
template <class Interface, QVRObjectType Type>
class NamedGroup : public CatalogObject<Interface, Type> {
public:
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putClearableAttribute(*this, "name", name);
    }
};

class CQVRCatalogDocument final : public NamedGroup<IQVRCatalogDocument, qvrDocument> {};
class CQVRCatalogDocuments final : public NamedGroup<IQVRCatalogDocuments, qvrDocuments> {};

} // namespace qvr
