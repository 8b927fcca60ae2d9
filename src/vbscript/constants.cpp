// The named constants of the language: characters, comparison modes, variant types, days of the
// week, date formats, tristates, colours and message-box values.
#include "vbscript/builtins.h"

namespace qvr::vbscript {
namespace {

constexpr Builtin integer(std::string_view name, std::int32_t value) {
    return Builtin{name, 0, 0, kConstant, nullptr, VT_I2, value, {}};
}
constexpr Builtin longValue(std::string_view name, std::int32_t value) {
    return Builtin{name, 0, 0, kConstant, nullptr, VT_I4, value, {}};
}
constexpr Builtin text(std::string_view name, std::string_view value) {
    return Builtin{name, 0, 0, kConstant, nullptr, VT_BSTR, 0, value};
}

constexpr Builtin kConstants[] = {
    // Characters.
    text("vbCr", "\r"),
    text("vbCrLf", "\r\n"),
    text("vbFormFeed", "\f"),
    text("vbLf", "\n"),
    text("vbNewLine", "\r\n"),
    text("vbNullChar", std::string_view("\0", 1)),
    text("vbNullString", std::string_view()),
    text("vbTab", "\t"),
    text("vbVerticalTab", "\v"),
    // Comparison.
    integer("vbBinaryCompare", 0),
    integer("vbTextCompare", 1),
    integer("vbDatabaseCompare", 2),
    // Variant types.
    integer("vbEmpty", 0),
    integer("vbNull", 1),
    integer("vbInteger", 2),
    integer("vbLong", 3),
    integer("vbSingle", 4),
    integer("vbDouble", 5),
    integer("vbCurrency", 6),
    integer("vbDate", 7),
    integer("vbString", 8),
    integer("vbObject", 9),
    integer("vbError", 10),
    integer("vbBoolean", 11),
    integer("vbVariant", 12),
    integer("vbDataObject", 13),
    integer("vbDecimal", 14),
    integer("vbByte", 17),
    integer("vbArray", 8192),
    // Days of the week and weeks of the year.
    integer("vbUseSystemDayOfWeek", 0),
    integer("vbSunday", 1),
    integer("vbMonday", 2),
    integer("vbTuesday", 3),
    integer("vbWednesday", 4),
    integer("vbThursday", 5),
    integer("vbFriday", 6),
    integer("vbSaturday", 7),
    integer("vbUseSystem", 0),
    integer("vbFirstJan1", 1),
    integer("vbFirstFourDays", 2),
    integer("vbFirstFullWeek", 3),
    // Date formats.
    integer("vbGeneralDate", 0),
    integer("vbLongDate", 1),
    integer("vbShortDate", 2),
    integer("vbLongTime", 3),
    integer("vbShortTime", 4),
    // Tristates.
    integer("vbTrue", -1),
    integer("vbFalse", 0),
    integer("vbUseDefault", -2),
    // Errors.
    longValue("vbObjectError", static_cast<std::int32_t>(0x80040000u)),
    // Colours.
    longValue("vbBlack", 0x000000),
    longValue("vbRed", 0x0000FF),
    longValue("vbGreen", 0x00FF00),
    longValue("vbYellow", 0x00FFFF),
    longValue("vbBlue", 0xFF0000),
    longValue("vbMagenta", 0xFF00FF),
    longValue("vbCyan", 0xFFFF00),
    longValue("vbWhite", 0xFFFFFF),
    // Message boxes.
    integer("vbOKOnly", 0),
    integer("vbOKCancel", 1),
    integer("vbAbortRetryIgnore", 2),
    integer("vbYesNoCancel", 3),
    integer("vbYesNo", 4),
    integer("vbRetryCancel", 5),
    integer("vbCritical", 16),
    integer("vbQuestion", 32),
    integer("vbExclamation", 48),
    integer("vbInformation", 64),
    integer("vbDefaultButton1", 0),
    integer("vbDefaultButton2", 256),
    integer("vbDefaultButton3", 512),
    integer("vbDefaultButton4", 768),
    integer("vbApplicationModal", 0),
    integer("vbSystemModal", 4096),
    longValue("vbMsgBoxHelpButton", 16384),
    longValue("vbMsgBoxSetForeground", 65536),
    longValue("vbMsgBoxRight", 524288),
    longValue("vbMsgBoxRtlReading", 1048576),
    integer("vbOK", 1),
    integer("vbCancel", 2),
    integer("vbAbort", 3),
    integer("vbRetry", 4),
    integer("vbIgnore", 5),
    integer("vbYes", 6),
    integer("vbNo", 7),
};

} // namespace

std::span<const Builtin> constantBuiltins() {
    return kConstants;
}

Variant constantValue(const Builtin& b) {
    switch (b.constType) {
    case VT_I2: return Variant(static_cast<std::int16_t>(b.constValue));
    case VT_I4: return Variant(b.constValue);
    default: return b.constText.data() ? Variant(String(b.constText)) : Variant(String());
    }
}

} // namespace qvr::vbscript
