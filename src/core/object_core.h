// What every object of the model shares, the roots included: the common operations that work the
// same on a wrapped element and on a root's document element, written once over a few hooks.
//
// The frame in three layers:
//   ObjectCore      this class: the operations over "the element I work on", the container forms
//                   of insertBefore, removeChild and get_childNodes read from the container table.
//   ObjectFrame     the wrapper of one element: links to catalog and parent, keys, cloning, the
//                   creator's initialisation (core/object_frame.h).
//   CatalogObject   the template that makes a class out of an interface and an object type
//                   (core/catalog_object.h).
// The catalog derives from ObjectCore directly: it has a document, not an element.
//
// The operations named base* and container* are noexcept: each turns exceptions into statuses.
#pragma once

#include <cstdint>

#include <qvr/events.h>
#include <qvr/object.h>
#include <qvr/object_list.h>

#include "core/object_types.h"
#include "platform/com/error_report.h"

namespace qvr {

class ChildTool;

class ObjectCore {
public:
    ObjectCore(const ClassInfo& info, const IID& iid) : info_(info), iid_(iid) {}
    virtual ~ObjectCore() = default;
    ObjectCore(const ObjectCore&) = delete;
    ObjectCore& operator=(const ObjectCore&) = delete;

    const ClassInfo& classInfo() const { return info_; }
    // The class's name and interface, as its failure reports carry them.
    ErrorSource errorSource() const { return {info_.type.source, iid_}; }
    // Reports numbered message `message` from this class and returns `status`.
    HRESULT report(std::uint32_t message, HRESULT status = E_FAIL) const;

    // --- Hooks ---------------------------------------------------------------------------------
    // The object as the model hands it around (as source of events, parent of new wrappers).
    virtual IQVRCatalogObject* self() = 0;
    // False while there is no element (a wrapper) or no document (a root).
    virtual bool initialized() const = 0;
    // Reports the class's "not initialized" message and answers E_FAIL.
    virtual HRESULT notInitialized() const = 0;
    // The element the operations work on; a root answers with the status of its document.
    virtual HRESULT workElement(Ref<IXMLDOMElement>* element) = 0;
    // The catalog handed to the wrappers this object makes; a failure leaves it null.
    virtual HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) = 0;
    // Step 5 of insertBefore: the tool's insertion, with the catalog as this class reaches it.
    virtual HRESULT insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
                                Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) = 0;
    // The work that follows a placed child before anyone hears of it (a column gives a cell its
    // row). A failure is returned as it stands, and `inserted` stays null.
    virtual HRESULT childPlaced(IQVRCatalogObject*) { return S_OK; }
    // Fires a change of this object: wrappers route it to their root, roots deliver it at once.
    virtual void fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) = 0;

    // The element to work on, or the status to return: "not initialized" reported, or the
    // root's answer when its document has no root element.
    HRESULT requireElement(Ref<IXMLDOMElement>* element);

    // --- The common operations ----------------------------------------------------------------
    HRESULT baseGetValue(const String& xpath, Variant* value) noexcept;
    // A class without children: S_FALSE and a null result.
    HRESULT baseInsertBefore(IQVRCatalogObject* newChild,
                             Ref<IQVRCatalogObject>* inserted) noexcept;
    // The class's container row decides the accepted types, key, selection and messages.
    HRESULT containerInsertBefore(IQVRCatalogObject* newChild, const Variant& position,
                                  Ref<IQVRCatalogObject>* inserted) noexcept;
    // `guard`: refuse to remove the last child of its tag.
    HRESULT containerRemoveChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed,
                                 bool guard) noexcept;
    HRESULT baseContains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) noexcept;
    HRESULT baseObjectType(QVRObjectType* type) noexcept;
    HRESULT baseChildNodes(Ref<IQVRCatalogObjectList>* list) noexcept;
    HRESULT containerChildNodes(Ref<IQVRCatalogObjectList>* list) noexcept;
    HRESULT baseDomNode(Ref<IXMLDOMElement>* node) noexcept;
    HRESULT baseDataObject(Ref<IDataObject>* dataObject) noexcept;
    HRESULT baseReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) noexcept;

protected:
    // Set while get_childNodes fills its list: the list's own insertions come back to
    // insertBefore, which must then do nothing.
    bool buildingChildren = false;

private:
    ClassInfo info_;
    IID iid_;
};

} // namespace qvr
