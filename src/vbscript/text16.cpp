#include "vbscript/text16.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <qvr/string.h>

namespace qvr::vbscript {
namespace {

// The code point that starts at the lead byte `i` (well-formed input assumed; malformed bytes
// compare by their byte value, which keeps the order total).
char32_t leadCodePoint(std::string_view s, std::size_t i) {
    auto byte = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
    unsigned char c = byte(i);
    if (c < 0xC0) return c;
    int n = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : 2;
    if (i + static_cast<std::size_t>(n) > s.size()) return c;
    char32_t cp = c & (0x3F >> (n - 1));
    for (int k = 1; k < n; ++k) cp = (cp << 6) | (byte(i + static_cast<std::size_t>(k)) & 0x3F);
    return cp;
}

// 0x80-0x9F of Windows-1252; the rest of 0x00-0xFF is Latin-1.
constexpr char16_t kAnsiHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

std::size_t firstMalformedByte(std::string_view s) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(s.data());
    const auto length = static_cast<std::ptrdiff_t>(s.size());
    for (std::ptrdiff_t i = 0; i < length;) {
        if (bytes[i] < 0x80) {
            ++i;
            continue;
        }
        std::ptrdiff_t at = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c); // negative for overlong forms, surrogates, cut sequences
        if (c < 0) return static_cast<std::size_t>(at);
    }
    return std::string_view::npos;
}

char16_t unitFromAnsi(int code) {
    return code >= 0x80 && code < 0xA0 ? kAnsiHigh[code - 0x80] : static_cast<char16_t>(code);
}

int ansiFromUnit(char16_t u) {
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return u;
    for (int i = 0; i < 32; ++i)
        if (kAnsiHigh[i] == u) return 0x80 + i;
    return '?';
}

bool isAscii(std::string_view s) {
    for (char c : s)
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    return true;
}

std::size_t utf16Length(std::string_view s) {
    std::size_t n = 0;
    for (char ch : s) {
        auto c = static_cast<unsigned char>(ch);
        if ((c & 0xC0) != 0x80) ++n; // a lead byte or ASCII starts a unit
        if (c >= 0xF0) ++n;          // four-byte sequences are surrogate pairs
    }
    return n;
}

std::string utf16Slice(std::string_view s, std::size_t start, std::size_t count) {
    // Where the text is ASCII up to the slice's end, units are bytes: only that far is looked
    // at, so a short Left of a long text costs little.
    std::size_t end = count > s.size() - std::min(start, s.size()) ? s.size() : start + count;
    if (isAscii(s.substr(0, end))) {
        if (start >= s.size()) return {};
        return std::string(s.substr(start, end - start));
    }
    std::u16string units = toUtf16(s);
    if (start >= units.size()) return {};
    return fromUtf16(std::u16string_view(units).substr(start, count));
}

int compareUnits(std::string_view a, std::string_view b) {
    auto [pa, pb] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (pa == a.end() && pb == b.end()) return 0;
    if (pa == a.end()) return -1;
    if (pb == b.end()) return 1;
    // Step back to the lead byte of the differing code point (the same offset in both).
    std::size_t i = static_cast<std::size_t>(pa - a.begin());
    while (i > 0 && (static_cast<unsigned char>(a[i]) & 0xC0) == 0x80) --i;
    char32_t ca = leadCodePoint(a, i), cb = leadCodePoint(b, i);
    // UTF-8 orders by code point; UTF-16 puts supplementary characters (surrogates, D800-DFFF)
    // below U+E000-U+FFFF.
    auto key = [](char32_t c) -> char32_t { return c >= 0x10000 ? 0xD800 + (c >> 10) : c; };
    char32_t ka = key(ca), kb = key(cb);
    if (ka != kb) return ka < kb ? -1 : 1;
    return static_cast<unsigned char>(*pa) < static_cast<unsigned char>(*pb) ? -1 : 1;
}

std::u16string lowerUnits(std::u16string s) {
    for (char16_t& u : s) {
        if (u < 0x80) {
            if (u >= 'A' && u <= 'Z') u = static_cast<char16_t>(u + 32);
        } else if (u < 0xD800 || u >= 0xE000) {
            UChar32 l = u_tolower(u);
            if (l < 0x10000) u = static_cast<char16_t>(l);
        }
    }
    return s;
}

std::u16string upperUnits(std::u16string s) {
    for (char16_t& u : s) {
        if (u < 0x80) {
            if (u >= 'a' && u <= 'z') u = static_cast<char16_t>(u - 32);
        } else if (u < 0xD800 || u >= 0xE000) {
            UChar32 l = u_toupper(u);
            if (l < 0x10000) u = static_cast<char16_t>(l);
        }
    }
    return s;
}

} // namespace qvr::vbscript
