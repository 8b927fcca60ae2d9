// The XML DOM that the model stands on, and that `get_domNode` hands to clients: documents,
// nodes, elements, node lists and the parse error record. Selections are XPath 1.0.
#pragma once

#include <cstdint>

#include <qvr/com.h>
#include <qvr/string.h>
#include <qvr/variant.h>

namespace qvr {

enum DOMNodeType : std::int32_t {
    NODE_INVALID = 0,
    NODE_ELEMENT = 1,
    NODE_ATTRIBUTE = 2,
    NODE_TEXT = 3,
    NODE_CDATA_SECTION = 4,
    NODE_ENTITY_REFERENCE = 5,
    NODE_ENTITY = 6,
    NODE_PROCESSING_INSTRUCTION = 7,
    NODE_COMMENT = 8,
    NODE_DOCUMENT = 9,
    NODE_DOCUMENT_TYPE = 10,
    NODE_DOCUMENT_FRAGMENT = 11,
    NODE_NOTATION = 12,
};

class IXMLDOMDocument;
class IXMLDOMElement;
class IXMLDOMNodeList;
class IXMLDOMParseError;

// A node of a document. A node stands in no tree until inserted (createElement), keeps living
// after removal while any reference to it or into its subtree exists, and can move between
// documents. Out values are cleared first; a null out pointer gives E_POINTER.
class QVR_API IXMLDOMNode : public IUnknown {
public:
    QVR_INTERFACE_ID(IXMLDOMNode)

    virtual HRESULT get_nodeName(String* name) = 0;
    virtual HRESULT get_nodeType(DOMNodeType* type) = 0;
    // Attribute, text, comment, processing instruction: the value as a string; element and
    // document: VT_NULL.
    virtual HRESULT get_nodeValue(Variant* value) = 0;
    // The text of an element (elements carry no data type here), else as get_nodeValue.
    virtual HRESULT get_nodeTypedValue(Variant* value) = 0;
    // Text content of the node and its descendants; put_text replaces all children by one text.
    virtual HRESULT get_text(String* text) = 0;
    virtual HRESULT put_text(const String& text) = 0;
    // The node's XML (the document's: the whole document with its declaration).
    virtual HRESULT get_xml(String* xml) = 0;

    // Navigation: S_FALSE and a null out value where there is no such node.
    virtual HRESULT get_parentNode(Ref<IXMLDOMNode>* parent) = 0;
    virtual HRESULT get_firstChild(Ref<IXMLDOMNode>* child) = 0;
    virtual HRESULT get_lastChild(Ref<IXMLDOMNode>* child) = 0;
    virtual HRESULT get_nextSibling(Ref<IXMLDOMNode>* sibling) = 0;
    virtual HRESULT get_previousSibling(Ref<IXMLDOMNode>* sibling) = 0;
    virtual HRESULT get_childNodes(Ref<IXMLDOMNodeList>* children) = 0;
    virtual HRESULT hasChildNodes(VARIANT_BOOL* has) = 0;
    virtual HRESULT get_ownerDocument(Ref<IXMLDOMDocument>* document) = 0;

    // Tree changes. `refChild` null appends; a `newChild` that stands elsewhere (in this or
    // another document) is moved. A `refChild` or `oldChild` that is not a child of this node
    // gives E_INVALIDARG. The out pointer may be null.
    virtual HRESULT insertBefore(IXMLDOMNode* newChild, IXMLDOMNode* refChild,
                                 Ref<IXMLDOMNode>* inserted) = 0;
    virtual HRESULT appendChild(IXMLDOMNode* newChild, Ref<IXMLDOMNode>* inserted) = 0;
    virtual HRESULT removeChild(IXMLDOMNode* child, Ref<IXMLDOMNode>* removed) = 0;
    virtual HRESULT replaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild,
                                 Ref<IXMLDOMNode>* replaced) = 0;
    // A copy in the same document, standing in no tree; deep copies the subtree.
    virtual HRESULT cloneNode(VARIANT_BOOL deep, Ref<IXMLDOMNode>* clone) = 0;

    // XPath 1.0 relative to this node (also a detached one). selectSingleNode answers S_FALSE and
    // a null node when nothing is selected; a malformed expression gives E_FAIL.
    virtual HRESULT selectSingleNode(const String& xpath, Ref<IXMLDOMNode>* node) = 0;
    virtual HRESULT selectNodes(const String& xpath, Ref<IXMLDOMNodeList>* nodes) = 0;
};

class QVR_API IXMLDOMElement : public IXMLDOMNode {
public:
    QVR_INTERFACE_ID(IXMLDOMElement)

    virtual HRESULT get_tagName(String* name) = 0;
    // Attributes by qualified name ("id", "xlink:href", "xml:lang", "xmlns:xlink"). An absent
    // attribute answers S_FALSE: a null String, or VT_NULL in the Variant form.
    virtual HRESULT getAttribute(const String& name, String* value) = 0;
    virtual HRESULT getAttribute(const String& name, Variant* value) = 0;
    virtual HRESULT setAttribute(const String& name, const String& value) = 0;
    // Removing an absent attribute is S_FALSE.
    virtual HRESULT removeAttribute(const String& name) = 0;
};

class QVR_API IXMLDOMNodeList : public IUnknown {
public:
    QVR_INTERFACE_ID(IXMLDOMNodeList)
    virtual HRESULT get_length(std::int32_t* length) = 0;
    // Zero-based; an index out of range gives S_FALSE and a null node.
    virtual HRESULT get_item(std::int32_t index, Ref<IXMLDOMNode>* node) = 0;
};

// What went wrong in the last load: all zero and empty after a load that worked.
class QVR_API IXMLDOMParseError : public IUnknown {
public:
    QVR_INTERFACE_ID(IXMLDOMParseError)
    virtual HRESULT get_errorCode(std::int32_t* code) = 0;
    virtual HRESULT get_url(String* url) = 0;
    virtual HRESULT get_reason(String* reason) = 0;
    virtual HRESULT get_srcText(String* text) = 0;
    virtual HRESULT get_line(std::int32_t* line) = 0;
    virtual HRESULT get_linepos(std::int32_t* position) = 0;
    virtual HRESULT get_filepos(std::int32_t* position) = 0;
};

class QVR_API IXMLDOMDocument : public IXMLDOMNode {
public:
    QVR_INTERFACE_ID(IXMLDOMDocument)

    // S_FALSE and a null element when the document is empty.
    virtual HRESULT get_documentElement(Ref<IXMLDOMElement>* root) = 0;
    // Sets or replaces the root element.
    virtual HRESULT putref_documentElement(IXMLDOMElement* root) = 0;
    virtual HRESULT createElement(const String& tagName, Ref<IXMLDOMElement>* element) = 0;
    virtual HRESULT createTextNode(const String& text, Ref<IXMLDOMNode>* node) = 0;
    virtual HRESULT createComment(const String& text, Ref<IXMLDOMNode>* node) = 0;
    virtual HRESULT createProcessingInstruction(const String& target, const String& data,
                                                Ref<IXMLDOMNode>* node) = 0;

    // Loads from a path or a file: URL (given as text in the variant), synchronously, without
    // network access or external entities. `ok` is VARIANT_TRUE on success; on failure the
    // status is S_FALSE, the document is empty and the parse error record tells why.
    virtual HRESULT load(const Variant& source, VARIANT_BOOL* ok) = 0;
    virtual HRESULT loadXML(const String& xml, VARIANT_BOOL* ok) = 0;
    // Writes indented UTF-8 to a path or file: URL: a temporary file beside the target, renamed
    // over it, so a failed save leaves the old file as it was.
    virtual HRESULT save(const Variant& destination) = 0;
    // The URL of the last successful load (a file: URL), or null.
    virtual HRESULT get_url(String* url) = 0;
    virtual HRESULT get_parseError(Ref<IXMLDOMParseError>* error) = 0;
    // Loading is always synchronous; kept for callers that set it.
    virtual HRESULT put_async(VARIANT_BOOL async) = 0;
};

// A new, empty document.
QVR_API HRESULT CreateDOMDocument(Ref<IXMLDOMDocument>* document);

} // namespace qvr
