#include "formulas/formula_tokens.h"

#include <array>
#include <string>

namespace qvr {
namespace {

// The characters that cut a formula into tokens, in their customary order.
constexpr std::u32string_view kDelimiters = U" \t\n\r^!\u00A7%&/()=?`{[]}\\\u00B4@+*~#<>|,;.:-";
static_assert(kDelimiters.size() == 34);

// The ASCII delimiters as a lookup table; the two others (U+00A7, U+00B4) are tested by their
// UTF-8 form.
constexpr std::array<bool, 128> asciiDelimiters() {
    std::array<bool, 128> table{};
    for (char32_t c : kDelimiters)
        if (c < 128) table[c] = true;
    return table;
}
constexpr std::array<bool, 128> kAsciiDelimiters = asciiDelimiters();

// The byte length of a delimiter at `i`, or 0 when the character there belongs to a token.
std::size_t delimiterAt(std::string_view text, std::size_t i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 128) return kAsciiDelimiters[byte] ? 1 : 0;
    if (byte == 0xC2 && i + 1 < text.size()) {
        const auto next = static_cast<unsigned char>(text[i + 1]);
        if (next == 0xA7 || next == 0xB4) return 2;
    }
    return 0;
}

} // namespace

bool FormulaTokens::isDelimiter(char32_t c) {
    return kDelimiters.find(c) != std::u32string_view::npos;
}

FormulaTokens::Hit FormulaTokens::find(std::string_view text, const String& name,
                                       std::size_t from) {
    bool inString = false;
    std::size_t i = from;
    while (i < text.size()) {
        if (std::size_t skip = delimiterAt(text, i)) {
            i += skip;
            continue;
        }
        const std::size_t start = i;
        while (i < text.size() && delimiterAt(text, i) == 0) ++i;
        const std::string_view token = text.substr(start, i - start);
        // A token that both opens and closes a string flips twice and ends outside; the
        // comparison comes after the flips, so a closing token is compared too.
        if (token.front() == '"') inString = !inString;
        if (token.size() > 1 && token.back() == '"') inString = !inString;
        if (!inString && name.equalsIgnoreCase(token)) return Hit{start, token.size()};
    }
    return none;
}

String FormulaTokens::replace(const String& text, const String& name, std::string_view value) {
    if (name.isEmpty()) return String();
    const std::string_view source = text.view();
    Hit hit = find(source, name);
    if (!hit) return text;
    std::string out;
    out.reserve(source.size() + value.size());
    std::size_t copied = 0;
    for (; hit; hit = find(source, name, copied)) {
        out.append(source, copied, hit.position - copied);
        out += value;
        copied = hit.position + hit.length;
    }
    out.append(source, copied);
    return String(std::move(out));
}

} // namespace qvr
