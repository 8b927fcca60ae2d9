// Compiled programs by expression text, per thread. A table that evaluates one formula for many
// rows pastes different values into the same shape, but a table of many identical rows, and
// every re-evaluation of a constant formula, finds its program here. Keyed by text and locale,
// since literals are folded under the locale. Entries are immutable, so sharing them cannot
// change what an evaluation observes.
#pragma once

#include <memory>
#include <string_view>

#include <qvr/variant.h>

#include "vbscript/program.h"

namespace qvr::vbscript {

class ParseCache {
public:
    // The program for `text` under `lcid`: from the cache, or compiled and remembered.
    // Throws ScriptError for a text that does not compile (failures are not remembered).
    static std::shared_ptr<const Program> lookup(std::string_view text, LCID lcid);
    // Forgets every entry of the calling thread.
    static void clear();
    // Entries the calling thread holds.
    static std::size_t size();
};

} // namespace qvr::vbscript
