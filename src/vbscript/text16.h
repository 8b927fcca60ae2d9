// Strings of the language count UTF-16 units (Len, Mid, InStr...), while the library keeps text
// in UTF-8. These helpers answer in units, with a fast path for plain ASCII text, which is what
// formulas mostly hold.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvr::vbscript {

bool isAscii(std::string_view s);
// The byte offset of the first byte that is not part of well-formed UTF-8, or npos.
std::size_t firstMalformedByte(std::string_view s);
std::size_t utf16Length(std::string_view s);
// Units [start, start + count) of the UTF-16 form of `s` (clamped to its end), in UTF-8.
std::string utf16Slice(std::string_view s, std::size_t start, std::size_t count);
// Binary comparison in the order of UTF-16 units: <0, 0, >0.
int compareUnits(std::string_view a, std::string_view b);
// Simple per-unit case mapping (a unit's length never changes, so positions stay valid).
std::u16string lowerUnits(std::u16string s);
std::u16string upperUnits(std::u16string s);

// The ANSI code page of the known locales (Windows-1252), for Asc, Chr and String.
char16_t unitFromAnsi(int code);
int ansiFromUnit(char16_t unit); // '?' for a character the code page lacks

} // namespace qvr::vbscript
