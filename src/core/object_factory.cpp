#include "core/object_factory.h"

#include "core/event_firing.h"
#include "core/xml_dom_tool.h"

namespace qvr {

HRESULT createObjectOf(IXMLDOMNode* node, IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                       Ref<IQVRCatalogObject>* object) {
    if (!node) return E_FAIL;
    Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node);
    if (!element) return E_NOINTERFACE; // a node without a tag name
    String tag;
    HRESULT hr = element->get_tagName(&tag);
    if (FAILED(hr)) return hr;
    if (!object) return E_POINTER;
    *object = nullptr;
    const Creator create = creatorOfTag(tag.view());
    if (!create) return E_FAIL;
    if ((hr = create(CXMLDOMTool(node).ownerDocument(), node, catalog, object)) != S_OK) return hr;
    // Setting the parent of a new wrapper must not be heard anywhere (a table reads its
    // parent's key at that moment). The object stays in the out value even if this fails.
    EventFreeze freeze;
    return (*object)->putref_parentNode(parent);
}

} // namespace qvr
