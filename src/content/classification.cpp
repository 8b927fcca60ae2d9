#include "content/classification.h"

#include "core/object_factory.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"

namespace qvr {

void CQVRCatalogExtrinsic::clear() {
    CXMLDOMTool tool(element());
    Ref<IXMLDOMNode> child;
    while (element()->get_firstChild(&child) == S_OK && child) {
        if (FAILED(tool.removeNode(child))) return; // it would stay first, and forever
        child = nullptr;
    }
}

HRESULT CQVRCatalogExtrinsic::get_content(Ref<IQVRCatalogObject>* content) {
    return guarded([&] {
        if (!content) return E_POINTER;
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMNode> first;
        HRESULT hr = element()->get_firstChild(&first);
        if (hr != S_OK || !first) return FAILED(hr) ? hr : S_FALSE;
        // A held text, or an element of no class, is no object: E_FAIL whatever the factory
        // answered. Text is read through get_value.
        Ref<IQVRCatalogObject> object;
        if (createObjectOf(first, catalogRef(), self(), &object) != S_OK) return E_FAIL;
        *content = std::move(object);
        return S_OK;
    });
}

HRESULT CQVRCatalogExtrinsic::putref_content(IQVRCatalogObject* content) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        if (!content) return E_INVALIDARG;
        Ref<IXMLDOMElement> node;
        HRESULT hr = content->get_domNode(&node);
        if (hr != S_OK) return FAILED(hr) ? hr : E_FAIL;
        clear();
        Ref<IXMLDOMNode> copy;
        if ((hr = node->cloneNode(VARIANT_TRUE, &copy)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
        if (FAILED(hr = CXMLDOMTool(element()).insertNode(copy, nullptr))) return hr;
        fireChanged();
        return S_OK;
    });
}

HRESULT CQVRCatalogExtrinsic::put_value(const String& value) {
    return guarded([&] {
        if (!initialized()) return notInitialized();
        clear();
        HRESULT hr = element()->put_text(value);
        if (hr == S_OK) fireChanged();
        return hr;
    });
}

} // namespace qvr
