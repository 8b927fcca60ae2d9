// Locale-independent ASCII character tests for the lexer and the name tables.
#pragma once

#include <string_view>

namespace qvr::vbscript {

constexpr bool isDigitAscii(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isAlphaAscii(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr char toLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char toUpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr int hexValueAscii(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
constexpr bool isHexDigitAscii(char c) {
    return hexValueAscii(c) >= 0;
}

// Compares ASCII letters without case; other bytes must match exactly.
constexpr int compareNoCaseAscii(std::string_view a, std::string_view b) {
    std::size_t n = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < n; ++i) {
        char x = toLowerAscii(a[i]), y = toLowerAscii(b[i]);
        if (x != y) return static_cast<unsigned char>(x) < static_cast<unsigned char>(y) ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}
constexpr bool equalsNoCaseAscii(std::string_view a, std::string_view b) {
    return a.size() == b.size() && compareNoCaseAscii(a, b) == 0;
}

} // namespace qvr::vbscript
