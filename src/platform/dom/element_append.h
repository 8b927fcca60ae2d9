// A new element appended to an element in one step: what createElement, setAttribute, put_text
// and appendChild do one after another, with the same checks and the same lookup tables kept,
// but without an object for the new element. For the model's loops that write many cells.
#pragma once

#include <qvr/dom.h>

namespace qvr::dom {

class ElementAppend {
public:
    // Appends to `parent` (an element of this layer) a new element `tag` holding `text`, with the
    // attribute `attribute` set to `value`. E_INVALIDARG for a parent that is no element of this
    // layer, E_FAIL for a name that is not a qualified name, and the report of setAttribute or
    // put_text (E_INVALIDARG) for a value or text a document cannot carry; nothing is appended on
    // failure.
    static HRESULT textElement(IXMLDOMNode* parent, const String& tag, const String& attribute,
                               const String& value, const String& text);
};

} // namespace qvr::dom
