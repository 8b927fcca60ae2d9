// Every change of a tree's shape goes through here, so that the libxml2 rules hold everywhere:
// nodes are linked by hand (libxml2's own insertion merges adjacent text nodes and frees the node
// it was given), a node that changes documents is adopted first, a detached element gets its own
// namespace declarations, lookup tables hear of every change, and a detached subtree is freed
// exactly when no object refers into it any more.
#pragma once

#include <libxml/tree.h>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr::dom {

class TreeEdit {
public:
    // Inserts `node` into `parent` before `ref` (null: at the end), taking it from wherever it
    // stands, also from another document. E_INVALIDARG when `ref` is not a child of `parent`,
    // E_FAIL when the node cannot stand there.
    static HRESULT insert(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref);
    // Takes `child` out of `parent`; E_INVALIDARG when it is not a child of `parent`.
    static HRESULT remove(xmlNodePtr parent, xmlNodePtr child);
    // Puts `node` in the place of `old`, which leaves the tree.
    static HRESULT replace(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr old);
    // Replaces the children of an element by one text node, or sets the text of a text-like node
    // or an attribute.
    static HRESULT setText(xmlNodePtr node, const String& text);
    // A copy of `node` in its own document, standing in no tree.
    static xmlNodePtr copy(xmlNodePtr node, bool deep);

    // Called when the object of `node` goes away: frees the detached subtree that holds `node`
    // if no other object refers into it.
    static void releaseUnreferenced(xmlNodePtr node);

private:
    static HRESULT checkInsert(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref,
                               xmlNodePtr leaving);
    static void detach(xmlNodePtr node);
    static void link(xmlNodePtr parent, xmlNodePtr node, xmlNodePtr ref);
    static bool adopt(xmlNodePtr node, xmlNodePtr parent);
    static void freeIfUnreferenced(xmlNodePtr top);
};

} // namespace qvr::dom
