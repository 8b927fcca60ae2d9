// CBool, CByte, CCur, CDate, CDbl, CInt, CLng, CSng, CStr, Hex, Oct, RGB, Asc, AscW, Chr, ChrW.
#include <algorithm>
#include <string>

#include <qvr/string.h>

#include "vbscript/builtins.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {
namespace {

template <VARTYPE VT>
void convert(CallContext& cx, Variant* args, int, Variant* out) {
    *out = convertTo(args[0], VT, cx.lcid);
}

// CDate also takes a number written as text ("1" is the day after day 0), which is no date text
// for IsDate.
void cdateFn(CallContext& cx, Variant* args, int, Variant* out) {
    Variant& v = args[0];
    resolveDefault(v);
    if (v.vt() == VT_BSTR) {
        Variant date;
        if (SUCCEEDED(changeType(&date, v, cx.lcid, 0, VT_DATE))) {
            *out = std::move(date);
            return;
        }
        Variant number;
        if (SUCCEEDED(changeType(&number, v, cx.lcid, 0, VT_R8))) {
            *out = convertTo(number, VT_DATE, cx.lcid);
            return;
        }
    }
    *out = convertTo(v, VT_DATE, cx.lcid);
}

// Hex and Oct: the value as a Long (16 bits for Integer, Byte and Boolean values, so that
// Hex(-1) is "FFFF").
void radixText(CallContext& cx, Variant* args, Variant* out, int bitsPerDigit) {
    Variant& v = args[0];
    resolveDefault(v);
    if (v.isNull()) {
        *out = Variant::null();
        return;
    }
    bool narrow = v.vt() == VT_I2 || v.vt() == VT_UI1 || v.vt() == VT_BOOL || v.isEmpty();
    std::uint32_t bits = static_cast<std::uint32_t>(v.isEmpty() ? 0 : toLong(v, cx.lcid));
    if (narrow) bits &= 0xFFFFu;
    std::string digits;
    unsigned mask = (1u << bitsPerDigit) - 1;
    do {
        digits.insert(digits.begin(), "0123456789ABCDEF"[bits & mask]);
        bits >>= bitsPerDigit;
    } while (bits);
    *out = textResult(std::move(digits));
}

// RGB: the colour as a Long, red in the low byte; a part above 255 counts as 255, a negative
// part is refused.
void rgbFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int32_t colour = 0;
    for (int i = 0; i < 3; ++i) {
        std::int32_t part = toLong(args[i], cx.lcid);
        if (part < 0) raise(kInvalidCall);
        colour |= std::min(part, 255) << (8 * i);
    }
    *out = Variant(colour);
}

void hexFn(CallContext& cx, Variant* args, int, Variant* out) {
    radixText(cx, args, out, 4);
}
void octFn(CallContext& cx, Variant* args, int, Variant* out) {
    radixText(cx, args, out, 3);
}

// The first UTF-16 unit of the argument's text; an empty text is an invalid argument.
char16_t firstUnit(CallContext& cx, Variant& v) {
    std::u16string units = toUtf16(toText(v, cx.lcid));
    if (units.empty()) raise(kInvalidCall);
    return units[0];
}

void ascFn(CallContext& cx, Variant* args, int, Variant* out) {
    *out = Variant(static_cast<std::int16_t>(ansiFromUnit(firstUnit(cx, args[0]))));
}
void ascWFn(CallContext& cx, Variant* args, int, Variant* out) {
    *out = Variant(static_cast<std::int16_t>(firstUnit(cx, args[0])));
}
void ascBFn(CallContext& cx, Variant* args, int, Variant* out) {
    *out = Variant(static_cast<std::int16_t>(firstUnit(cx, args[0]) & 0xFF));
}

Variant unitText(char16_t u) {
    return textResult(fromUtf16(std::u16string_view(&u, 1)));
}

void chrFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int32_t code = toLong(args[0], cx.lcid);
    if (code < 0 || code > 255) raise(kInvalidCall);
    *out = unitText(unitFromAnsi(code));
}
void chrWFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int32_t code = toLong(args[0], cx.lcid);
    if (code < -32768 || code > 65535) raise(kInvalidCall);
    *out = unitText(static_cast<char16_t>(code & 0xFFFF));
}
// A one-byte string cannot be held in UTF-16 text: the byte becomes a whole unit.
void chrBFn(CallContext& cx, Variant* args, int, Variant* out) {
    std::int32_t code = toLong(args[0], cx.lcid);
    if (code < 0 || code > 255) raise(kInvalidCall);
    *out = unitText(static_cast<char16_t>(code));
}

constexpr Builtin kConversions[] = {
    {"Asc", 1, 1, kPure, ascFn},
    {"AscB", 1, 1, kPure, ascBFn},
    {"AscW", 1, 1, kPure, ascWFn},
    {"CBool", 1, 1, kPure, convert<VT_BOOL>},
    {"CByte", 1, 1, kPure, convert<VT_UI1>},
    {"CCur", 1, 1, kPure, convert<VT_CY>},
    {"CDate", 1, 1, kPure, cdateFn},
    {"CDbl", 1, 1, kPure, convert<VT_R8>},
    {"Chr", 1, 1, kPure, chrFn},
    {"ChrB", 1, 1, kPure, chrBFn},
    {"ChrW", 1, 1, kPure, chrWFn},
    {"CInt", 1, 1, kPure, convert<VT_I2>},
    {"CLng", 1, 1, kPure, convert<VT_I4>},
    {"CSng", 1, 1, kPure, convert<VT_R4>},
    {"CStr", 1, 1, kPure, convert<VT_BSTR>},
    {"Hex", 1, 1, kPure, hexFn},
    {"Oct", 1, 1, kPure, octFn},
    {"RGB", 3, 3, kPure, rgbFn},
};

} // namespace

std::span<const Builtin> conversionBuiltins() {
    return kConversions;
}

} // namespace qvr::vbscript
