// The template that makes a class of the model out of its interface and its object type. The
// rows of the tables in core/object_types.h for that type decide which form each of the sixteen
// common operations takes (container or not, last child guard, key family, event routing), so
// a class declares only what is its own, as the recipe of a const view does:
//
//   class CQVRTableRecipe final : public CatalogObject<IQVRTableRecipe, qvrRecipe> {
//   public:
//       ...
//       HRESULT put_path(const String& path) override {
//           return accessors::putReferenceText(*this, path);
//       }
//   };
//
// and one row in the factory's tag table (server/tag_table.cpp). A class whose common
// operation departs from the tables overrides it (Chapter's cloneNode, Part's removeChild).
// Classes whose key family is OwnOperation override keyFromOwnOperation.
#pragma once

#include <qvr/object.h>

#include "core/object_frame.h"
#include "platform/com/object_base.h"

namespace qvr {

template <class Interface, QVRObjectType Type>
class CatalogObject : public ObjectBase<Interface, ISupportErrorInfo>, public ObjectFrame {
public:
    static constexpr ClassInfo info = qvr::classInfo(Type);
    static constexpr bool isContainer = hasContainerRow(Type);

    CatalogObject() : ObjectFrame(info, Interface::iid) {}

    // --- IQVRCatalogObject ------------------------------------------------------------------
    HRESULT getValue(const String& xpath, Variant* value) override {
        return baseGetValue(xpath, value);
    }
    HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                         Ref<IQVRCatalogObject>* inserted) override {
        if constexpr (isContainer)
            return containerInsertBefore(newChild, position, inserted);
        else
            return baseInsertBefore(newChild, inserted);
    }
    HRESULT appendChild(IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted) override {
        return this->insertBefore(newChild, Variant(), inserted);
    }
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override {
        if constexpr (isContainer)
            return containerRemoveChild(child, removed,
                                        lastChildGuard(Type) == LastChildGuard::Yes);
        else
            return S_FALSE; // nothing to remove, and the out value is left alone
    }
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override {
        return baseCloneNode(deep, clone);
    }
    HRESULT contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) override {
        return baseContains(object, isDescendant);
    }
    HRESULT get_key(String* key) override { return baseGetKey(key); }
    HRESULT get_objectType(QVRObjectType* type) override { return baseObjectType(type); }
    HRESULT get_childNodes(Ref<IQVRCatalogObjectList>* list) override {
        if constexpr (isContainer)
            return containerChildNodes(list);
        else
            return baseChildNodes(list);
    }
    HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) override {
        return baseGetCatalog(catalog);
    }
    HRESULT putref_catalog(IQVRCatalogObject* catalog) override { return basePutCatalog(catalog); }
    HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) override {
        return baseGetParent(parent);
    }
    HRESULT putref_parentNode(IQVRCatalogObject* parent) override { return basePutParent(parent); }
    HRESULT get_domNode(Ref<IXMLDOMElement>* node) override { return baseDomNode(node); }
    HRESULT getDataObject(Ref<IDataObject>* dataObject) override {
        return baseDataObject(dataObject);
    }
    HRESULT getReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) override {
        return baseReferencedFiles(flag, files);
    }

    // --- ISupportErrorInfo: the class's own interface and the common one --------------------
    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override {
        return iid == Interface::iid || iid == IQVRCatalogObject::iid ? S_OK : S_FALSE;
    }

    IQVRCatalogObject* self() override { return static_cast<Interface*>(this); }
};

} // namespace qvr
