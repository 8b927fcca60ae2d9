#include "vbscript/name_table.h"

#include "vbscript/ascii.h"

namespace qvr::vbscript {

NameTable::NameTable(const std::vector<std::string_view>& names) : names_(names) {
    std::uint32_t size = 16;
    while (size < names.size() * 4) size *= 2; // a sparse table keeps probes short
    mask_ = size - 1;
    slots_.assign(size, -1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::uint32_t at = hash(names[i]) & mask_;
        while (slots_[at] >= 0) at = (at + 1) & mask_;
        slots_[at] = static_cast<std::int16_t>(i);
    }
}

std::uint32_t NameTable::hash(std::string_view name) {
    std::uint32_t h = 2166136261u; // FNV-1a over the lower-case letters
    for (char c : name) h = (h ^ static_cast<unsigned char>(toLowerAscii(c))) * 16777619u;
    return h;
}

int NameTable::find(std::string_view name) const {
    std::uint32_t at = hash(name) & mask_;
    for (;;) {
        std::int16_t i = slots_[at];
        if (i < 0) return -1;
        if (equalsNoCaseAscii(names_[static_cast<std::size_t>(i)], name)) return i;
        at = (at + 1) & mask_;
    }
}

} // namespace qvr::vbscript
