#include "core/value_selection.h"

namespace qvr {

String selectionWithValue(std::string_view head, const String& value, std::string_view tail) {
    if (value.view().find('\'') != std::string_view::npos) return String();
    std::string text;
    text.reserve(head.size() + value.byteLength() + tail.size());
    text.append(head).append(value.view()).append(tail);
    return String(std::move(text));
}

HRESULT selectOneWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNode>* found) {
    if (!found) return E_POINTER;
    *found = nullptr;
    const String selection = selectionWithValue(head, value, tail);
    if (selection.isNull()) return E_FAIL;
    return node->selectSingleNode(selection, found);
}

HRESULT selectAllWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNodeList>* found) {
    if (!found) return E_POINTER;
    *found = nullptr;
    const String selection = selectionWithValue(head, value, tail);
    if (selection.isNull()) return E_FAIL;
    return node->selectNodes(selection, found);
}

} // namespace qvr
