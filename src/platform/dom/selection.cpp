#include "platform/dom/selection.h"

#include "platform/dom/indexed_selection.h"
#include "platform/dom/tree.h"
#include "platform/dom/xpath_engine.h"

namespace qvr::dom {

HRESULT Selection::select(xmlNodePtr context, const std::string& expression, bool firstOnly,
                          std::vector<xmlNodePtr>* nodes) {
    nodes->clear();
    if (expression.find('\0') != std::string::npos) return E_FAIL;
    if (IndexedSelection::answer(context, expression, firstOnly, nodes)) return S_OK;
    return XPathEngine::select(*Tree::of(context), context, expression, firstOnly, nodes);
}

} // namespace qvr::dom
