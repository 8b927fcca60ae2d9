#include <qvr/string.h>

#include <unicode/uchar.h>

namespace qvr {
namespace {

// Decodes one code point at `i`, advancing `i`. Malformed input yields U+FFFD and one byte.
char32_t decode(std::string_view s, std::size_t& i) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        ++i;
        return b0;
    }
    const int extra = b0 >= 0xF0 && b0 < 0xF5   ? 3
                      : b0 >= 0xE0 && b0 < 0xF0 ? 2
                      : b0 >= 0xC2 && b0 < 0xE0 ? 1
                                                : -1;
    if (extra < 0 || i + static_cast<std::size_t>(extra) >= s.size()) {
        ++i;
        return 0xFFFD;
    }
    char32_t cp = b0 & (0x3F >> extra);
    for (int k = 1; k <= extra; ++k) {
        const auto b = static_cast<unsigned char>(s[i + static_cast<std::size_t>(k)]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        cp = (cp << 6) | (b & 0x3F);
    }
    // Overlong forms and surrogates are malformed.
    if ((extra == 2 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) ||
        (extra == 3 && (cp < 0x10000 || cp > 0x10FFFF))) {
        ++i;
        return 0xFFFD;
    }
    i += static_cast<std::size_t>(extra) + 1;
    return cp;
}

void encode(char32_t cp, std::string& out) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

char32_t fold(char32_t c) {
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
}

} // namespace

std::size_t String::length() const {
    std::size_t n = 0;
    for (std::size_t i = 0; i < text_.size(); ++n) decode(text_, i);
    return n;
}

int String::compareIgnoreCase(std::string_view other) const {
    std::size_t i = 0, j = 0;
    while (i < text_.size() && j < other.size()) {
        char32_t a = fold(decode(text_, i));
        char32_t b = fold(decode(other, j));
        if (a != b) return a < b ? -1 : 1;
    }
    if (i < text_.size()) return 1;
    if (j < other.size()) return -1;
    return 0;
}

std::string String::caseFolded() const {
    std::string out;
    out.reserve(text_.size());
    for (std::size_t i = 0; i < text_.size();) {
        const auto byte = static_cast<unsigned char>(text_[i]);
        if (byte < 0x80) {
            // ASCII folds to lower case, as u_foldCase would.
            out += static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte);
            ++i;
            continue;
        }
        encode(fold(decode(text_, i)), out);
    }
    return out;
}

bool String::equalsIgnoreCase(std::string_view other) const {
    return compareIgnoreCase(other) == 0;
}

bool isLowerLetter(char32_t c) {
    return u_islower(static_cast<UChar32>(c));
}
bool isUpperLetter(char32_t c) {
    return u_isupper(static_cast<UChar32>(c));
}

std::u32string toCodePoints(std::string_view utf8) {
    std::u32string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) out += decode(utf8, i);
    return out;
}

std::string fromCodePoints(std::u32string_view cps) {
    std::string out;
    out.reserve(cps.size());
    for (char32_t c : cps) encode(c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF) ? 0xFFFD : c, out);
    return out;
}

std::u16string toUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        char32_t c = decode(utf8, i);
        if (c >= 0x10000) {
            c -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (c >> 10));
            out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
    }
    return out;
}

std::string fromUtf16(std::u16string_view u16) {
    std::string out;
    out.reserve(u16.size());
    for (std::size_t i = 0; i < u16.size(); ++i) {
        char32_t c = u16[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < u16.size() && u16[i + 1] >= 0xDC00 &&
            u16[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (u16[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = 0xFFFD; // a lone surrogate
        }
        encode(c, out);
    }
    return out;
}

} // namespace qvr
