#include "content/order_info.h"

namespace qvr {

bool isCountryCode(const String& code) {
    const std::u32string letters = toCodePoints(code.view());
    return letters.size() == 2 && isUpperLetter(letters[0]) && isUpperLetter(letters[1]);
}

} // namespace qvr
