// XPath 1.0 over libxml2: compiled expressions are kept in a small per-thread cache (most
// recently used first), evaluation runs in the tree's reused context, errors are never printed.
#pragma once

#include <string>
#include <vector>

#include <libxml/tree.h>

#include <qvr/com.h>

namespace qvr::dom {

class Tree;

class XPathEngine {
public:
    // The nodes `expression` selects relative to `context`, in document order; at most one when
    // `firstOnly`. E_FAIL for a malformed expression or one that does not give nodes.
    static HRESULT select(Tree& tree, xmlNodePtr context, const std::string& expression,
                          bool firstOnly, std::vector<xmlNodePtr>* nodes);
};

} // namespace qvr::dom
