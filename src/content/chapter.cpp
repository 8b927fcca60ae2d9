#include "content/chapter.h"

#include "core/ids.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"

namespace qvr {

HRESULT CQVRCatalogChapter::fillNew(const String& name) {
    Ref<IXMLDOMElement> desc;
    HRESULT hr = CXMLDOMTool(element()).appendNewElement("Desc", &desc);
    if (hr == S_OK) hr = element()->setAttribute("id", newGuidId());
    if (hr == S_OK) hr = element()->setAttribute("name", name);
    if (hr == S_OK) hr = element()->setAttribute("visible", "1");
    return hr;
}

HRESULT CQVRCatalogChapter::cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) {
    return guarded([&] {
        HRESULT hr = cloneElement(deep, "id", clone);
        if (hr != S_OK || deep != VARIANT_TRUE) return hr;
        hr = CXMLDOMTool(element()).regenerateIds(catalogRef(), self(), *clone);
        if (FAILED(hr)) *clone = nullptr;
        return FAILED(hr) ? hr : S_OK;
    });
}

} // namespace qvr
