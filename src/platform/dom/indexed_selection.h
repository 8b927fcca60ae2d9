// Answers the selections the model repeats for every row and cell from the document's lookup
// tables instead of walking the tree. It recognises exact expression shapes only, with a value
// that holds no apostrophe; everything else (and every shape whose context the tables do not
// cover, such as a detached subtree) is left to XPath, which gives the same nodes.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

#include "platform/dom/indexed_forms.h"

namespace qvr::dom {

class IndexedSelection {
public:
    // True when the answer was given: `nodes` then holds what XPath would select, in document
    // order (only the first node when `firstOnly`).
    static bool answer(xmlNodePtr context, std::string_view expression, bool firstOnly,
                       std::vector<xmlNodePtr>* nodes);
    // The same for `form.text(value)`, without writing or reading the text: the model's road for
    // the lookups it repeats per row and cell. False also for a form that is not indexed.
    static bool answer(xmlNodePtr context, const IndexedForm& form, std::string_view value,
                       bool firstOnly, std::vector<xmlNodePtr>* nodes);

    // Switches the recognition off and on (for comparing its answers with XPath's).
    static void setEnabled(bool enabled);
    static bool enabled();
    // How many selections were answered from the tables so far.
    static std::uint64_t answeredCount();
};

} // namespace qvr::dom
