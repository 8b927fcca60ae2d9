// The template that makes a root class (the catalog, the table) out of its interface and object
// type, as CatalogObject does for the wrappers: the common operations that work the same on a
// root's document element, the sinks behind fireEvent, advise and unadvise, and the error
// information of the root's two interfaces. A root declares its life, its links, its insertions
// and its own operations.
#pragma once

#include <cstdint>

#include "core/document_root.h"
#include "core/event_root.h"
#include "platform/com/failure.h"
#include "platform/com/object_base.h"

namespace qvr {

template <class Interface, QVRObjectType Type>
class RootObject : public ObjectBase<Interface, ISupportErrorInfo>,
                   public DocumentRoot,
                   public IEventRoot {
public:
    explicit RootObject(EventSide side)
        : DocumentRoot(qvr::classInfo(Type), Interface::iid, side) {}

    IQVRCatalogObject* self() override { return static_cast<Interface*>(this); }

    // --- IQVRCatalogObject ---------------------------------------------------------------------
    HRESULT getValue(const String& xpath, Variant* value) override {
        return baseGetValue(xpath, value);
    }
    HRESULT appendChild(IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted) override {
        return this->insertBefore(newChild, Variant(), inserted);
    }
    HRESULT contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) override {
        return baseContains(object, isDescendant);
    }
    HRESULT get_objectType(QVRObjectType* type) override { return baseObjectType(type); }
    HRESULT get_childNodes(Ref<IQVRCatalogObjectList>* list) override {
        return containerChildNodes(list);
    }
    HRESULT get_domNode(Ref<IXMLDOMElement>* node) override { return baseDomNode(node); }
    HRESULT getDataObject(Ref<IDataObject>* dataObject) override {
        return baseDataObject(dataObject);
    }
    HRESULT getReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) override {
        return baseReferencedFiles(flag, files);
    }

    // Saves to the address the document was last loaded from or saved to.
    HRESULT save(VARIANT_BOOL* ok) override {
        return guarded([&] {
            const Variant url = url_; // saveAs replaces it
            return this->saveAs(url, ok);
        });
    }

    // --- Sinks (the root's interface and IEventRoot alike) -------------------------------------
    HRESULT fireEvent(std::int32_t event, IQVRCatalogObject* subject, const Variant& position,
                      VARIANT_BOOL* result) override {
        return guarded([&] { return sinks_.fire(event, subject, position, result); });
    }
    HRESULT advise(IQVRCatalogEvents* sink, std::uint32_t* cookie) override {
        return guarded([&] { return sinks_.advise(sink, true, cookie); });
    }
    HRESULT unadvise(std::uint32_t cookie) override {
        return guarded([&] { return sinks_.unadvise(cookie); });
    }
    HRESULT adviseListener(IQVRCatalogEvents* sink, std::uint32_t* cookie) override {
        return guarded([&] { return sinks_.advise(sink, false, cookie); });
    }

    // --- ISupportErrorInfo: the root's own interface and the common one ------------------------
    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override {
        return iid == Interface::iid || iid == IQVRCatalogObject::iid ? S_OK : S_FALSE;
    }
};

} // namespace qvr
