// The road of every selection: the shapes the lookup tables answer are answered from them, every
// other expression goes to XPath. Both give the same nodes in the same order.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

#include <qvr/dom.h>

#include "platform/dom/indexed_forms.h"

namespace qvr::dom {

class Selection {
public:
    // The nodes `expression` selects relative to `context`, in document order; at most one when
    // `firstOnly`. E_FAIL for a malformed expression.
    static HRESULT select(xmlNodePtr context, const std::string& expression, bool firstOnly,
                          std::vector<xmlNodePtr>* nodes);

    // What `context` (an object of this layer) answers to selectSingleNode / selectNodes of
    // `form.text(value)`: from the lookup tables without the text, when they cover the context,
    // else by the text itself.
    static HRESULT selectOne(IXMLDOMNode* context, const IndexedForm& form, std::string_view value,
                             Ref<IXMLDOMNode>* found);
    static HRESULT selectAll(IXMLDOMNode* context, const IndexedForm& form, std::string_view value,
                             Ref<IXMLDOMNodeList>* found);
    // The attribute `name` of the element selectOne would answer, read without making an object
    // for the element: S_OK and its value (null when the element has none), or S_FALSE and null
    // when nothing is selected. E_NOINTERFACE when what is selected is no element.
    static HRESULT selectOneAttribute(IXMLDOMNode* context, const IndexedForm& form,
                                      std::string_view value, const String& name, String* text);

    // A walk over the children of `parent` (an element of this layer) in step: the first element
    // after `after` (from the first child when `after` is null) whose name is `tag` (as the node
    // names it, prefix and all) and which has the attribute `attribute` (without prefix). S_OK,
    // with `*equal` telling whether that attribute's value is `value`, and the element in
    // `*found` when it is (no object is made for one that is not); S_FALSE when no such element
    // follows. E_INVALIDARG when `after` is no child of `parent`.
    static HRESULT nextChildWithAttribute(IXMLDOMNode* parent, IXMLDOMNode* after,
                                          std::string_view tag, std::string_view attribute,
                                          std::string_view value, Ref<IXMLDOMNode>* found,
                                          bool* equal);
};

} // namespace qvr::dom
