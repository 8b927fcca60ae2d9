// What a document may hold. XML 1.0 carries tab, line feed, carriage return and the characters
// from U+0020 on, except the surrogates and U+FFFE and U+FFFF, all in well-formed UTF-8; a
// comment may not hold "--" nor end in "-", a processing instruction may not hold "?>". Text
// outside these rules would be saved, and the saved file would not load again, so it is refused
// where it enters the tree.
#pragma once

#include <string>
#include <string_view>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr::dom {

enum class TextKind { Content, Comment, ProcessingInstruction };

// Empty when `text` may stand in a document as `kind`; else what is wrong and where: "U+0001 at
// character 5", "the byte 0xFF (not UTF-8) at byte 3", "\"--\" at character 2".
std::string uncarriable(std::string_view text, TextKind kind = TextKind::Content);

// S_OK for text a document can carry. Else reports "<what> holds <the fault>, which XML cannot
// carry." and answers E_INVALIDARG. `what` names the text: "The value of attribute \"name\"".
HRESULT checkCarriable(const String& text, std::string_view what,
                       TextKind kind = TextKind::Content);

// A name that holds a NUL would be cut short by the parser's functions: such a name is no name.
inline bool holdsNul(const String& name) {
    return name.view().find('\0') != std::string_view::npos;
}

} // namespace qvr::dom
