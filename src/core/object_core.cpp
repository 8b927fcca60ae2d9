#include "core/object_core.h"

#include <qvr/transfer.h>

#include "core/child_tool.h"
#include "core/object_factory.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

// Clears a flag on every way out of a scope.
class FlagScope {
public:
    explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
    ~FlagScope() { flag_ = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& flag_;
};

} // namespace

HRESULT ObjectCore::report(std::uint32_t message, HRESULT status) const {
    return reportError(errorSource(), message, status);
}

HRESULT ObjectCore::requireElement(Ref<IXMLDOMElement>* element) {
    if (!initialized()) return notInitialized();
    return workElement(element);
}

HRESULT ObjectCore::baseGetValue(const String& xpath, Variant* value) noexcept {
    return guarded([&] {
        if (!value) return E_POINTER;
        Ref<IXMLDOMElement> element;
        HRESULT hr = requireElement(&element);
        if (hr != S_OK) return hr;
        Ref<IXMLDOMNode> node;
        hr = element->selectSingleNode(xpath, &node);
        if (hr != S_OK) return hr; // nothing selected: the value stays as it was
        DOMNodeType type = NODE_INVALID;
        hr = node->get_nodeType(&type);
        if (FAILED(hr)) return hr;
        if (type == NODE_ATTRIBUTE) return node->get_nodeValue(value);
        if (type == NODE_ELEMENT) return node->get_nodeTypedValue(value);
        return S_OK;
    });
}

HRESULT ObjectCore::baseInsertBefore(IQVRCatalogObject* newChild,
                                     Ref<IQVRCatalogObject>* inserted) noexcept {
    if (!newChild || !inserted) return E_POINTER;
    *inserted = nullptr;
    return S_FALSE;
}

HRESULT ObjectCore::containerInsertBefore(IQVRCatalogObject* newChild, const Variant& position,
                                          Ref<IQVRCatalogObject>* inserted) noexcept {
    return guarded([&] {
        if (!newChild) return E_POINTER;
        if (inserted) *inserted = nullptr;
        const ContainerRow& row = *info_.container;
        QVRObjectType type;
        HRESULT hr = newChild->get_objectType(&type);
        if (FAILED(hr)) return hr;
        if (!contains(row.accepted, type)) return report(row.wrongTypeMessage);
        if (buildingChildren) return S_OK;
        // Reported, yet answered with S_OK: callers of old rely on insertion into an empty
        // object not failing.
        if (!initialized()) {
            notInitialized();
            return S_OK;
        }
        Ref<IXMLDOMElement> element;
        workElement(&element); // a root without a root element leaves the tool empty: E_FAIL
        ChildTool tool(element);
        Ref<IQVRCatalogObject> child;
        hr = insertChild(tool, newChild, position, &child, row);
        if (hr == S_OK) {
            if (FAILED(hr = childPlaced(child))) return hr;
            fire(qvrEventObjectInserted, child, position);
            if (inserted) *inserted = std::move(child);
            return S_OK;
        }
        if (hr == QVR_E_DUPLICATE && row.reportsDuplicate) return report(msgDuplicateId);
        return hr;
    });
}

HRESULT ObjectCore::containerRemoveChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed,
                                         bool guard) noexcept {
    return guarded([&] {
        if (removed) *removed = nullptr;
        Ref<IXMLDOMElement> element;
        HRESULT hr = requireElement(&element);
        if (hr != S_OK) return hr;
        if (!child) return E_POINTER;
        Ref<IQVRCatalogObject> held(child);
        if (guard) {
            // Counted by the child's tag among this element's children, whether or not `child`
            // is one of them.
            Ref<IXMLDOMElement> node;
            String name;
            Ref<IXMLDOMNodeList> siblings;
            std::int32_t count = 0;
            if (FAILED(hr = child->get_domNode(&node))) return hr;
            if (FAILED(hr = node->get_nodeName(&name))) return hr;
            if (FAILED(hr = element->selectNodes(name, &siblings))) return hr;
            if (FAILED(hr = siblings->get_length(&count))) return hr;
            if (count == 1) return report(msgLastChild);
        }
        Ref<IQVRCatalogObject> catalog;
        catalogObject(&catalog);
        hr = ChildTool(element).removeChildObject(catalog, child, removed);
        if (hr == S_OK) fire(qvrEventObjectRemoved, child, Variant());
        return hr;
    });
}

HRESULT ObjectCore::baseContains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) noexcept {
    return guarded([&] {
        if (!isDescendant) return E_POINTER;
        if (!object) return E_INVALIDARG;
        *isDescendant = VARIANT_FALSE;
        Ref<IXMLDOMElement> element;
        HRESULT hr = requireElement(&element);
        if (hr != S_OK) return hr;
        return ChildTool(element).containsId(object, isDescendant);
    });
}

HRESULT ObjectCore::baseObjectType(QVRObjectType* type) noexcept {
    if (!type) return E_POINTER;
    *type = info_.type.type;
    return S_OK;
}

HRESULT ObjectCore::baseChildNodes(Ref<IQVRCatalogObjectList>* list) noexcept {
    if (!list) return E_POINTER;
    *list = nullptr;
    return S_FALSE;
}

HRESULT ObjectCore::containerChildNodes(Ref<IQVRCatalogObjectList>* list) noexcept {
    return guarded([&] {
        if (!list) return E_POINTER;
        *list = nullptr;
        if (!initialized()) return notInitialized();
        FlagScope building(buildingChildren);
        Ref<IXMLDOMElement> element;
        workElement(&element);
        Ref<IQVRCatalogObject> catalog;
        catalogObject(&catalog);
        return ChildTool(element).selectObjectList(catalog, self(), info_.container->childSelection,
                                                   list);
    });
}

HRESULT ObjectCore::baseDomNode(Ref<IXMLDOMElement>* node) noexcept {
    return guarded([&] {
        if (!node) return E_POINTER;
        *node = nullptr;
        return requireElement(node);
    });
}

HRESULT ObjectCore::baseDataObject(Ref<IDataObject>* dataObject) noexcept {
    return guarded([&] {
        if (!dataObject) return E_POINTER;
        *dataObject = nullptr;
        return createDataObject(self(), dataObject);
    });
}

HRESULT ObjectCore::baseReferencedFiles(VARIANT_BOOL flag,
                                        Ref<IQVRCatalogObjectList>* files) noexcept {
    return guarded([&] {
        if (!files) return E_POINTER;
        *files = nullptr;
        if (!initialized()) return notInitialized();
        return collectReferencedFiles(self(), flag, files);
    });
}

} // namespace qvr
