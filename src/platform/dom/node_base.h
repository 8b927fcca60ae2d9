// The node operations shared by every node object (elements, other nodes, the document), over one
// libxml2 node. The object keeps the tree of its node alive and, for nodes other than the
// document, the document object too; when the last object inside a detached subtree goes, the
// subtree is freed.
#pragma once

#include <memory>

#include <libxml/tree.h>

#include <qvr/dom.h>

#include "platform/com/object_base.h"
#include "platform/dom/handle.h"

namespace qvr::dom {

template <class I>
class NodeBase : public ObjectBase<I>, public Handle {
public:
    NodeBase(xmlNodePtr node, std::shared_ptr<Tree> tree);

    IXMLDOMNode* face() override { return this; }
    xmlNodePtr xml() const override { return node_; }
    void rebind(const std::shared_ptr<Tree>& tree) override;

    HRESULT get_nodeName(String* name) override;
    HRESULT get_nodeType(DOMNodeType* type) override;
    HRESULT get_nodeValue(Variant* value) override;
    HRESULT get_nodeTypedValue(Variant* value) override;
    HRESULT get_text(String* text) override;
    HRESULT put_text(const String& text) override;
    HRESULT get_xml(String* xml) override;

    HRESULT get_parentNode(Ref<IXMLDOMNode>* parent) override;
    HRESULT get_firstChild(Ref<IXMLDOMNode>* child) override;
    HRESULT get_lastChild(Ref<IXMLDOMNode>* child) override;
    HRESULT get_nextSibling(Ref<IXMLDOMNode>* sibling) override;
    HRESULT get_previousSibling(Ref<IXMLDOMNode>* sibling) override;
    HRESULT get_childNodes(Ref<IXMLDOMNodeList>* children) override;
    HRESULT hasChildNodes(VARIANT_BOOL* has) override;
    HRESULT get_ownerDocument(Ref<IXMLDOMDocument>* document) override;

    HRESULT insertBefore(IXMLDOMNode* newChild, IXMLDOMNode* refChild,
                         Ref<IXMLDOMNode>* inserted) override;
    HRESULT appendChild(IXMLDOMNode* newChild, Ref<IXMLDOMNode>* inserted) override;
    HRESULT removeChild(IXMLDOMNode* child, Ref<IXMLDOMNode>* removed) override;
    HRESULT replaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild,
                         Ref<IXMLDOMNode>* replaced) override;
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IXMLDOMNode>* clone) override;

    HRESULT selectSingleNode(const String& xpath, Ref<IXMLDOMNode>* node) override;
    HRESULT selectNodes(const String& xpath, Ref<IXMLDOMNodeList>* nodes) override;

protected:
    ~NodeBase() override;

    // Replaces the node and tree (the document object after a load).
    void reset(xmlNodePtr node, std::shared_ptr<Tree> tree);
    Tree& tree() const { return *tree_; }
    // Hands out the object of `node` (S_FALSE and null when there is none).
    HRESULT handOut(xmlNodePtr node, Ref<IXMLDOMNode>* out);

private:
    xmlNodePtr node_;
    std::shared_ptr<Tree> tree_;
    // The document object, held by every node but the document itself.
    Ref<IXMLDOMDocument> owner_;
};

} // namespace qvr::dom
