#include "platform/dom/element_append.h"

#include <memory>

#include <libxml/tree.h>
#include <libxml/valid.h>

#include "platform/com/failure.h"
#include "platform/dom/attribute_access.h"
#include "platform/dom/carriable_text.h"
#include "platform/dom/handle.h"
#include "platform/dom/tree_edit.h"
#include "platform/dom/xml_text.h"

namespace qvr::dom {

HRESULT ElementAppend::textElement(IXMLDOMNode* parent, const String& tag, const String& attribute,
                                   const String& value, const String& text) {
    return guarded([&] {
        xmlNodePtr container = parent ? Handle::nodeOf(parent) : nullptr;
        if (!container || container->type != XML_ELEMENT_NODE || tag.isNull() || attribute.isNull())
            return E_INVALIDARG;
        if (holdsNul(tag) || xmlValidateQName(bytes(tag), 0) != 0) return E_FAIL;
        // Freed unless it joins the tree: no object stands for it.
        std::unique_ptr<xmlNode, void (*)(xmlNodePtr)> element(
            xmlNewDocNode(container->doc, nullptr, bytes(tag), nullptr), &xmlFreeNode);
        if (!element) return E_OUTOFMEMORY;
        HRESULT hr = AttributeAccess::set(element.get(), attribute, value);
        if (hr == S_OK) hr = TreeEdit::setText(element.get(), text);
        if (hr == S_OK) hr = TreeEdit::insert(container, element.get(), nullptr);
        if (hr == S_OK) element.release();
        return hr;
    });
}

} // namespace qvr::dom
