// InStr, InStrRev, Replace, StrComp, Join, Split, Filter: the functions that search text, with
// binary (0) or text (1, case ignored) comparison. Positions count UTF-16 units from 1.
#include <string>
#include <vector>

#include <qvr/string.h>

#include "vbscript/builtins.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"
#include "vbscript/text16.h"

namespace qvr::vbscript {
namespace {

constexpr std::size_t npos = std::u16string::npos;

// A text argument in units, lowered when the comparison ignores case. `original` keeps the
// units as written for results built from the text.
struct Units {
    std::u16string original;
    std::u16string key;
};

Units unitsOf(const std::string& text, bool ignoreCase) {
    Units u{toUtf16(text), {}};
    if (ignoreCase) u.key = lowerUnits(u.original);
    return u;
}
const std::u16string& keyOf(const Units& u) {
    return u.key.empty() ? u.original : u.key;
}

std::size_t findForward(const Units& hay, const Units& needle, std::size_t from) {
    return keyOf(hay).find(keyOf(needle), from);
}

void instrFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    // InStr([start, ]string1, string2[, compare]): with three or more arguments the first is
    // the start.
    int first = argc >= 3 ? 1 : 0;
    std::int32_t start = 1;
    if (first) {
        resolveDefault(args[0]);
        start = toLong(args[0], cx.lcid);
        if (start < 1) raise(kInvalidCall);
    }
    bool ignoreCase = textCompare(args, argc, first + 2, cx.lcid);
    resolveDefault(args[first]);
    resolveDefault(args[first + 1]);
    if (args[first].isNull() || args[first + 1].isNull()) {
        *out = Variant::null();
        return;
    }
    Units hay = unitsOf(toText(args[first], cx.lcid), ignoreCase);
    Units needle = unitsOf(toText(args[first + 1], cx.lcid), ignoreCase);
    std::size_t from = static_cast<std::size_t>(start - 1);
    std::int32_t result = 0;
    if (hay.original.empty() || from > hay.original.size())
        result = 0;
    else if (needle.original.empty())
        result = start;
    else if (std::size_t at = findForward(hay, needle, from); at != npos)
        result = static_cast<std::int32_t>(at + 1);
    *out = Variant(result);
}

void instrRevFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::int32_t start = optionalLong(args, argc, 2, -1, cx.lcid);
    if (start == 0 || start < -1) raise(kInvalidCall);
    bool ignoreCase = textCompare(args, argc, 3, cx.lcid);
    // Unlike InStr, a Null text is "Invalid use of Null" here.
    Units hay = unitsOf(toText(args[0], cx.lcid), ignoreCase);
    Units needle = unitsOf(toText(args[1], cx.lcid), ignoreCase);
    std::size_t len = hay.original.size();
    std::int32_t result = 0;
    if (start == -1) start = static_cast<std::int32_t>(len);
    if (len == 0 || static_cast<std::size_t>(start) > len) {
        result = 0;
    } else if (needle.original.empty()) {
        result = start;
    } else if (needle.original.size() <= static_cast<std::size_t>(start)) {
        // The match must end at or before position `start`.
        std::size_t last = static_cast<std::size_t>(start) - needle.original.size();
        std::size_t at = keyOf(hay).rfind(keyOf(needle), last);
        if (at != npos) result = static_cast<std::int32_t>(at + 1);
    }
    *out = Variant(result);
}

void replaceFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::int32_t start = optionalLong(args, argc, 3, 1, cx.lcid);
    std::int32_t limit = optionalLong(args, argc, 4, -1, cx.lcid);
    if (start < 1 || limit < -1) raise(kInvalidCall);
    bool ignoreCase = textCompare(args, argc, 5, cx.lcid);
    Units text = unitsOf(toText(args[0], cx.lcid), ignoreCase);
    Units find = unitsOf(toText(args[1], cx.lcid), ignoreCase);
    std::u16string with = toUtf16(toText(args[2], cx.lcid));
    std::size_t from = static_cast<std::size_t>(start - 1);
    if (from >= text.original.size()) {
        *out = textResult(std::string());
        return;
    }
    // The result begins at `start`: the text before it is dropped.
    std::u16string result;
    std::size_t at = from;
    std::int32_t done = 0;
    if (!find.original.empty()) {
        while (limit == -1 || done < limit) {
            std::size_t hit = findForward(text, find, at);
            if (hit == npos) break;
            result.append(text.original, at, hit - at);
            result += with;
            checkStringLength(result.size());
            at = hit + find.original.size();
            ++done;
        }
    }
    result.append(text.original, at, npos);
    *out = textResult(fromUtf16(result));
}

void strCompFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    bool ignoreCase = textCompare(args, argc, 2, cx.lcid);
    resolveDefault(args[0]);
    resolveDefault(args[1]);
    if (args[0].isNull() || args[1].isNull()) {
        *out = Variant::null();
        return;
    }
    std::string a = toText(args[0], cx.lcid), b = toText(args[1], cx.lcid);
    int c;
    if (ignoreCase) {
        std::u16string ka = lowerUnits(toUtf16(a)), kb = lowerUnits(toUtf16(b));
        c = ka.compare(kb);
    } else {
        c = compareUnits(a, b);
    }
    *out = Variant(static_cast<std::int16_t>(c < 0 ? -1 : c > 0 ? 1 : 0));
}

// The array argument of Join and Filter.
const std::vector<Variant>& arrayArg(Variant& v) {
    resolveDefault(v);
    if (v.isNull()) raise(kInvalidUseOfNull);
    if (!v.isArray()) raise(kTypeMismatch);
    return v.items();
}

void joinFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::string delimiter = present(args, argc, 1) ? toText(args[1], cx.lcid) : " ";
    std::vector<Variant> items = arrayArg(args[0]);
    std::string result;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i) result += delimiter;
        // A Null item joins as an empty text, as it does with "&".
        if (!items[i].isNull()) result += toText(items[i], cx.lcid);
        checkTextLength(result);
    }
    *out = textResult(std::move(result));
}

void splitFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::string delimiter = present(args, argc, 1) ? toText(args[1], cx.lcid) : " ";
    std::int32_t limit = optionalLong(args, argc, 2, -1, cx.lcid);
    if (limit < -1) raise(kInvalidCall);
    bool ignoreCase = textCompare(args, argc, 3, cx.lcid);
    Units text = unitsOf(toText(args[0], cx.lcid), ignoreCase);
    Units sep = unitsOf(delimiter, ignoreCase);
    std::vector<Variant> parts;
    if (!text.original.empty() && limit != 0) {
        std::size_t at = 0;
        for (;;) {
            std::size_t hit =
                sep.original.empty() || static_cast<std::int32_t>(parts.size()) == limit - 1
                    ? npos
                    : findForward(text, sep, at);
            if (hit == npos) {
                parts.emplace_back(
                    String(fromUtf16(std::u16string_view(text.original).substr(at))));
                break;
            }
            parts.emplace_back(
                String(fromUtf16(std::u16string_view(text.original).substr(at, hit - at))));
            at = hit + sep.original.size();
        }
    }
    *out = Variant::array(std::move(parts));
}

void filterFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    std::vector<Variant> items = arrayArg(args[0]);
    std::string value = toText(args[1], cx.lcid);
    bool include = true;
    if (present(args, argc, 2)) include = convertTo(args[2], VT_BOOL, cx.lcid).boolVal() != 0;
    bool ignoreCase = textCompare(args, argc, 3, cx.lcid);
    Units needle = unitsOf(value, ignoreCase);
    std::vector<Variant> kept;
    for (Variant& item : items) {
        std::string text = toText(item, cx.lcid);
        Units hay = unitsOf(text, ignoreCase);
        bool found = findForward(hay, needle, 0) != npos;
        if (found == include) kept.emplace_back(String(std::move(text)));
    }
    *out = Variant::array(std::move(kept));
}

constexpr Builtin kSearch[] = {
    {"Filter", 2, 4, kPure, filterFn},     {"InStr", 2, 4, kPure, instrFn},
    {"InStrRev", 2, 4, kPure, instrRevFn}, {"Join", 1, 2, kPure, joinFn},
    {"Replace", 3, 6, kPure, replaceFn},   {"Split", 1, 4, kPure, splitFn},
    {"StrComp", 2, 3, kPure, strCompFn},
};

} // namespace

std::span<const Builtin> searchBuiltins() {
    return kSearch;
}

} // namespace qvr::vbscript
