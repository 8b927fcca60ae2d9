#include "platform/dom/node_list.h"

namespace qvr::dom {

HRESULT NodeList::get_length(std::int32_t* length) {
    if (!length) return E_POINTER;
    *length = static_cast<std::int32_t>(nodes_.size());
    return S_OK;
}

HRESULT NodeList::get_item(std::int32_t index, Ref<IXMLDOMNode>* node) {
    if (!node) return E_POINTER;
    *node = nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= nodes_.size()) return S_FALSE;
    *node = nodes_[static_cast<std::size_t>(index)];
    return S_OK;
}

} // namespace qvr::dom
