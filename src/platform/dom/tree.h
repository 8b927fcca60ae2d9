// The state of one libxml2 document: the document itself, its lookup tables and its XPath context.
// A DOM document object owns its current tree; node objects share it, so a tree whose document
// object has loaded another file lives on while nodes of it are still referred to.
#pragma once

#include <memory>

#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <qvr/dom.h>

#include "platform/dom/index.h"

namespace qvr::dom {

class Document;

class Tree : public std::enable_shared_from_this<Tree> {
public:
    // Takes ownership of `doc`.
    Tree(xmlDocPtr doc, Document* owner);
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    // The tree a node belongs to.
    static Tree* of(xmlNodePtr node) { return static_cast<Tree*>(node->doc->_private); }

    xmlDocPtr doc() const { return doc_; }
    Document* owner() const { return owner_; }
    IXMLDOMDocument* ownerFace() const;
    Index& index() { return index_; }
    // The document's XPath context, made on first use and reused.
    xmlXPathContextPtr xpathContext();

    // The object of `node`, made on first use; there is one object per node. Null for namespace
    // nodes.
    Ref<IXMLDOMNode> wrap(xmlNodePtr node);

private:
    xmlDocPtr doc_;
    Document* owner_;
    Index index_;
    xmlXPathContextPtr xpath_ = nullptr;
};

} // namespace qvr::dom
