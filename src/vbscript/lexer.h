// Cuts an expression text into the tokens of the formula language. Tokens refer to the text by
// offsets, so lexing allocates nothing; literal values are decoded only when the parser needs
// them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qvr::vbscript {

enum class Tok : std::uint8_t {
    End,
    Newline, // a line break or ':' (both separate statements)
    Integer, // decimal, hexadecimal or octal; value in Token::integer, type in Token::longType
    Float,   // value in Token::number
    String,  // text between the quotes, doubled quotes not yet undone
    Date,    // text between the number signs
    Identifier,
    // Operators and punctuation.
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    Ampersand,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    LParen,
    RParen,
    Comma,
    Dot,
    // Keywords.
    Mod,
    Not,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
    Is,
    True,
    False,
    Empty,
    Null,
    Nothing,
    Reserved, // a statement keyword, never an operand (If, Dim, Then...)
    Rem,      // a comment to the line's end; never leaves the lexer
};

struct Token {
    Tok kind = Tok::End;
    std::uint32_t pos = 0; // byte offset of the token in the text
    std::uint32_t len = 0; // byte length of the token
    // Payload. For String, Date and bracketed identifiers `pos`/`len` give the inner text.
    double number = 0;
    std::int32_t integer = 0;
    bool longType = false; // Integer literal that is a Long rather than an Integer
    bool hasDoubledQuotes = false;
    // For an unbracketed identifier that names a library function or constant: its index.
    std::int16_t builtin = -1;
};

class Lexer {
public:
    explicit Lexer(std::string_view text) : text_(text) {}

    // The next token; throws ScriptError for a character or literal that cannot start one.
    Token next();
    std::string_view text() const { return text_; }
    std::string_view spelling(const Token& t) const { return text_.substr(t.pos, t.len); }

    // The text of a String token with doubled quotes undone.
    std::string stringValue(const Token& t) const;

private:
    // Skips blanks and line continuations before a token; most tokens follow no blank.
    void skipBlanks() {
        // Blanks are control characters or the space; "_" may start a line continuation.
        if (at_ < text_.size() && text_[at_] > ' ' && text_[at_] != '_') return;
        skipBlanksSlow();
    }
    void skipBlanksSlow();
    Token number(std::uint32_t start);
    Token radixNumber(std::uint32_t start, int radix);
    Token word(std::uint32_t start);
    Token quoted(std::uint32_t start);
    Token delimited(std::uint32_t start, char close, int unterminatedError);
    bool atLineContinuation(std::size_t i) const;

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace qvr::vbscript
