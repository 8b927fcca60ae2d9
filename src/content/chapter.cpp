#include "content/chapter.h"

#include "content/part.h"
#include "core/event_firing.h"
#include "core/ids.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

// Gives every chapter and part below `copy` a new id, walking `source` alongside.
HRESULT regenerateIds(IQVRCatalogObject* source, IQVRCatalogObject* copy) {
    Ref<IQVRCatalogObjectList> sourceList, copyList;
    HRESULT hr = source->get_childNodes(&sourceList);
    if (hr != S_OK) return hr;
    if ((hr = copy->get_childNodes(&copyList)) != S_OK) return hr;
    std::int32_t count = 0;
    if ((hr = sourceList->get_count(&count)) != S_OK) return hr;
    for (std::int32_t i = 1; i <= count && hr == S_OK; ++i) {
        Ref<IQVRCatalogObject> from, to;
        Ref<IXMLDOMElement> element;
        QVRObjectType type;
        if ((hr = sourceList->getItem(i, &from)) != S_OK) break;
        if ((hr = copyList->getItem(i, &to)) != S_OK) break;
        if ((hr = from->get_objectType(&type)) != S_OK) break;
        if (type != qvrPart && type != qvrChapter) continue; // the copy keeps what it had
        if (FAILED(hr = to->get_domNode(&element))) break;
        const String id = newGuidId();
        if ((hr = element->setAttribute("id", id)) != S_OK) break;
        if (type == qvrChapter) {
            hr = regenerateIds(from, to);
            continue;
        }
        // A part's table goes with it under the new id; nobody hears of the hand-over.
        EventFreeze freeze;
        Ref<IQVRCatalogPart> copiedPart = query<IQVRCatalogPart>(to);
        if (!copiedPart) {
            hr = E_NOINTERFACE;
            break;
        }
        copiedPart->put_tableRef("");
        hr = CQVRCatalogPart::copyTable(query<IQVRCatalogPart>(from), copiedPart, id + "T");
    }
    return hr;
}

} // namespace

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
        hr = regenerateIds(self(), *clone);
        if (FAILED(hr)) *clone = nullptr;
        return FAILED(hr) ? hr : S_OK;
    });
}

} // namespace qvr
