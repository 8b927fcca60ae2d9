#include "core/value_selection.h"

#include <qvr/object.h>

#include "platform/com/error_report.h"
#include "platform/dom/selection.h"

namespace qvr {

namespace {

HRESULT refuseValue(const String& value) {
    return reportError({"QVRCatalog", IQVRCatalogObject::iid},
                       String("The value \"" + value.str() +
                              "\" cannot be looked up: it holds an apostrophe, which would end "
                              "the quoted text of the selection."),
                       E_FAIL);
}

template <class Result, class Select>
HRESULT selectWithValue(std::string_view head, const String& value, std::string_view tail,
                        Ref<Result>* found, Select&& select) {
    if (!found) return E_POINTER;
    *found = nullptr;
    const String selection = selectionWithValue(head, value, tail);
    return selection.isNull() ? refuseValue(value) : select(selection);
}

template <class Result, class Select>
HRESULT selectWithValue(const String& value, Ref<Result>* found, Select&& select) {
    if (!found) return E_POINTER;
    *found = nullptr;
    return fitsLiteral(value) ? select() : refuseValue(value);
}

} // namespace

bool fitsLiteral(const String& value) {
    return value.view().find('\'') == std::string_view::npos;
}

String selectionWithValue(std::string_view head, const String& value, std::string_view tail) {
    if (!fitsLiteral(value)) return String();
    std::string text;
    text.reserve(head.size() + value.byteLength() + tail.size());
    text.append(head).append(value.view()).append(tail);
    return String(std::move(text));
}

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

HRESULT selectOneWithValue(IXMLDOMNode* node, const dom::IndexedForm& form, const String& value,
                           Ref<IXMLDOMNode>* found) {
    return selectWithValue(
        value, found, [&] { return dom::Selection::selectOne(node, form, value.view(), found); });
}

HRESULT selectAllWithValue(IXMLDOMNode* node, const dom::IndexedForm& form, const String& value,
                           Ref<IXMLDOMNodeList>* found) {
    return selectWithValue(
        value, found, [&] { return dom::Selection::selectAll(node, form, value.view(), found); });
}

HRESULT selectAttributeWithValue(IXMLDOMNode* node, const dom::IndexedForm& form,
                                 const String& value, const String& name, String* text) {
    if (!text) return E_POINTER;
    *text = String();
    if (!fitsLiteral(value)) return refuseValue(value);
    return dom::Selection::selectOneAttribute(node, form, value.view(), name, text);
}

} // namespace qvr
