#include "platform/dom/tree_edit.h"

#include "platform/dom/carriable_text.h"
#include "platform/dom/xml_text.h"

#include <memory>

#include "platform/dom/attribute_access.h"
#include "platform/dom/handle.h"
#include "platform/dom/subtree.h"
#include "platform/dom/tree.h"

namespace qvr::dom {
namespace {

// libxml2 keeps the name of this option of xmlDOMWrapReconcileNamespaces private.
constexpr int kRemoveRedundantNamespaces = 1;

// Which nodes may stand below which: text and references only in elements, a document holds
// elements, comments and processing instructions.
bool mayStandIn(xmlNodePtr parent, xmlNodePtr node) {
    if (parent->type != XML_ELEMENT_NODE && !isDocument(parent)) return false;
    switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE: return true;
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_ENTITY_REF_NODE: return parent->type == XML_ELEMENT_NODE;
    default: return false;
    }
}

bool isAncestorOrSelf(xmlNodePtr candidate, xmlNodePtr node) {
    for (xmlNodePtr p = node; p; p = p->parent)
        if (p == candidate) return true;
    return false;
}

xmlNodePtr rootElement(xmlNodePtr document) {
    for (xmlNodePtr child = document->children; child; child = child->next)
        if (child->type == XML_ELEMENT_NODE) return child;
    return nullptr;
}

// Whether a subtree refers to or declares namespaces; most rows and cells do neither, and then
// there is nothing to reconcile.
bool usesNamespaces(xmlNodePtr top) {
    return walkSubtreeWithAttributes(
        top, [](xmlNodePtr n) { return n->ns || (n->type == XML_ELEMENT_NODE && n->nsDef); });
}

void reconcileNamespaces(xmlNodePtr node, int options) {
    if (node->type == XML_ELEMENT_NODE && usesNamespaces(node))
        xmlDOMWrapReconcileNamespaces(nullptr, node, options);
}

bool isChildOf(xmlNodePtr node, xmlNodePtr parent) {
    return node->parent == parent && node->type != XML_ATTRIBUTE_NODE;
}

// Holds the tree a node comes from, and its document object, until a change is complete: the
// last reference to them may be a node object that moves to another document on the way.
struct KeepAlive {
    explicit KeepAlive(xmlNodePtr node)
        : tree(Tree::of(node)->shared_from_this()), document(tree->ownerFace()) {}
    std::shared_ptr<Tree> tree;
    Ref<IXMLDOMDocument> document;
};

} // namespace

HRESULT TreeEdit::checkInsert(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref,
                              xmlNodePtr leaving) {
    if (ref && !isChildOf(ref, parent)) return E_INVALIDARG;
    if (!mayStandIn(parent, node) || isAncestorOrSelf(node, parent)) return E_FAIL;
    if (isDocument(parent) && node->type == XML_ELEMENT_NODE) {
        xmlNodePtr root = rootElement(parent);
        if (root && root != node && root != leaving) return E_FAIL;
    }
    return S_OK;
}

HRESULT TreeEdit::insert(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref) {
    if (HRESULT hr = checkInsert(parent, node, ref, nullptr); hr != S_OK) return hr;
    if (node == ref) return S_OK;
    KeepAlive keep(node);
    detach(node);
    if (node->doc != parent->doc && !adopt(node, parent)) return E_FAIL;
    link(parent, node, ref);
    return S_OK;
}

HRESULT TreeEdit::remove(xmlNodePtr parent, xmlNodePtr child) {
    if (!isChildOf(child, parent)) return E_INVALIDARG;
    if (child->type == XML_DTD_NODE) return E_FAIL;
    KeepAlive keep(child);
    detach(child);
    freeIfUnreferenced(child);
    return S_OK;
}

HRESULT TreeEdit::replace(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr old) {
    if (!isChildOf(old, parent)) return E_INVALIDARG;
    if (old->type == XML_DTD_NODE) return E_FAIL;
    if (node == old) return S_OK;
    if (HRESULT hr = checkInsert(parent, node, old, old); hr != S_OK) return hr;
    KeepAlive keepNode(node);
    KeepAlive keepOld(old);
    detach(node);
    if (node->doc != parent->doc && !adopt(node, parent)) return E_FAIL;
    link(parent, node, old);
    detach(old);
    freeIfUnreferenced(old); // a root replaced by putref_documentElement may have no object
    return S_OK;
}

HRESULT TreeEdit::setText(xmlNodePtr node, const String& text) {
    const TextKind kind = node->type == XML_COMMENT_NODE ? TextKind::Comment
                          : node->type == XML_PI_NODE    ? TextKind::ProcessingInstruction
                                                         : TextKind::Content;
    // An attribute's value is checked where every attribute value is.
    if (node->type != XML_ATTRIBUTE_NODE)
        if (HRESULT hr = checkCarriable(text, "The text", kind); hr != S_OK) return hr;
    const auto* bytes = reinterpret_cast<const xmlChar*>(text.c_str());
    const int length = static_cast<int>(text.byteLength());
    switch (node->type) {
    case XML_ELEMENT_NODE: {
        xmlNodePtr only = node->children;
        if (only && !only->next && only->type == XML_TEXT_NODE && !only->_private && length > 0) {
            // The common case of a value change: keep the one text node, change its content.
            xmlNodeSetContentLen(only, bytes, length);
            Tree::of(node)->index().textChanged(node);
            return S_OK;
        }
        while (xmlNodePtr child = node->children) {
            detach(child);
            freeIfUnreferenced(child);
        }
        if (length > 0) {
            xmlNodePtr textNode = xmlNewDocTextLen(node->doc, bytes, length);
            if (!textNode) return E_OUTOFMEMORY;
            link(node, textNode, nullptr);
        }
        return S_OK;
    }
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
        xmlNodeSetContentLen(node, bytes, length);
        Tree::of(node)->index().textChanged(node);
        return S_OK;
    case XML_ATTRIBUTE_NODE:
        return AttributeAccess::setValue(reinterpret_cast<xmlAttrPtr>(node), text);
    default: return E_FAIL;
    }
}

xmlNodePtr TreeEdit::copy(xmlNodePtr node, bool deep) {
    xmlNodePtr result = nullptr;
    switch (node->type) {
    case XML_ATTRIBUTE_NODE:
        result = reinterpret_cast<xmlNodePtr>(
            AttributeAccess::copyAlone(reinterpret_cast<xmlAttrPtr>(node)));
        break;
    case XML_ELEMENT_NODE:
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
    case XML_ENTITY_REF_NODE:
        // 2 copies an element with its attributes and declarations but without children.
        result = xmlDocCopyNode(node, node->doc, deep ? 1 : 2);
        break;
    default: return nullptr;
    }
    if (!result) return nullptr;
    xmlDictPtr dict = node->doc->dict;
    // A copied entity reference takes its name from the document's dictionary, and libxml2's
    // adoption into another document leaves the names of references alone: the other document
    // would free a string of this one's dictionary. Give it its own. An attribute's value holds
    // references too.
    const auto ownName = [&](xmlNodePtr n) {
        if (n->type == XML_ENTITY_REF_NODE && dict && xmlDictOwns(dict, n->name) == 1)
            n->name = xmlStrdup(n->name);
    };
    walkSubtreeWithAttributes(result, [&](xmlNodePtr n) {
        n->_private = nullptr;
        ownName(n);
        if (n->type == XML_ATTRIBUTE_NODE)
            for (xmlNodePtr part = n->children; part; part = part->next) ownName(part);
        return false;
    });
    if (result->type != XML_ATTRIBUTE_NODE) reconcileNamespaces(result, 0);
    return result;
}

void TreeEdit::releaseUnreferenced(xmlNodePtr node) {
    xmlNodePtr top = node;
    while (top->parent) {
        top = top->parent;
        if (top->_private && !isDocument(top)) return;
    }
    if (!isDocument(top)) freeIfUnreferenced(top);
}

void TreeEdit::detach(xmlNodePtr node) {
    xmlNodePtr parent = node->parent;
    if (!parent) return;
    Index& index = Tree::of(node)->index();
    index.removing(node);
    xmlUnlinkNode(node);
    index.textChanged(parent);
    // Declarations of the former ancestors must not be referred to from a detached subtree.
    reconcileNamespaces(node, 0);
    // The node may have held the last reference into the detached subtree it leaves.
    releaseUnreferenced(parent);
}

void TreeEdit::link(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref) {
    node->parent = parent;
    if (ref) {
        node->next = ref;
        node->prev = ref->prev;
        if (ref->prev)
            ref->prev->next = node;
        else
            parent->children = node;
        ref->prev = node;
    } else {
        node->next = nullptr;
        node->prev = parent->last;
        if (parent->last)
            parent->last->next = node;
        else
            parent->children = node;
        parent->last = node;
    }
    reconcileNamespaces(node, kRemoveRedundantNamespaces);
    Index& index = Tree::of(parent)->index();
    index.inserted(node);
    index.textChanged(parent);
}

bool TreeEdit::adopt(xmlNodePtr node, xmlNodePtr parent) {
    if (xmlDOMWrapAdoptNode(nullptr, node->doc, node, parent->doc,
                            parent->type == XML_ELEMENT_NODE ? parent : nullptr, 0) != 0)
        return false;
    std::shared_ptr<Tree> tree = Tree::of(parent)->shared_from_this();
    walkSubtreeWithAttributes(node, [&](xmlNodePtr n) {
        if (n->_private) Handle::of(n)->rebind(tree);
        return false;
    });
    return true;
}

void TreeEdit::freeIfUnreferenced(xmlNodePtr top) {
    if (walkSubtreeWithAttributes(top, [](xmlNodePtr n) { return n->_private != nullptr; })) return;
    xmlFreeNode(top);
}

} // namespace qvr::dom
