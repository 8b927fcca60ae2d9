#include "vbscript/lexer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

#include <unicode/uchar.h>

#include "vbscript/ascii.h"
#include "vbscript/builtins.h"
#include "vbscript/name_table.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

constexpr std::size_t kMaxIdentifier = 255;

struct Keyword {
    std::string_view name;
    Tok kind;
};

constexpr Keyword kKeywords[] = {
    {"and", Tok::And},
    {"byref", Tok::Reserved},
    {"byval", Tok::Reserved},
    {"call", Tok::Reserved},
    {"case", Tok::Reserved},
    {"class", Tok::Reserved},
    {"const", Tok::Reserved},
    {"default", Tok::Reserved},
    {"dim", Tok::Reserved},
    {"do", Tok::Reserved},
    {"each", Tok::Reserved},
    {"else", Tok::Reserved},
    {"elseif", Tok::Reserved},
    {"empty", Tok::Empty},
    {"end", Tok::Reserved},
    {"eqv", Tok::Eqv},
    {"erase", Tok::Reserved},
    {"error", Tok::Reserved},
    {"exit", Tok::Reserved},
    {"explicit", Tok::Reserved},
    {"false", Tok::False},
    {"for", Tok::Reserved},
    {"function", Tok::Reserved},
    {"get", Tok::Reserved},
    {"goto", Tok::Reserved},
    {"if", Tok::Reserved},
    {"imp", Tok::Imp},
    {"in", Tok::Reserved},
    {"is", Tok::Is},
    {"let", Tok::Reserved},
    {"loop", Tok::Reserved},
    {"me", Tok::Reserved},
    {"mod", Tok::Mod},
    {"new", Tok::Reserved},
    {"next", Tok::Reserved},
    {"not", Tok::Not},
    {"nothing", Tok::Nothing},
    {"null", Tok::Null},
    {"on", Tok::Reserved},
    {"option", Tok::Reserved},
    {"or", Tok::Or},
    {"preserve", Tok::Reserved},
    {"private", Tok::Reserved},
    {"property", Tok::Reserved},
    {"public", Tok::Reserved},
    {"redim", Tok::Reserved},
    {"rem", Tok::Rem},
    {"resume", Tok::Reserved},
    {"select", Tok::Reserved},
    {"set", Tok::Reserved},
    {"step", Tok::Reserved},
    {"stop", Tok::Reserved},
    {"sub", Tok::Reserved},
    {"then", Tok::Reserved},
    {"to", Tok::Reserved},
    {"true", Tok::True},
    {"until", Tok::Reserved},
    {"wend", Tok::Reserved},
    {"while", Tok::Reserved},
    {"with", Tok::Reserved},
    {"xor", Tok::Xor},
};

// What a word is: a keyword, a library name, or neither. Both kinds of name are found with one
// lookup in one table, since every identifier of a formula is looked up.
struct WordInfo {
    Tok kind = Tok::Identifier;
    std::int16_t builtin = -1;
};

// The vocabulary: the keywords, then the library's names, and the longest of them all.
struct Vocabulary {
    NameTable table;
    std::size_t longest = 0;
};

const Vocabulary& vocabulary() {
    static const Vocabulary words = [] {
        std::vector<std::string_view> names;
        for (const Keyword& k : kKeywords) names.push_back(k.name);
        for (int i = 0; i < builtinCount(); ++i) names.push_back(builtinAt(i).name);
        std::size_t longest = 0;
        for (std::string_view name : names) longest = std::max(longest, name.size());
        return Vocabulary{NameTable(names), longest};
    }();
    return words;
}

WordInfo lookupWord(std::string_view word) {
    const Vocabulary& words = vocabulary();
    if (word.size() < 2 || word.size() > words.longest) return {}; // no name is shorter
    constexpr int kKeywordCount = static_cast<int>(std::size(kKeywords));
    int i = words.table.find(word);
    if (i < 0) return {};
    if (i < kKeywordCount) return {kKeywords[i].kind, -1};
    return {Tok::Identifier, static_cast<std::int16_t>(i - kKeywordCount)};
}

// Decodes the code point at `i` (a malformed byte counts as U+FFFD of length 1).
char32_t codePointAt(std::string_view s, std::size_t i, std::size_t* length) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    int n = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
    if (n == 1 || i + n > s.size()) {
        *length = 1;
        return c < 0x80 ? c : 0xFFFD;
    }
    char32_t cp = c & (0x3F >> (n - 1));
    for (int k = 1; k < n; ++k) {
        unsigned char cc = static_cast<unsigned char>(s[i + k]);
        if ((cc & 0xC0) != 0x80) {
            *length = 1;
            return 0xFFFD;
        }
        cp = (cp << 6) | (cc & 0x3F);
    }
    *length = n;
    return cp;
}

bool isLetterAt(std::string_view s, std::size_t i, std::size_t* length) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    *length = 1;
    if (c < 0x80) return isAlphaAscii(c);
    char32_t cp = codePointAt(s, i, length);
    return u_isalpha(static_cast<UChar32>(cp));
}

bool isAsciiWordByte(char c) {
    return isAlphaAscii(c) || isDigitAscii(c) || c == '_';
}

bool isWordCharAt(std::string_view s, std::size_t i, std::size_t* length) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
        *length = 1;
        return isAsciiWordByte(static_cast<char>(c));
    }
    return isLetterAt(s, i, length);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\f' || c == '\v';
}

} // namespace

bool Lexer::atLineContinuation(std::size_t i) const {
    // "_" followed by blanks and a line break joins two lines.
    if (i >= text_.size() || text_[i] != '_') return false;
    std::size_t j = i + 1;
    while (j < text_.size() && isBlank(text_[j])) ++j;
    return j < text_.size() && (text_[j] == '\n' || text_[j] == '\r');
}

void Lexer::skipBlanksSlow() {
    for (;;) {
        while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
        if (!atLineContinuation(at_)) return;
        ++at_;
        while (text_[at_] != '\n' && text_[at_] != '\r') ++at_;
        if (text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n') ++at_;
        ++at_;
    }
}

Token Lexer::next() {
    skipBlanks();
    Token t;
    std::uint32_t start = static_cast<std::uint32_t>(at_);
    t.pos = start;
    if (at_ >= text_.size()) return t;
    char c = text_[at_];
    const auto nextIs = [&](char d) { return at_ + 1 < text_.size() && text_[at_ + 1] == d; };
    auto simple = [&](Tok kind, std::uint32_t len) {
        t.kind = kind;
        t.len = len;
        at_ += len;
        return t;
    };
    switch (c) {
    case '\r':
    case '\n':
    case ':': return simple(Tok::Newline, 1);
    case '\'':
        while (at_ < text_.size() && text_[at_] != '\n' && text_[at_] != '\r') ++at_;
        return next();
    case '+': return simple(Tok::Plus, 1);
    case '-': return simple(Tok::Minus, 1);
    case '*': return simple(Tok::Star, 1);
    case '/': return simple(Tok::Slash, 1);
    case '\\': return simple(Tok::Backslash, 1);
    case '^': return simple(Tok::Caret, 1);
    case '(': return simple(Tok::LParen, 1);
    case ')': return simple(Tok::RParen, 1);
    case ',': return simple(Tok::Comma, 1);
    // The language takes either order of a two-sign comparison: "=<" is "<=", "=>" is ">=",
    // and "><" is "<>".
    case '=':
        if (nextIs('<')) return simple(Tok::LessEqual, 2);
        if (nextIs('>')) return simple(Tok::GreaterEqual, 2);
        return simple(Tok::Equal, 1);
    case '<':
        if (nextIs('>')) return simple(Tok::NotEqual, 2);
        if (nextIs('=')) return simple(Tok::LessEqual, 2);
        return simple(Tok::Less, 1);
    case '>':
        if (nextIs('=')) return simple(Tok::GreaterEqual, 2);
        if (nextIs('<')) return simple(Tok::NotEqual, 2);
        return simple(Tok::Greater, 1);
    case '&':
        if (at_ + 2 < text_.size()) {
            char r = toLowerAscii(text_[at_ + 1]);
            char d = text_[at_ + 2];
            if (r == 'h' && isHexDigitAscii(d)) return radixNumber(start, 16);
            if (r == 'o' && d >= '0' && d <= '7') return radixNumber(start, 8);
        }
        return simple(Tok::Ampersand, 1);
    case '.':
        if (at_ + 1 < text_.size() && isDigitAscii(text_[at_ + 1])) return number(start);
        return simple(Tok::Dot, 1);
    case '"': return quoted(start);
    case '#': return delimited(start, '#', kSyntaxError);
    case '[': return delimited(start, ']', kExpectedCloseBracket);
    default: break;
    }
    if (isDigitAscii(c)) return number(start);
    std::size_t len = 0;
    if (isLetterAt(text_, at_, &len)) return word(start);
    throw ScriptError(kInvalidCharacter, {}, static_cast<std::int32_t>(start));
}

Token Lexer::number(std::uint32_t start) {
    std::size_t i = at_;
    while (i < text_.size() && isDigitAscii(text_[i])) ++i;
    bool isFloat = false;
    if (i < text_.size() && text_[i] == '.') {
        isFloat = true;
        ++i;
        while (i < text_.size() && isDigitAscii(text_[i])) ++i;
    }
    if (i < text_.size() && toLowerAscii(text_[i]) == 'e') {
        std::size_t j = i + 1;
        if (j < text_.size() && (text_[j] == '+' || text_[j] == '-')) ++j;
        if (j < text_.size() && isDigitAscii(text_[j])) {
            isFloat = true;
            i = j;
            while (i < text_.size() && isDigitAscii(text_[i])) ++i;
        } else {
            throw ScriptError(kInvalidNumber, {}, static_cast<std::int32_t>(start));
        }
    }
    Token t;
    t.pos = start;
    t.len = static_cast<std::uint32_t>(i - start);
    at_ = i;
    std::string_view digits = text_.substr(start, t.len);
    if (!isFloat) {
        std::uint64_t v = 0;
        bool big = false;
        for (char d : digits) {
            v = v * 10 + static_cast<unsigned>(d - '0');
            if (v > 0x7FFFFFFF) {
                big = true;
                break;
            }
        }
        if (!big) {
            t.kind = Tok::Integer;
            t.integer = static_cast<std::int32_t>(v);
            t.longType = v > 32767;
            return t;
        }
    }
    // A leading "." is not accepted by from_chars; skip it and read the fraction as "0.xxx".
    std::string buffer;
    if (digits.front() == '.') {
        buffer.reserve(digits.size() + 1);
        buffer += '0';
        buffer += digits;
        digits = buffer;
    }
    double value = 0;
    auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (ec == std::errc::result_out_of_range) {
        // Too small to represent is zero; too large is not a number of the language.
        bool tiny = digits.find("e-") != std::string_view::npos ||
                    digits.find("E-") != std::string_view::npos;
        if (!tiny) throw ScriptError(kInvalidNumber, {}, static_cast<std::int32_t>(start));
        value = 0;
    } else if (ec != std::errc() || end != digits.data() + digits.size()) {
        throw ScriptError(kInvalidNumber, {}, static_cast<std::int32_t>(start));
    }
    t.kind = Tok::Float;
    t.number = value;
    return t;
}

Token Lexer::radixNumber(std::uint32_t start, int radix) {
    std::size_t i = at_ + 2;
    std::uint64_t v = 0;
    bool overflow = false;
    for (; i < text_.size(); ++i) {
        int d = hexValueAscii(text_[i]);
        if (d < 0 || d >= radix) break;
        v = v * static_cast<unsigned>(radix) + static_cast<unsigned>(d);
        if (v > 0xFFFFFFFFu) overflow = true;
    }
    bool longSuffix = i < text_.size() && text_[i] == '&';
    if (longSuffix) ++i;
    if (overflow) throw ScriptError(kInvalidNumber, {}, static_cast<std::int32_t>(start));
    Token t;
    t.kind = Tok::Integer;
    t.pos = start;
    t.len = static_cast<std::uint32_t>(i - start);
    at_ = i;
    // Without the "&" suffix a value of up to 16 bits is an Integer's bits, the high bit being
    // the sign; with it, or beyond 16 bits, a Long's. The literal's type then follows its value, as
    // a decimal literal's does: &HFF& and &HFFFFFFFF are the Integers 255 and -1.
    if (!longSuffix && v <= 0xFFFF)
        t.integer = static_cast<std::int16_t>(static_cast<std::uint16_t>(v));
    else
        t.integer = static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
    t.longType = t.integer != static_cast<std::int16_t>(t.integer);
    return t;
}

Token Lexer::word(std::uint32_t start) {
    std::size_t i = at_;
    std::size_t len = 0;
    for (;;) {
        while (i < text_.size() && isAsciiWordByte(text_[i])) ++i; // the usual case, bytewise
        if (i >= text_.size() || static_cast<unsigned char>(text_[i]) < 0x80 ||
            !isWordCharAt(text_, i, &len))
            break;
        i += len;
    }
    Token t;
    t.pos = start;
    t.len = static_cast<std::uint32_t>(i - start);
    at_ = i;
    std::string_view w = text_.substr(start, t.len);
    if (w.size() > kMaxIdentifier)
        throw ScriptError(kIdentifierTooLong, {}, static_cast<std::int32_t>(start));
    WordInfo info = lookupWord(w);
    t.kind = info.kind;
    t.builtin = info.builtin;
    if (t.kind == Tok::Rem) {
        while (at_ < text_.size() && text_[at_] != '\n' && text_[at_] != '\r') ++at_;
        return next();
    }
    return t;
}

Token Lexer::quoted(std::uint32_t start) {
    std::size_t i = at_ + 1;
    Token t;
    t.kind = Tok::String;
    t.pos = static_cast<std::uint32_t>(i);
    const char* p = text_.data();
    const std::size_t n = text_.size();
    for (;;) {
        while (i < n && p[i] != '"' && p[i] != '\n' && p[i] != '\r') ++i;
        if (i >= n || p[i] != '"')
            throw ScriptError(kUnterminatedString, {}, static_cast<std::int32_t>(start));
        if (i + 1 < n && p[i + 1] == '"') {
            t.hasDoubledQuotes = true;
            i += 2;
            continue;
        }
        break;
    }
    t.len = static_cast<std::uint32_t>(i - t.pos);
    at_ = i + 1;
    return t;
}

Token Lexer::delimited(std::uint32_t start, char close, int unterminatedError) {
    std::size_t i = at_ + 1;
    while (i < text_.size() && text_[i] != close && text_[i] != '\n' && text_[i] != '\r') ++i;
    if (i >= text_.size() || text_[i] != close)
        throw ScriptError(unterminatedError, {}, static_cast<std::int32_t>(start));
    Token t;
    t.kind = close == '#' ? Tok::Date : Tok::Identifier;
    t.pos = start + 1;
    t.len = static_cast<std::uint32_t>(i - start - 1);
    if (t.kind == Tok::Identifier && t.len > kMaxIdentifier)
        throw ScriptError(kIdentifierTooLong, {}, static_cast<std::int32_t>(start));
    at_ = i + 1;
    return t;
}

std::string Lexer::stringValue(const Token& t) const {
    std::string_view raw = text_.substr(t.pos, t.len);
    if (!t.hasDoubledQuotes) return std::string(raw);
    std::string out;
    out.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        out += raw[i];
        if (raw[i] == '"') ++i; // the second of a doubled quote
    }
    return out;
}

} // namespace qvr::vbscript
