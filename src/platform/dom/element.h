// The object of an element: the node operations and the attributes by qualified name.
#pragma once

#include "platform/dom/node_base.h"

namespace qvr::dom {

class Element final : public NodeBase<IXMLDOMElement> {
public:
    Element(xmlNodePtr node, std::shared_ptr<Tree> tree) : NodeBase(node, std::move(tree)) {}

    HRESULT get_tagName(String* name) override;
    HRESULT getAttribute(const String& name, String* value) override;
    HRESULT getAttribute(const String& name, Variant* value) override;
    HRESULT setAttribute(const String& name, const String& value) override;
    HRESULT removeAttribute(const String& name) override;
};

} // namespace qvr::dom
