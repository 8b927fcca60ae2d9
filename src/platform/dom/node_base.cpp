#include "platform/dom/node_base.h"
#include "platform/dom/xml_text.h"

#include "platform/com/failure.h"
#include "platform/dom/document.h"
#include "platform/dom/document_io.h"
#include "platform/dom/node_list.h"
#include "platform/dom/selection.h"
#include "platform/dom/tree.h"
#include "platform/dom/tree_edit.h"

namespace qvr::dom {
namespace {

struct NodeKind {
    xmlElementType libxml;
    DOMNodeType type;
    const char* fixedName; // null: the node's own name
    bool hasValue;         // nodeValue is its text
};

constexpr NodeKind kNodeKinds[] = {
    {XML_ELEMENT_NODE, NODE_ELEMENT, nullptr, false},
    {XML_ATTRIBUTE_NODE, NODE_ATTRIBUTE, nullptr, true},
    {XML_TEXT_NODE, NODE_TEXT, "#text", true},
    {XML_CDATA_SECTION_NODE, NODE_CDATA_SECTION, "#cdata-section", true},
    {XML_ENTITY_REF_NODE, NODE_ENTITY_REFERENCE, nullptr, false},
    {XML_ENTITY_NODE, NODE_ENTITY, nullptr, false},
    {XML_PI_NODE, NODE_PROCESSING_INSTRUCTION, nullptr, true},
    {XML_COMMENT_NODE, NODE_COMMENT, "#comment", true},
    {XML_DOCUMENT_NODE, NODE_DOCUMENT, "#document", false},
    {XML_HTML_DOCUMENT_NODE, NODE_DOCUMENT, "#document", false},
    {XML_DOCUMENT_TYPE_NODE, NODE_DOCUMENT_TYPE, nullptr, false},
    {XML_DTD_NODE, NODE_DOCUMENT_TYPE, nullptr, false},
    {XML_DOCUMENT_FRAG_NODE, NODE_DOCUMENT_FRAGMENT, "#document-fragment", false},
    {XML_NOTATION_NODE, NODE_NOTATION, nullptr, false},
};

const NodeKind& kindOf(xmlNodePtr node) {
    static constexpr NodeKind unknown{XML_ELEMENT_NODE, NODE_INVALID, "", false};
    for (const auto& kind : kNodeKinds)
        if (kind.libxml == node->type) return kind;
    return unknown;
}

String nameOf(xmlNodePtr node) {
    const NodeKind& kind = kindOf(node);
    if (kind.fixedName) return String(kind.fixedName);
    std::string name;
    if ((node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE) && node->ns &&
        node->ns->prefix) {
        name = chars(node->ns->prefix);
        name += ':';
    }
    return String(name + chars(node->name));
}

// Children the layer shows: those of elements and of the document. The children of an entity
// reference belong to the entity, an attribute's text is its value.
xmlNodePtr shownChildren(xmlNodePtr node) {
    return node->type == XML_ELEMENT_NODE || isDocument(node) ? node->children : nullptr;
}

bool hasSiblings(xmlNodePtr node) {
    return node->type != XML_ATTRIBUTE_NODE && !isDocument(node);
}

template <class T>
HRESULT clearOut(T* out) {
    if (!out) return E_POINTER;
    *out = T();
    return S_OK;
}

} // namespace

template <class I>
NodeBase<I>::NodeBase(xmlNodePtr node, std::shared_ptr<Tree> tree)
    : node_(node), tree_(std::move(tree)) {
    if (node_ && !isDocument(node_)) {
        node_->_private = static_cast<Handle*>(this);
        owner_ = Ref<IXMLDOMDocument>(tree_->ownerFace());
    }
}

template <class I>
NodeBase<I>::~NodeBase() {
    if (node_ && !isDocument(node_)) {
        node_->_private = nullptr;
        TreeEdit::releaseUnreferenced(node_);
    }
}

template <class I>
void NodeBase<I>::rebind(const std::shared_ptr<Tree>& tree) {
    owner_ = Ref<IXMLDOMDocument>(tree->ownerFace());
    tree_ = tree;
}

template <class I>
void NodeBase<I>::reset(xmlNodePtr node, std::shared_ptr<Tree> tree) {
    node_ = node;
    tree_ = std::move(tree);
}

template <class I>
HRESULT NodeBase<I>::handOut(xmlNodePtr node, Ref<IXMLDOMNode>* out) {
    if (!node) return S_FALSE;
    *out = Tree::of(node)->wrap(node);
    return *out ? S_OK : S_FALSE;
}

template <class I>
HRESULT NodeBase<I>::get_nodeName(String* name) {
    if (HRESULT hr = clearOut(name); hr != S_OK) return hr;
    return guarded([&] {
        *name = nameOf(node_);
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::get_nodeType(DOMNodeType* type) {
    if (!type) return E_POINTER;
    *type = kindOf(node_).type;
    return S_OK;
}

template <class I>
HRESULT NodeBase<I>::get_nodeValue(Variant* value) {
    if (HRESULT hr = clearOut(value); hr != S_OK) return hr;
    return guarded([&] {
        *value = kindOf(node_).hasValue ? Variant(contentOf(node_)) : Variant::null();
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::get_nodeTypedValue(Variant* value) {
    if (node_->type != XML_ELEMENT_NODE) return get_nodeValue(value);
    if (HRESULT hr = clearOut(value); hr != S_OK) return hr;
    return guarded([&] {
        *value = Variant(contentOf(node_));
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::get_text(String* text) {
    if (HRESULT hr = clearOut(text); hr != S_OK) return hr;
    return guarded([&] {
        *text = contentOf(node_);
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::put_text(const String& text) {
    if (isDocument(node_)) return E_FAIL;
    return guarded([&] { return TreeEdit::setText(node_, text); });
}

template <class I>
HRESULT NodeBase<I>::get_xml(String* xml) {
    if (HRESULT hr = clearOut(xml); hr != S_OK) return hr;
    return guarded([&] {
        *xml = String(DocumentIO::nodeXml(node_));
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::get_parentNode(Ref<IXMLDOMNode>* parent) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(parent); hr != S_OK) return hr;
    return guarded([&] { return handOut(hasSiblings(node_) ? node_->parent : nullptr, parent); });
}

template <class I>
HRESULT NodeBase<I>::get_firstChild(Ref<IXMLDOMNode>* child) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(child); hr != S_OK) return hr;
    return guarded([&] { return handOut(shownChildren(node_), child); });
}

template <class I>
HRESULT NodeBase<I>::get_lastChild(Ref<IXMLDOMNode>* child) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(child); hr != S_OK) return hr;
    return guarded([&] { return handOut(shownChildren(node_) ? node_->last : nullptr, child); });
}

template <class I>
HRESULT NodeBase<I>::get_nextSibling(Ref<IXMLDOMNode>* sibling) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(sibling); hr != S_OK) return hr;
    return guarded([&] { return handOut(hasSiblings(node_) ? node_->next : nullptr, sibling); });
}

template <class I>
HRESULT NodeBase<I>::get_previousSibling(Ref<IXMLDOMNode>* sibling) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(sibling); hr != S_OK) return hr;
    return guarded([&] { return handOut(hasSiblings(node_) ? node_->prev : nullptr, sibling); });
}

template <class I>
HRESULT NodeBase<I>::get_childNodes(Ref<IXMLDOMNodeList>* children) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(children); hr != S_OK) return hr;
    return guarded([&] {
        std::vector<Ref<IXMLDOMNode>> nodes;
        for (xmlNodePtr child = shownChildren(node_); child; child = child->next)
            if (Ref<IXMLDOMNode> wrapped = Tree::of(child)->wrap(child)) nodes.push_back(wrapped);
        *children = makeObject<NodeList>(std::move(nodes));
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::hasChildNodes(VARIANT_BOOL* has) {
    if (!has) return E_POINTER;
    *has = shownChildren(node_) ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

template <class I>
HRESULT NodeBase<I>::get_ownerDocument(Ref<IXMLDOMDocument>* document) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(document); hr != S_OK) return hr;
    *document = owner_;
    return owner_ ? S_OK : S_FALSE;
}

template <class I>
HRESULT NodeBase<I>::insertBefore(IXMLDOMNode* newChild, IXMLDOMNode* refChild,
                                  Ref<IXMLDOMNode>* inserted) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (inserted) *inserted = nullptr;
    xmlNodePtr node = Handle::nodeOf(newChild);
    xmlNodePtr ref = refChild ? Handle::nodeOf(refChild) : nullptr;
    if (!node || (refChild && !ref)) return E_INVALIDARG;
    return guarded([&] {
        const HRESULT status = TreeEdit::insert(node_, node, ref);
        if (SUCCEEDED(status) && inserted) *inserted = Ref<IXMLDOMNode>(newChild);
        return status;
    });
}

template <class I>
HRESULT NodeBase<I>::appendChild(IXMLDOMNode* newChild, Ref<IXMLDOMNode>* inserted) {
    return insertBefore(newChild, nullptr, inserted);
}

template <class I>
HRESULT NodeBase<I>::removeChild(IXMLDOMNode* child, Ref<IXMLDOMNode>* removed) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (removed) *removed = nullptr;
    xmlNodePtr node = Handle::nodeOf(child);
    if (!node) return E_INVALIDARG;
    return guarded([&] {
        const HRESULT status = TreeEdit::remove(node_, node);
        if (SUCCEEDED(status) && removed) *removed = Ref<IXMLDOMNode>(child);
        return status;
    });
}

template <class I>
HRESULT NodeBase<I>::replaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild,
                                  Ref<IXMLDOMNode>* replaced) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (replaced) *replaced = nullptr;
    xmlNodePtr node = Handle::nodeOf(newChild);
    xmlNodePtr old = Handle::nodeOf(oldChild);
    if (!node || !old) return E_INVALIDARG;
    return guarded([&] {
        const HRESULT status = TreeEdit::replace(node_, node, old);
        if (SUCCEEDED(status) && replaced) *replaced = Ref<IXMLDOMNode>(oldChild);
        return status;
    });
}

template <class I>
HRESULT NodeBase<I>::cloneNode(VARIANT_BOOL deep, Ref<IXMLDOMNode>* clone) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(clone); hr != S_OK) return hr;
    return guarded([&] {
        xmlNodePtr copy = TreeEdit::copy(node_, deep != VARIANT_FALSE);
        if (!copy) return E_FAIL;
        try {
            *clone = Tree::of(copy)->wrap(copy);
        } catch (...) {
            xmlFreeNode(copy);
            throw;
        }
        return S_OK;
    });
}

template <class I>
HRESULT NodeBase<I>::selectSingleNode(const String& xpath, Ref<IXMLDOMNode>* node) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(node); hr != S_OK) return hr;
    if (xpath.isNull()) return E_INVALIDARG;
    return guarded([&] {
        std::vector<xmlNodePtr> nodes;
        if (HRESULT hr = Selection::select(node_, xpath.str(), true, &nodes); FAILED(hr)) return hr;
        return handOut(nodes.empty() ? nullptr : nodes.front(), node);
    });
}

template <class I>
HRESULT NodeBase<I>::selectNodes(const String& xpath, Ref<IXMLDOMNodeList>* nodes) {
    const Ref<IXMLDOMNode> self(this); // the out value may hold the last reference
    if (HRESULT hr = clearOut(nodes); hr != S_OK) return hr;
    if (xpath.isNull()) return E_INVALIDARG;
    return guarded([&] {
        std::vector<xmlNodePtr> selected;
        if (HRESULT hr = Selection::select(node_, xpath.str(), false, &selected); FAILED(hr))
            return hr;
        std::vector<Ref<IXMLDOMNode>> wrapped;
        wrapped.reserve(selected.size());
        for (xmlNodePtr n : selected)
            if (Ref<IXMLDOMNode> object = Tree::of(n)->wrap(n)) wrapped.push_back(object);
        *nodes = makeObject<NodeList>(std::move(wrapped));
        return S_OK;
    });
}

template class NodeBase<IXMLDOMNode>;
template class NodeBase<IXMLDOMElement>;
template class NodeBase<IXMLDOMDocument>;

} // namespace qvr::dom
