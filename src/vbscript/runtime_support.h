// What the library functions share: reading their arguments with the language's conversions and
// errors (Null where a value is needed is "Invalid use of Null", a text that is no number is
// "Type mismatch", a value too large is "Overflow"), and reducing host objects to their default
// values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <qvr/variant.h>

namespace qvr::vbscript {

// The longest string a function or `&` builds (in UTF-16 units); longer is "Out of string
// space".
constexpr std::size_t kMaxStringUnits = std::size_t{1} << 24;
void checkStringLength(std::size_t units);
void checkTextLength(std::string_view utf8); // the same for a text kept in UTF-8

// Replaces an object by its default value; Nothing raises "Object variable not set".
void resolveDefault(Variant& v);

// Argument i was given and not left out.
inline bool present(const Variant* args, int argc, int i) {
    return i < argc && !args[i].isMissing();
}
// True when any of the first `argc` arguments is Null.
bool anyNull(const Variant* args, int argc);

// Conversions of an argument; objects are reduced, Null raises "Invalid use of Null".
Variant convertTo(Variant& v, VARTYPE vt, LCID lcid);
double toDouble(Variant& v, LCID lcid);
std::int32_t toLong(Variant& v, LCID lcid); // rounded half to even
DATE toDate(Variant& v, LCID lcid);
std::string toText(Variant& v, LCID lcid); // as CStr writes it
// The same without a copy when the argument is text already: a view of the argument, or of
// `storage` holding the converted text.
std::string_view textView(Variant& v, LCID lcid, std::string& storage);
// An optional whole-number argument: `fallback` when absent.
std::int32_t optionalLong(Variant* args, int argc, int i, std::int32_t fallback, LCID lcid);
// The compare argument of the string functions: 0 binary, 1 text; other values (the database
// mode 2 included) raise "Invalid procedure call or argument".
bool textCompare(Variant* args, int argc, int i, LCID lcid);

// Result helpers.
inline Variant textResult(std::string s) {
    return Variant(String(std::move(s)));
}

} // namespace qvr::vbscript
