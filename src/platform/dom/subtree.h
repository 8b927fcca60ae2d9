// Walks over a subtree without recursion, in document order. Children of an entity reference
// belong to the entity's declaration, not to the tree, and are never visited; neither are the
// declarations inside a document type node.
#pragma once

#include <libxml/tree.h>

namespace qvr::dom {

inline bool descendsInto(xmlNodePtr node) {
    return node->children && node->type != XML_ENTITY_REF_NODE &&
           node->type != XML_ATTRIBUTE_NODE && node->type != XML_DTD_NODE;
}

// Calls `visit(node)` for `top` and every node below it (attributes not included) until it
// returns true. Answers whether a visit stopped the walk.
template <class Visit>
bool walkSubtree(xmlNodePtr top, Visit&& visit) {
    xmlNodePtr node = top;
    while (node) {
        if (visit(node)) return true;
        if (descendsInto(node)) {
            node = node->children;
            continue;
        }
        while (node != top && !node->next) node = node->parent;
        if (node == top) break;
        node = node->next;
    }
    return false;
}

// Same, visiting the attribute nodes of each element right after the element.
template <class Visit>
bool walkSubtreeWithAttributes(xmlNodePtr top, Visit&& visit) {
    return walkSubtree(top, [&](xmlNodePtr node) {
        if (visit(node)) return true;
        if (node->type != XML_ELEMENT_NODE) return false;
        for (xmlAttrPtr attr = node->properties; attr; attr = attr->next)
            if (visit(reinterpret_cast<xmlNodePtr>(attr))) return true;
        return false;
    });
}

} // namespace qvr::dom
