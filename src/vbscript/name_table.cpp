#include "vbscript/name_table.h"

#include <stdexcept>

#include "vbscript/ascii.h"

namespace qvr::vbscript {
namespace {

// Setting bit 5 lower-cases an ASCII letter, leaves a digit as it is, and maps no other byte
// that may stand in a word onto a letter or a digit. So a word matches a lower-case name of
// letters and digits exactly when its bytes with that bit set equal the name's: one OR per byte
// instead of a case test on both sides.
constexpr unsigned char kLowerBit = 0x20;

} // namespace

NameTable::NameTable(const std::vector<std::string_view>& names) {
    std::uint32_t size = 16;
    while (size < names.size() * 4) size *= 2; // a sparse table keeps probes short
    mask_ = size - 1;
    slots_.assign(size, -1);
    names_.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string lower;
        for (char c : names[i]) {
            if (!isAlphaAscii(c) && !isDigitAscii(c))
                throw std::logic_error(
                    "a name of the table has a byte other than a letter or digit");
            lower += toLowerAscii(c);
        }
        names_.push_back(std::move(lower));
        std::uint32_t at = hash(names_.back()) & mask_;
        while (slots_[at] >= 0) at = (at + 1) & mask_;
        slots_[at] = static_cast<std::int16_t>(i);
    }
}

std::uint32_t NameTable::hash(std::string_view name) {
    std::uint32_t h = 2166136261u; // FNV-1a over the bytes with the lower-case bit set
    for (char c : name) h = (h ^ (static_cast<unsigned char>(c) | kLowerBit)) * 16777619u;
    return h;
}

int NameTable::find(std::string_view name) const {
    std::uint32_t at = hash(name) & mask_;
    for (;;) {
        std::int16_t i = slots_[at];
        if (i < 0) return -1;
        const std::string& candidate = names_[static_cast<std::size_t>(i)];
        if (candidate.size() == name.size()) {
            std::size_t k = 0;
            while (k < name.size() && (static_cast<unsigned char>(name[k]) | kLowerBit) ==
                                          static_cast<unsigned char>(candidate[k]))
                ++k;
            if (k == name.size()) return i;
        }
        at = (at + 1) & mask_;
    }
}

} // namespace qvr::vbscript
