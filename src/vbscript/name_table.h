// A fixed set of ASCII names looked up with case ignored in a few instructions: an open-address
// hash table built once. The lexer finds keywords and the parser finds library functions with
// it, once per name in the text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qvr::vbscript {

class NameTable {
public:
    // The names are ASCII letters and digits only (keywords and library names are); a copy of
    // each is kept in lower case.
    explicit NameTable(const std::vector<std::string_view>& names);

    // The position of `name` in the list given to the constructor, or -1.
    int find(std::string_view name) const;

private:
    static std::uint32_t hash(std::string_view name);

    std::vector<std::string> names_;  // lower case
    std::vector<std::int16_t> slots_; // index into names_, -1 for a free slot
    std::uint32_t mask_ = 0;
};

} // namespace qvr::vbscript
