// The shapes of the ISO codes that documents carry. Only the shape is checked: no list of codes
// is consulted, so any two letters of the right case pass.
#pragma once

#include <qvr/string.h>

namespace qvr {

// A language (`xml:lang`): exactly two lower-case letters.
inline bool isLanguageCode(const String& code) {
    if (code.isNull()) return false;
    const std::u32string letters = toCodePoints(code.view());
    return letters.size() == 2 && isLowerLetter(letters[0]) && isLowerLetter(letters[1]);
}

// A country (`isoCountryCode`): exactly two capital letters.
inline bool isCountryCode(const String& code) {
    if (code.isNull()) return false;
    const std::u32string letters = toCodePoints(code.view());
    return letters.size() == 2 && isUpperLetter(letters[0]) && isUpperLetter(letters[1]);
}

} // namespace qvr
