#include "content/part.h"

#include "core/event_firing.h"
#include "core/ids.h"
#include "core/xml_dom_tool.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

// The attributes of a new TableRef/URL, written in this order.
struct LinkAttribute {
    const char* name;
    const char* value; // null: the reference itself
};
constexpr LinkAttribute tableLinkAttributes[] = {
    {"xlink:actuate", "onRequest"},
    {"xlink:href", nullptr},
    {"xlink:show", "embed"},
    {"xlink:type", "simple"},
};

} // namespace

HRESULT CQVRCatalogPart::fillNew(const String& name) {
    Ref<IXMLDOMElement> desc;
    HRESULT hr = element()->setAttribute("id", newGuidId());
    if (hr == S_OK) hr = CXMLDOMTool(element()).appendNewElement("Desc", &desc);
    if (hr == S_OK) hr = put_tableRef("");
    if (hr == S_OK) hr = put_name(name);
    if (hr == S_OK) hr = put_visible(VARIANT_TRUE);
    return hr;
}

HRESULT CQVRCatalogPart::selectTableLink(Ref<IXMLDOMElement>* link) {
    Ref<IXMLDOMNode> node;
    const HRESULT hr = element()->selectSingleNode(tableRefUrl, &node);
    *link = query<IXMLDOMElement>(node);
    return hr;
}

HRESULT CQVRCatalogPart::get_tableRef(String* tableRef) {
    return guarded([&] {
        if (!tableRef) return E_POINTER;
        *tableRef = String();
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMElement> url;
        HRESULT hr = selectTableLink(&url);
        if (hr != S_OK) return hr;
        if (!url || (hr = url->getAttribute(href, tableRef)) != S_OK) return S_FALSE;
        return tableRef->isEmpty() ? S_FALSE : S_OK;
    });
}

HRESULT CQVRCatalogPart::put_tableRef(const String& tableRef) {
    return guarded([&] {
        if (tableRef.isNull()) return E_POINTER;
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMElement> url;
        HRESULT hr = selectTableLink(&url);
        if (FAILED(hr)) return hr;
        if (url) {
            String present;
            if (url->getAttribute(href, &present) != S_OK) return S_FALSE; // left alone
            if (present == tableRef) return S_OK; // unchanged: the open table stays open
            if ((hr = url->setAttribute(href, tableRef)) != S_OK) return hr;
        } else if ((hr = makeTableLink(tableRef)) != S_OK) {
            return hr;
        }
        // A new reference closes the table that was open: the next getTable loads from the new
        // place.
        closeTable();
        fireChanged();
        return S_OK;
    });
}

HRESULT CQVRCatalogPart::makeTableLink(const String& tableRef) {
    Ref<IXMLDOMNode> holder;
    HRESULT hr = element()->selectSingleNode("TableRef", &holder);
    if (FAILED(hr)) return hr;
    Ref<IXMLDOMElement> tableRefElement = query<IXMLDOMElement>(holder), url;
    if (!tableRefElement &&
        (hr = CXMLDOMTool(element()).appendNewElement("TableRef", &tableRefElement)) != S_OK)
        return hr;
    if ((hr = CXMLDOMTool(tableRefElement).appendNewElement("URL", &url)) != S_OK) return hr;
    for (const LinkAttribute& attribute : tableLinkAttributes) {
        hr =
            url->setAttribute(attribute.name, attribute.value ? String(attribute.value) : tableRef);
        if (hr != S_OK) return hr;
    }
    return S_OK;
}

HRESULT CQVRCatalogPart::cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) {
    return guarded([&] {
        HRESULT hr = cloneElement(deep, "id", clone);
        if (hr != S_OK) return hr;
        {
            // Nothing of the table work is heard outside.
            EventFreeze freeze;
            Ref<IQVRCatalogPart> copy = query<IQVRCatalogPart>(*clone);
            String id;
            if (!copy || FAILED(hr = copy->get_key(&id))) {
                hr = FAILED(hr) ? hr : E_NOINTERFACE;
            } else if (deep == VARIANT_TRUE) {
                hr = copyTable(this, copy, id + "T");
            } else {
                // A shallow copy has no children: this makes a fresh, empty TableRef/URL.
                hr = copy->put_tableRef("");
            }
        }
        if (FAILED(hr)) *clone = nullptr;
        return FAILED(hr) ? hr : S_OK;
    });
}

} // namespace qvr
