#include "platform/dom/selection.h"

#include "platform/dom/tree.h"
#include "platform/dom/xpath_engine.h"

namespace qvr::dom {

HRESULT Selection::select(xmlNodePtr context, const std::string& expression, bool firstOnly,
                          std::vector<xmlNodePtr>* nodes) {
    return XPathEngine::select(*Tree::of(context), context, expression, firstOnly, nodes);
}

} // namespace qvr::dom
