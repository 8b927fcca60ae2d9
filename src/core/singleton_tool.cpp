#include "core/singleton_tool.h"

#include "core/object_factory.h"

namespace qvr {

HRESULT SingletonTool::replaceSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                        const String& xpath, IQVRCatalogObject* newChild,
                                        Ref<IQVRCatalogObject>* oldChild) {
    if (!catalog) return E_INVALIDARG;
    if (!newChild || !oldChild) return E_POINTER;
    *oldChild = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> node;
    Ref<IXMLDOMNode> old;
    HRESULT hr = newChild->get_domNode(&node);
    if (FAILED(hr)) return hr;
    if ((hr = node_->selectSingleNode(xpath, &old)) != S_OK) return hr;
    if (FAILED(hr = node_->replaceChild(node, old, nullptr))) return hr;
    if ((hr = createObjectOf(old, catalog, parent, oldChild)) != S_OK) return hr;
    // The newcomer takes the old child's place and its parent link; the old child leaves
    // without parent. The model clears a parent link nowhere else.
    Ref<IQVRCatalogObject> oldParent;
    (*oldChild)->get_parentNode(&oldParent);
    newChild->putref_parentNode(oldParent);
    newChild->putref_catalog(catalog);
    (*oldChild)->putref_parentNode(nullptr);
    return S_OK;
}

HRESULT SingletonTool::insertSingletonAfter(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                            const String& xpath, IQVRCatalogObject* newChild,
                                            Ref<IQVRCatalogObject>* inserted) {
    return placeSingleton(catalog, parent, &xpath, newChild, inserted);
}

HRESULT SingletonTool::insertSingletonFirst(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                            IQVRCatalogObject* newChild,
                                            Ref<IQVRCatalogObject>* inserted) {
    return placeSingleton(catalog, parent, nullptr, newChild, inserted);
}

HRESULT SingletonTool::placeSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                      const String* predecessor, IQVRCatalogObject* newChild,
                                      Ref<IQVRCatalogObject>* inserted) {
    if (!catalog) return E_INVALIDARG;
    if (!parent || !newChild || !inserted) return E_POINTER;
    *inserted = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> node;
    Ref<IXMLDOMNode> found, reference;
    HRESULT hr = newChild->get_domNode(&node);
    if (FAILED(hr)) return hr;
    // Behind the predecessor (which may be last: append), or first when there is none.
    if (predecessor && node_->selectSingleNode(*predecessor, &found) == S_OK)
        found->get_nextSibling(&reference);
    else
        node_->get_firstChild(&reference);
    if (FAILED(hr = node_->insertBefore(node, reference, nullptr))) return hr;
    if ((hr = linkChild(node, newChild, catalog, parent)) != S_OK) return hr;
    *inserted = newChild;
    return S_OK;
}

} // namespace qvr
