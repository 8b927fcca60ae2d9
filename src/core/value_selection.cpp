#include "core/value_selection.h"

#include <qvr/object.h>

#include "platform/com/error_report.h"

namespace qvr {

String selectionWithValue(std::string_view head, const String& value, std::string_view tail) {
    if (value.view().find('\'') != std::string_view::npos) return String();
    std::string text;
    text.reserve(head.size() + value.byteLength() + tail.size());
    text.append(head).append(value.view()).append(tail);
    return String(std::move(text));
}

namespace {

template <class Result, class Select>
HRESULT selectWithValue(std::string_view head, const String& value, std::string_view tail,
                        Ref<Result>* found, Select&& select) {
    if (!found) return E_POINTER;
    *found = nullptr;
    const String selection = selectionWithValue(head, value, tail);
    if (!selection.isNull()) return select(selection);
    return reportError({"QVRCatalog", IQVRCatalogObject::iid},
                       String("The value \"" + value.str() +
                              "\" cannot be looked up: it holds an apostrophe, which would end "
                              "the quoted text of the selection."),
                       E_FAIL);
}

} // namespace

HRESULT selectOneWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNode>* found) {
    return selectWithValue(head, value, tail, found, [&](const String& selection) {
        return node->selectSingleNode(selection, found);
    });
}

HRESULT selectAllWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNodeList>* found) {
    return selectWithValue(head, value, tail, found, [&](const String& selection) {
        return node->selectNodes(selection, found);
    });
}

} // namespace qvr
