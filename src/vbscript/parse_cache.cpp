#include "vbscript/parse_cache.h"

#include <string>
#include <unordered_map>

#include "vbscript/parser.h"

namespace qvr::vbscript {
namespace {

// Bounded: when full, the table starts afresh (cheaper than tracking use, and a formula set
// larger than this is rare).
constexpr std::size_t kMaxEntries = 4096;
// Longer texts are compiled each time rather than kept.
constexpr std::size_t kMaxKeyLength = 4096;

struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>()(s); }
};

using Table =
    std::unordered_map<std::string, std::shared_ptr<const Program>, Hash, std::equal_to<>>;

Table& table() {
    thread_local Table t;
    return t;
}

} // namespace

std::shared_ptr<const Program> ParseCache::lookup(std::string_view text, LCID lcid) {
    if (text.size() > kMaxKeyLength) return Parser::compile(text, lcid);
    Table& t = table();
    auto it = t.find(text);
    if (it != t.end() && it->second->lcid == lcid) return it->second;
    std::shared_ptr<const Program> program = Parser::compile(text, lcid);
    if (it != t.end()) {
        it->second = program;
    } else {
        if (t.size() >= kMaxEntries) t.clear();
        t.emplace(std::string(text), program);
    }
    return program;
}

void ParseCache::clear() {
    table().clear();
}

std::size_t ParseCache::size() {
    return table().size();
}

} // namespace qvr::vbscript
