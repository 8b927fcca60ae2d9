#include "vbscript/builtins.h"

#include <algorithm>
#include <vector>

#include "vbscript/ascii.h"

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

} // namespace

int builtinCount() {
    return static_cast<int>(table().size());
}

const Builtin& builtinAt(int index) {
    return *table()[static_cast<std::size_t>(index)];
}

} // namespace qvr::vbscript
