// Len, Left, Right, Mid, LCase, UCase, Trim, LTrim, RTrim, Space, String, StrReverse and the
// byte forms LenB, LeftB, RightB, MidB. Lengths and positions count UTF-16 units.
#include <algorithm>
#include <string>

#include <qvr/string.h>

#include "vbscript/builtins.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {
namespace {

// Reduces the text argument; Null makes the result Null (true is returned).
bool nullText(Variant& v, Variant* out) {
    resolveDefault(v);
    if (!v.isNull()) return false;
    *out = Variant::null();
    return true;
}

std::size_t count(Variant& v, LCID lcid) {
    std::int32_t n = toLong(v, lcid);
    if (n < 0) raise(kInvalidCall);
    return static_cast<std::size_t>(n);
}

void lenFn(CallContext& cx, Variant* args, int, Variant* out) {
    if (nullText(args[0], out)) return;
    std::string storage;
    *out = Variant(static_cast<std::int32_t>(utf16Length(textView(args[0], cx.lcid, storage))));
}

// Left, Right and Mid in units; `bytes` halves the counts for the byte forms.
void slice(CallContext& cx, Variant* args, int argc, Variant* out, char which, bool bytes) {
    resolveDefault(args[0]);
    if (which == 'M') {
        // A Null length is reported before anything wrong with the start.
        if (present(args, argc, 2)) {
            resolveDefault(args[2]);
            if (args[2].isNull()) raise(kInvalidUseOfNull);
        }
        std::int32_t start = toLong(args[1], cx.lcid);
        if (start < 1) raise(kInvalidCall);
        std::size_t length = present(args, argc, 2) ? count(args[2], cx.lcid) : SIZE_MAX;
        if (nullText(args[0], out)) return;
        std::size_t from = static_cast<std::size_t>(start - 1);
        if (bytes) {
            from /= 2;
            if (length != SIZE_MAX) length = (length + 1) / 2;
        }
        std::string storage;
        *out = textResult(utf16Slice(textView(args[0], cx.lcid, storage), from, length));
        return;
    }
    std::size_t n = count(args[1], cx.lcid);
    if (nullText(args[0], out)) return;
    if (bytes) n = (n + 1) / 2;
    std::string storage;
    std::string_view text = textView(args[0], cx.lcid, storage);
    if (which == 'L') {
        *out = textResult(utf16Slice(text, 0, n));
    } else {
        std::size_t len = utf16Length(text);
        *out = textResult(n >= len ? std::string(text) : utf16Slice(text, len - n, n));
    }
}

// Left, Right and Mid, by character or (Bytes) by byte.
template <char Side, bool Bytes>
void sliceFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    slice(cx, args, argc, out, Side, Bytes);
}
void lenBFn(CallContext& cx, Variant* args, int, Variant* out) {
    if (nullText(args[0], out)) return;
    *out = Variant(static_cast<std::int32_t>(2 * utf16Length(toText(args[0], cx.lcid))));
}

template <bool Upper>
void caseFn(CallContext& cx, Variant* args, int, Variant* out) {
    if (nullText(args[0], out)) return;
    std::string text = toText(args[0], cx.lcid);
    if (isAscii(text)) {
        for (char& c : text) {
            if (Upper && c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
            if (!Upper && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
        }
        *out = textResult(std::move(text));
        return;
    }
    std::u16string units = toUtf16(text);
    *out =
        textResult(fromUtf16(Upper ? upperUnits(std::move(units)) : lowerUnits(std::move(units))));
}

// Trim removes blanks (U+0020) only, as the language does.
template <bool Left, bool Right>
void trimFn(CallContext& cx, Variant* args, int, Variant* out) {
    if (nullText(args[0], out)) return;
    std::string text = toText(args[0], cx.lcid);
    std::size_t b = 0, e = text.size();
    if (Left)
        while (b < e && text[b] == ' ') ++b;
    if (Right)
        while (e > b && text[e - 1] == ' ') --e;
    *out = textResult(text.substr(b, e - b));
}

void spaceFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::size_t n = count(args[0], cx.lcid);
    checkStringLength(n);
    *out = textResult(std::string(n, ' '));
}

void stringFn(CallContext& cx, Variant* args, int, Variant* out) {
    resolveDefault(args[0]);
    resolveDefault(args[1]);
    if (args[0].isNull() || args[1].isNull()) {
        *out = Variant::null();
        return;
    }
    std::size_t n = count(args[0], cx.lcid);
    char16_t unit;
    if (args[1].vt() == VT_BSTR) {
        std::u16string units = toUtf16(args[1].str().view());
        if (units.empty()) raise(kInvalidCall);
        unit = units[0];
    } else {
        std::int32_t code = toLong(args[1], cx.lcid);
        unit = unitFromAnsi(((code % 256) + 256) % 256);
    }
    checkStringLength(n);
    std::u16string units(n, unit);
    *out = textResult(fromUtf16(units));
}

void strReverseFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::string text = toText(args[0], cx.lcid);
    if (isAscii(text)) {
        std::reverse(text.begin(), text.end());
        *out = textResult(std::move(text));
        return;
    }
    std::u32string points = toCodePoints(text);
    std::reverse(points.begin(), points.end());
    *out = textResult(fromCodePoints(points));
}

constexpr Builtin kStrings[] = {
    {"LCase", 1, 1, kPure, caseFn<false>},
    {"Left", 2, 2, kPure, sliceFn<'L', false>},
    {"Len", 1, 1, kPure, lenFn},
    {"LTrim", 1, 1, kPure, trimFn<true, false>},
    {"Mid", 2, 3, kPure, sliceFn<'M', false>},
    {"Right", 2, 2, kPure, sliceFn<'R', false>},
    {"RTrim", 1, 1, kPure, trimFn<false, true>},
    {"Space", 1, 1, kPure, spaceFn},
    {"StrReverse", 1, 1, kPure, strReverseFn},
    {"String", 2, 2, kPure, stringFn},
    {"Trim", 1, 1, kPure, trimFn<true, true>},
    {"UCase", 1, 1, kPure, caseFn<true>},
};

constexpr Builtin kBytes[] = {
    {"LeftB", 2, 2, kPure, sliceFn<'L', true>},
    {"LenB", 1, 1, kPure, lenBFn},
    {"MidB", 2, 3, kPure, sliceFn<'M', true>},
    {"RightB", 2, 2, kPure, sliceFn<'R', true>},
};

} // namespace

std::span<const Builtin> stringBuiltins() {
    return kStrings;
}

std::span<const Builtin> bytesBuiltins() {
    return kBytes;
}

} // namespace qvr::vbscript
