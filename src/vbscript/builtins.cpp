#include "vbscript/builtins.h"

#include <algorithm>
#include <vector>

#include "vbscript/ascii.h"
#include "vbscript/name_table.h"

namespace qvr::vbscript {
namespace {

// All areas merged and sorted by name, once.
const std::vector<const Builtin*>& table() {
    static const std::vector<const Builtin*> sorted = [] {
        std::vector<const Builtin*> all;
        for (auto area : {mathBuiltins(), conversionBuiltins(), stringBuiltins(), searchBuiltins(),
                          bytesBuiltins(), formatBuiltins(), dateBuiltins(), dateIntervalBuiltins(),
                          inspectionBuiltins(), constantBuiltins()})
            for (const Builtin& b : area) all.push_back(&b);
        std::sort(all.begin(), all.end(), [](const Builtin* a, const Builtin* b) {
            return compareNoCaseAscii(a->name, b->name) < 0;
        });
        return all;
    }();
    return sorted;
}

const NameTable& index() {
    static const NameTable names = [] {
        std::vector<std::string_view> list;
        for (const Builtin* b : table()) list.push_back(b->name);
        return NameTable(list);
    }();
    return names;
}

} // namespace

int findBuiltin(std::string_view name) {
    if (name.size() < 2 || name.size() > 21) return -1; // no library name is shorter or longer
    return index().find(name);
}

const Builtin& builtinAt(int index) {
    return *table()[static_cast<std::size_t>(index)];
}

} // namespace qvr::vbscript
