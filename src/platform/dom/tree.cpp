#include "platform/dom/tree.h"

#include <libxml/parser.h>
#include <libxml/xpathInternals.h>

#include "platform/dom/attribute_access.h"
#include "platform/dom/document.h"
#include "platform/dom/element.h"
#include "platform/dom/node.h"

namespace qvr::dom {
namespace {

void dropXPathError(void*, xmlErrorPtr) {}

} // namespace

Tree::Tree(xmlDocPtr doc, Document* owner) : doc_(doc), owner_(owner), index_(doc) {
    doc_->_private = this;
    Index::namingChanged();
}

Tree::~Tree() {
    if (xpath_) xmlXPathFreeContext(xpath_);
    xmlFreeDoc(doc_);
}

IXMLDOMDocument* Tree::ownerFace() const {
    return owner_;
}

xmlXPathContextPtr Tree::xpathContext() {
    if (xpath_) return xpath_;
    xpath_ = xmlXPathNewContext(doc_);
    if (!xpath_) throw std::bad_alloc();
    xpath_->error = &dropXPathError;
    xpath_->userData = nullptr;
    std::size_t count = 0;
    const KnownNamespace* known = AttributeAccess::knownNamespaces(&count);
    for (std::size_t i = 0; i < count; ++i)
        xmlXPathRegisterNs(xpath_, BAD_CAST known[i].prefix, BAD_CAST known[i].uri);
    xmlXPathRegisterNs(xpath_, BAD_CAST "xml", XML_XML_NAMESPACE);
    return xpath_;
}

Ref<IXMLDOMNode> Tree::wrap(xmlNodePtr node) {
    if (!node) return nullptr;
    switch (node->type) {
    case XML_DOCUMENT_NODE:
    case XML_HTML_DOCUMENT_NODE: return Ref<IXMLDOMNode>(owner_);
    case XML_NAMESPACE_DECL: return nullptr;
    default: break;
    }
    if (Handle* handle = Handle::of(node)) return Ref<IXMLDOMNode>(handle->face());
    if (node->type == XML_ELEMENT_NODE) return makeObject<Element>(node, shared_from_this());
    return makeObject<Node>(node, shared_from_this());
}

} // namespace qvr::dom
