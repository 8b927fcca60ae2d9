// Selections with a value pasted into a quoted literal, as the model builds them by plain
// concatenation (`*[@id = '` value `']`). A value holding an apostrophe would end the literal and
// could turn the rest of the value into query text, so such a selection is refused as malformed
// (E_FAIL, the status of a selection that does not parse) and never evaluated.
#pragma once

#include <string_view>

#include <qvr/dom.h>

#include "platform/dom/indexed_forms.h"

namespace qvr {

// Whether `value` can stand inside the quoted literal of a selection.
bool fitsLiteral(const String& value);
// head + value + tail, or null when the value cannot stand inside the literal.
String selectionWithValue(std::string_view head, const String& value, std::string_view tail);

HRESULT selectOneWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNode>* found);
HRESULT selectAllWithValue(IXMLDOMNode* node, std::string_view head, const String& value,
                           std::string_view tail, Ref<IXMLDOMNodeList>* found);

// The same with one of the forms the DOM layer answers from its lookup tables.
inline String selectionWithValue(const dom::IndexedForm& form, const String& value) {
    return selectionWithValue(form.head, value, form.tail);
}
// These go to the lookup tables straight, without writing the selection's text.
HRESULT selectOneWithValue(IXMLDOMNode* node, const dom::IndexedForm& form, const String& value,
                           Ref<IXMLDOMNode>* found);
HRESULT selectAllWithValue(IXMLDOMNode* node, const dom::IndexedForm& form, const String& value,
                           Ref<IXMLDOMNodeList>* found);
// The attribute `name` of the element `form` selects with `value`, without an object for the
// element: S_OK and its value (null when it has none), S_FALSE and null when nothing is selected.
HRESULT selectAttributeWithValue(IXMLDOMNode* node, const dom::IndexedForm& form,
                                 const String& value, const String& name, String* text);

} // namespace qvr
