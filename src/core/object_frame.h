// The wrapper of one element. Fields, in this order: the catalog's cookie, the parent's cookie,
// the owner document, the element (null: not initialized), the building flag (ObjectCore), and
// the key text of the families that keep one.
//
// A wrapper holds its catalog and its parent through cookies of the process's cookie table,
// which keep them alive; a parent holds nothing of its children, so no cycle arises. Nothing of
// the document is copied into a wrapper: every read goes to the element, and two wrappers of one
// element are two objects over the same data.
#pragma once

#include <cstdint>

#include "core/object_core.h"
#include "core/object_link.h"

namespace qvr {

class ObjectFrame : public ObjectCore {
public:
    ObjectFrame(const ClassInfo& info, const IID& iid);
    ~ObjectFrame() override;

    // --- Making a wrapper ----------------------------------------------------------------------
    // Around an existing node: E_FAIL for a null node or one that is no element. Old links are
    // dropped, `catalog` (may be null) registered, document and element stored.
    HRESULT attach(IXMLDOMDocument* document, IXMLDOMNode* node, IQVRCatalogObject* catalog);
    // Around a new element of the class's tag in `document`, standing in no tree.
    HRESULT attachNew(IXMLDOMDocument* document, IQVRCatalogObject* catalog);

    IXMLDOMElement* element() const { return element_.get(); }
    IXMLDOMDocument* ownerDocument() const { return ownerDocument_.get(); }
    std::uint32_t catalogCookie() const { return catalog_.cookie(); }
    std::uint32_t parentCookie() const { return parent_.cookie(); }
    // The catalog of the cookie, or null.
    Ref<IQVRCatalogObject> catalogRef() const { return catalog_.object(); }
    // The parent of the cookie, or null.
    Ref<IQVRCatalogObject> parentRef() const { return parent_.object(); }

    // --- ObjectCore hooks for a wrapper --------------------------------------------------------
    bool initialized() const override { return element_ != nullptr; }
    HRESULT notInitialized() const override; // msgObjectNotInitialized
    HRESULT workElement(Ref<IXMLDOMElement>* element) override;
    HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
                        Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) override;
    // Routes through the firing routine of the class's side.
    void fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) override;
    // Fires qvrEventObjectChanged with this object as source and subject.
    void fireChanged();

    // --- The common operations of a wrapper ----------------------------------------------------
    // By the class's key family; OwnOperation asks keyFromOwnOperation.
    HRESULT baseGetKey(String* key) noexcept;
    // Whether the key comes from the document alone, or from a text fixed when the wrapper was
    // made: then it changes only with a change the DOM layer counts in its naming version.
    bool keyFollowsDocument() const noexcept;
    // A copy of the element standing in no tree, wrapped with this object's catalog and no
    // parent. The ids in it are those of the source.
    HRESULT baseCloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) noexcept;
    HRESULT baseGetCatalog(Ref<IQVRCatalogObject>* catalog) noexcept;
    HRESULT basePutCatalog(IQVRCatalogObject* catalog) noexcept;
    HRESULT baseGetParent(Ref<IQVRCatalogObject>* parent) noexcept;
    HRESULT basePutParent(IQVRCatalogObject* parent) noexcept;

protected:
    // KeyFamily::OwnOperation: the class's first own operation (a name, an application).
    virtual HRESULT keyFromOwnOperation(String* key);
    // Steps 1 to 4 of a clone: the element copied, `idAttribute` (if given) set to a new GUID
    // text on the copy, and the copy wrapped with this object's catalog and no parent.
    HRESULT cloneElement(VARIANT_BOOL deep, const char* idAttribute, Ref<IQVRCatalogObject>* clone);
    // KeyFamily::RowKeyOfIdref: the key a new cell was made with, until it names a row of its own.
    void setCachedKey(const String& key) { cachedKey_ = key; }

private:
    HRESULT keyOfRow(String* key);

    ObjectLink catalog_;
    ObjectLink parent_;
    Ref<IXMLDOMDocument> ownerDocument_;
    Ref<IXMLDOMElement> element_;
    String cachedKey_; // WrapperGuid, AttributeElseGuid: a GUID text from construction;
                       // RowKeyOfIdref: starts null
};

} // namespace qvr
