// The layer in front of the formula language: a formula is cut into tokens at 34 delimiter
// characters, and a token outside a double-quoted string that equals a column's name (case
// ignored) stands for that column's value. These are the two text operations that substitution
// is made of.
//
// A token is a maximal run of characters that are no delimiters. The double quote is no
// delimiter: it stays part of the token it touches, and the string state flips on a token that
// begins with one and again on a token of two or more characters that ends with one. So
// `"a b"` is two tokens, one that opens and one that closes, and a quote inside a token flips
// nothing. Each search starts outside a string at the position it is given.
#pragma once

#include <cstddef>
#include <string_view>

#include <qvr/string.h>

namespace qvr {

class FormulaTokens {
public:
    // A token found in a text: its byte offset and byte length.
    struct Hit {
        std::size_t position;
        std::size_t length;
        explicit operator bool() const { return position != std::string_view::npos; }
    };
    static constexpr Hit none{std::string_view::npos, 0};

    // Whether the code point `c` cuts tokens.
    static bool isDelimiter(char32_t c);

    // The first token at or behind byte offset `from` of `text` that lies outside a string and
    // equals `name` with case ignored; `none` when there is none.
    static Hit find(std::string_view text, const String& name, std::size_t from = 0);

    // `text` with every such token replaced by `value`, left to right; an inserted value is not
    // searched again, and each search behind it starts outside a string. Null for an empty
    // `name`; a copy of `text` (null stays null) when nothing matches.
    static String replace(const String& text, const String& name, std::string_view value);
};

} // namespace qvr
