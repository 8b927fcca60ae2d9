// The DOM tool: the one place where the model changes the shape of a document. A tool is made on
// the stack for one operation around one node (usually the element of the object at work). This
// base places and takes out plain elements and reads why a document refused to load; the kinds of
// change the model makes each have a tool of their own over it:
//
//   core/child_tool.h      children kept by key: insertion, removal, lists, positions, key checks
//   core/singleton_tool.h  single children, each in its place among its neighbours
//   core/row_tool.h        the rows of a table and the links of its cells to them
//
// and the factory (core/object_factory.h, createObjectOf) turns an element into the object of
// its class. The tools take the catalog and parent objects themselves: a caller that holds them
// through cookies resolves those first.
//
// The tools report nothing themselves: they answer statuses and their callers decide what to say.
// XPath texts are built by plain concatenation of fixed pieces and values; a value holding an
// apostrophe breaks the expression and the selection's failure comes back as it is.
#pragma once

#include <qvr/dom.h>
#include <qvr/object.h>

namespace qvr {

class CXMLDOMTool {
public:
    // An empty tool: operations that need a node answer E_FAIL.
    CXMLDOMTool() = default;
    // Around `node`; its document is asked of the node.
    explicit CXMLDOMTool(IXMLDOMNode* node);

    IXMLDOMNode* node() const { return node_.get(); }
    IXMLDOMDocument* ownerDocument() const { return ownerDocument_.get(); }

    // --- Plain elements (Desc, TableRef and other data without a class) ---------------------
    // Appends a new element `tag` to the tool's node.
    HRESULT appendNewElement(const String& tag, Ref<IXMLDOMElement>* element);
    // Inserts `node` before `reference` (null appends) in the tool's node.
    HRESULT insertNode(IXMLDOMNode* node, IXMLDOMNode* reference);
    HRESULT removeNode(IXMLDOMNode* child);

    // --- Texts ------------------------------------------------------------------------------
    // Why the tool's document refused to load, in the form of msgXmlParseError; empty without
    // one.
    String parseErrorText() const;

protected:
    // Links a child whose element `node` has just been placed below the tool's node: its
    // catalog, and its parent. A child that can't be linked (out of memory) is taken out again,
    // so that an insertion happens whole or not at all; other statuses don't concern it.
    HRESULT linkChild(IXMLDOMNode* node, IQVRCatalogObject* child, IQVRCatalogObject* catalog,
                      IQVRCatalogObject* parent);

    Ref<IXMLDOMDocument> ownerDocument_;
    Ref<IXMLDOMNode> node_;
};

} // namespace qvr
