// Nullable text in UTF-8. Null and empty differ: an attribute that is absent reads as null, one
// that is present and empty reads as "". Lengths are counted in Unicode code points.
#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

#include <qvr/api.h>

namespace qvr {

class QVR_API String {
public:
    String() = default; // null
    String(std::nullptr_t) {}
    String(const char* s) : null_(s == nullptr), text_(s ? s : "") {}
    String(const char* s, std::size_t n) : null_(false), text_(s, n) {}
    String(std::string s) : null_(false), text_(std::move(s)) {}
    String(std::string_view s) : null_(false), text_(s) {}

    bool isNull() const { return null_; }
    // Null or "".
    bool isEmpty() const { return text_.empty(); }

    // The UTF-8 bytes; "" for null.
    const std::string& str() const { return text_; }
    const char* c_str() const { return text_.c_str(); }
    std::string_view view() const { return text_; }
    std::size_t byteLength() const { return text_.size(); }
    operator std::string_view() const { return text_; }

    // Number of Unicode code points (a malformed byte counts as one).
    std::size_t length() const;

    // Exact comparison; a null text equals only a null text.
    friend bool operator==(const String& a, const String& b) {
        return a.null_ == b.null_ && a.text_ == b.text_;
    }
    friend bool operator==(const String& a, const char* b) { return a == String(b); }
    // Orders by bytes (the code-point order of UTF-8); null sorts first.
    friend bool operator<(const String& a, const String& b) {
        if (a.null_ != b.null_) return a.null_;
        return a.text_ < b.text_;
    }

    // Case-insensitive comparison by Unicode case folding; null equals null and "".
    bool equalsIgnoreCase(std::string_view other) const;
    // <0, 0, >0 after case folding.
    int compareIgnoreCase(std::string_view other) const;
    // The text as those comparisons see it: each code point folded (a malformed byte as
    // U+FFFD), in UTF-8. Two texts are equal ignoring case exactly when these are equal.
    std::string caseFolded() const;

    // The bytes for changing in place; the text is no longer null.
    std::string* mutableText() {
        null_ = false;
        return &text_;
    }

    String& operator+=(std::string_view s) {
        null_ = false;
        text_ += s;
        return *this;
    }
    friend String operator+(String a, std::string_view b) { return a += b; }

private:
    bool null_ = true;
    std::string text_;
};

inline std::ostream& operator<<(std::ostream& os, const String& s) {
    return s.isNull() ? os << "(null)" : os << s.str();
}

// Letter tests by Unicode character class, for the shape checks of language and country codes.
QVR_API bool isLowerLetter(char32_t c);
QVR_API bool isUpperLetter(char32_t c);

// Decodes UTF-8 into code points; a malformed byte yields U+FFFD and advances by one.
QVR_API std::u32string toCodePoints(std::string_view utf8);
QVR_API std::string fromCodePoints(std::u32string_view cps);
// UTF-16 forms, for the script language whose strings count 16-bit units.
QVR_API std::u16string toUtf16(std::string_view utf8);
QVR_API std::string fromUtf16(std::u16string_view u16);

} // namespace qvr

template <>
struct std::hash<qvr::String> {
    std::size_t operator()(const qvr::String& s) const noexcept {
        return std::hash<std::string>()(s.str()) ^ (s.isNull() ? 0x9e3779b9u : 0u);
    }
};
