#include "core/child_tool.h"

#include "core/node_import.h"

#include <string>

#include "core/object_factory.h"
#include "core/object_vector.h"
#include "core/value_selection.h"

namespace qvr {

HRESULT ChildTool::insertChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                     IQVRCatalogObject* newChild, const Variant& position,
                                     Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                                     const String& childSelection) {
    if (!catalog || !parent || !newChild) return E_INVALIDARG;
    if (!inserted) return E_POINTER;
    *inserted = nullptr;
    if (!node_) return E_FAIL;
    // The caller's object itself goes in; one from another process, as a copy in a new wrapper.
    NewChild child;
    HRESULT hr = child.prepare(newChild);
    if (FAILED(hr)) return hr;
    if ((hr = checkUniqueAttribute(child.element(), keyAttribute, String())) != S_OK) return hr;
    Ref<IXMLDOMNode> reference;
    if ((hr = resolveInsertPosition(position, keyAttribute, childSelection, &reference)) != S_OK)
        return hr;
    if (FAILED(hr = node_->insertBefore(child.element(), reference, nullptr))) return hr;
    return child.link(node_, catalog, parent, inserted);
}

HRESULT ChildTool::removeChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* child,
                                     Ref<IQVRCatalogObject>* removed) {
    if (!child) return E_POINTER;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> node;
    HRESULT hr = child->get_domNode(&node);
    if (FAILED(hr)) return hr;
    if (FAILED(hr = node_->removeChild(node, nullptr))) return hr;
    if (!removed) return S_OK; // the removal is done: a wrapper nobody asked for can't fail it
    // The new wrapper keeps naming the old parent: nothing clears a parent link on removal.
    Ref<IQVRCatalogObject> parent;
    child->get_parentNode(&parent);
    Ref<IQVRCatalogObject> wrapper;
    hr = createObjectOf(node, catalog, parent, &wrapper);
    *removed = std::move(wrapper);
    return hr;
}

HRESULT ChildTool::selectObjectList(IQVRCatalogObject* catalog, IQVRCatalogObject* owner,
                                    const String& xpath, Ref<IQVRCatalogObjectList>* list) {
    if (!list) return E_POINTER;
    *list = nullptr;
    if (!node_) return E_FAIL;
    Ref<CQVRCatalogObjectVector> vector = makeObject<CQVRCatalogObjectVector>(owner);
    *list = vector.get();
    // Filled before it listens: the owner, whose get_childNodes this is, ignores the list's
    // insertions while it builds, so the list takes each item in by itself.
    Ref<IXMLDOMNodeList> nodes;
    std::int32_t length = 0;
    HRESULT hr = node_->selectNodes(xpath, &nodes);
    if (SUCCEEDED(hr)) hr = nodes->get_length(&length);
    // A refused item is passed over; the status of the last item is the fill's.
    for (std::int32_t i = 0; SUCCEEDED(hr) && i < length;) {
        Ref<IXMLDOMNode> item;
        Ref<IQVRCatalogObject> object;
        nodes->get_item(i++, &item);
        HRESULT itemStatus = createObjectOf(item, catalog, owner, &object);
        VARIANT_BOOL done;
        if (itemStatus == S_OK) itemStatus = vector->appendChild(object, &done);
        if (i == length) hr = itemStatus;
    }
    if (owner) {
        Ref<IQVRCatalogObject> catalogOfOwner, root;
        if (SUCCEEDED(owner->get_catalog(&catalogOfOwner)) && catalogOfOwner)
            catalogOfOwner->get_catalog(&root);
        vector->connect(root);
    }
    return hr;
}

HRESULT ChildTool::resolveInsertPosition(const Variant& position, const String& keyAttribute,
                                         const String& childSelection,
                                         Ref<IXMLDOMNode>* reference) {
    if (!reference) return E_POINTER;
    *reference = nullptr;
    switch (position.vt()) {
    case VT_EMPTY:
    case VT_ERROR: return S_OK; // left out: append
    case VT_I2:
    case VT_I4: {
        // One-based among the selected children; an index that names no child (0, or past
        // the end) appends.
        const std::int32_t index = position.vt() == VT_I2 ? position.i2() : position.i4();
        if (!node_) return E_FAIL;
        Ref<IXMLDOMNodeList> children;
        HRESULT hr = node_->selectNodes(childSelection, &children);
        if (FAILED(hr)) return hr;
        Ref<IXMLDOMNode> item;
        if (index >= 1) children->get_item(index - 1, &item);
        *reference = std::move(item);
        return S_OK;
    }
    case VT_BSTR:
        // A text that names no child answers S_FALSE, and the caller inserts nothing.
        if (!node_) return E_FAIL;
        return selectOneWithValue(node_, std::string("*[@") + keyAttribute.str() + " = '",
                                  position.str(), "']", reference);
    case VT_DISPATCH:
    case VT_UNKNOWN: {
        Ref<IQVRCatalogObject> object = query<IQVRCatalogObject>(position.object());
        if (!object) return position.object() ? E_NOINTERFACE : E_INVALIDARG;
        Ref<IXMLDOMElement> element;
        HRESULT hr = object->get_domNode(&element);
        *reference = element;
        return hr;
    }
    default: return E_UNEXPECTED;
    }
}

HRESULT ChildTool::checkUniqueAttribute(IXMLDOMElement* element, const String& attribute,
                                        const String& wanted) {
    String present;
    HRESULT hr = element->getAttribute(attribute, &present);
    if (hr != S_OK && hr != S_FALSE) return hr;
    String value = wanted;
    if (wanted.isNull()) {
        if (hr == S_FALSE || present.isEmpty()) return S_OK;
        value = present;
    } else if (hr == S_OK && wanted == present) {
        return S_OK; // no change
    }
    if (!node_) return S_OK; // no parent, no siblings
    Ref<IXMLDOMNodeList> same;
    if (selectAllWithValue(node_, std::string("*[@") + attribute.str() + "='", value, "']",
                           &same) != S_OK)
        return S_OK;
    std::int32_t count = 0;
    same->get_length(&count);
    return count >= 1 ? QVR_E_DUPLICATE : S_OK;
}

HRESULT ChildTool::containsId(IQVRCatalogObject* object, VARIANT_BOOL* contained) {
    if (!contained) return E_POINTER;
    *contained = VARIANT_FALSE;
    if (!object) return E_INVALIDARG;
    String key;
    HRESULT hr = object->get_key(&key);
    if (FAILED(hr)) return hr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMNode> found;
    hr = selectOneWithValue(node_, dom::forms::descendantById, key, &found);
    if (hr == S_OK) *contained = VARIANT_TRUE;
    return hr == S_FALSE ? S_OK : hr;
}

} // namespace qvr
