// Objects of the nodes that are not elements and not the document: text, CDATA, comments,
// processing instructions, attributes, entity references, the document type.
#pragma once

#include "platform/dom/node_base.h"

namespace qvr::dom {

class Node final : public NodeBase<IXMLDOMNode> {
public:
    Node(xmlNodePtr node, std::shared_ptr<Tree> tree) : NodeBase(node, std::move(tree)) {}
};

} // namespace qvr::dom
