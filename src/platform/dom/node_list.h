// A list of nodes: the result of a selection or the children of a node at the time of the call.
#pragma once

#include <vector>

#include <qvr/dom.h>

#include "platform/com/object_base.h"

namespace qvr::dom {

class NodeList final : public ObjectBase<IXMLDOMNodeList> {
public:
    explicit NodeList(std::vector<Ref<IXMLDOMNode>> nodes) : nodes_(std::move(nodes)) {}

    HRESULT get_length(std::int32_t* length) override;
    HRESULT get_item(std::int32_t index, Ref<IXMLDOMNode>* node) override;

private:
    std::vector<Ref<IXMLDOMNode>> nodes_;
};

} // namespace qvr::dom
