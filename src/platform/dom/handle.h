// What a libxml2 node's `_private` points at: the one object that stands for the node. Every node
// object keeps its tree (and so its libxml2 document) alive; the layer reaches the object of a
// node through this base, whatever interface the object offers.
#pragma once

#include <memory>

#include <libxml/tree.h>

#include <qvr/dom.h>

namespace qvr::dom {

class Tree;

class Handle {
public:
    // The interface the object shows to callers.
    virtual IXMLDOMNode* face() = 0;
    // The libxml2 node the object stands for.
    virtual xmlNodePtr xml() const = 0;
    // The node has moved into another tree (another document).
    virtual void rebind(const std::shared_ptr<Tree>& tree) = 0;

    // The object of `node`, or null when none is alive. Not for document nodes.
    static Handle* of(xmlNodePtr node) { return static_cast<Handle*>(node->_private); }
    // The libxml2 node of an object handed in by a caller; null when it is not one of ours.
    static xmlNodePtr nodeOf(IXMLDOMNode* object) {
        auto* handle = detail::interfaceCast<Handle>(object);
        return handle ? handle->xml() : nullptr;
    }

protected:
    ~Handle() = default;
};

} // namespace qvr::dom
