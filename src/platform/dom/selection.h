// The road of every selection: the shapes the lookup tables answer are answered from them, every
// other expression goes to XPath. Both give the same nodes in the same order.
#pragma once

#include <string>
#include <vector>

#include <libxml/tree.h>

#include <qvr/com.h>

namespace qvr::dom {

class Selection {
public:
    // The nodes `expression` selects relative to `context`, in document order; at most one when
    // `firstOnly`. E_FAIL for a malformed expression.
    static HRESULT select(xmlNodePtr context, const std::string& expression, bool firstOnly,
                          std::vector<xmlNodePtr>* nodes);
};

} // namespace qvr::dom
