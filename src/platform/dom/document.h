// The document object: the document node's operations, the factories of new nodes, load, save and
// the parse error record. A load replaces the document's tree by a new one; nodes of the former
// tree that are still referred to keep it alive.
#pragma once

#include "platform/dom/node_base.h"
#include "platform/dom/parse_error.h"

namespace qvr::dom {

class Document final : public NodeBase<IXMLDOMDocument> {
public:
    Document();
    // A document over `doc` (a copy made by cloneNode).
    explicit Document(xmlDocPtr doc);

    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IXMLDOMNode>* clone) override;

    HRESULT get_documentElement(Ref<IXMLDOMElement>* root) override;
    HRESULT putref_documentElement(IXMLDOMElement* root) override;
    HRESULT createElement(const String& tagName, Ref<IXMLDOMElement>* element) override;
    HRESULT createTextNode(const String& text, Ref<IXMLDOMNode>* node) override;
    HRESULT createComment(const String& text, Ref<IXMLDOMNode>* node) override;
    HRESULT createProcessingInstruction(const String& target, const String& data,
                                        Ref<IXMLDOMNode>* node) override;
    HRESULT load(const Variant& source, VARIANT_BOOL* ok) override;
    HRESULT loadXML(const String& xml, VARIANT_BOOL* ok) override;
    HRESULT save(const Variant& destination) override;
    HRESULT get_url(String* url) override;
    HRESULT get_parseError(Ref<IXMLDOMParseError>* error) override;
    HRESULT put_async(VARIANT_BOOL async) override;

private:
    xmlDocPtr doc() const { return reinterpret_cast<xmlDocPtr>(xml()); }
    // Makes `doc` (null: a new empty document) the document's tree.
    void replaceTree(xmlDocPtr doc);
    // Loads `text`; on failure the document is left empty and the record tells why.
    HRESULT parseInto(std::string_view text, const String& url, VARIANT_BOOL* ok);
    HRESULT failLoad(ParseErrorRecord record, VARIANT_BOOL* ok);
    // Makes a parsed document the document's tree.
    HRESULT takeTree(xmlDocPtr parsed, const String& url, VARIANT_BOOL* ok);
    HRESULT handOutNew(xmlNodePtr node, Ref<IXMLDOMNode>* out);

    String url_;
    ParseErrorRecord lastError_;
};

} // namespace qvr::dom
