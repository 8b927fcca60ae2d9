#include "vbscript/value_text.h"

#include <cstdio>

namespace qvr::vbscript {
namespace {

std::string quoted(std::string_view s) {
    std::string out = "\"";
    for (char c : s) {
        out += c;
        if (c == '"') out += '"';
    }
    return out + '"';
}

std::string dateText(DATE d) {
    DateParts p;
    if (!dateToParts(d, &p)) return "InvalidDate";
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d", p.year, p.month, p.day,
                  p.hour, p.minute, p.second);
    return buffer;
}

} // namespace

std::string canonicalText(const Variant& v) {
    switch (v.vt()) {
    case VT_EMPTY: return "Empty";
    case VT_NULL: return "Null";
    case VT_BOOL: return v.boolVal() ? "True" : "False";
    case VT_BSTR: return quoted(v.str().view());
    case VT_DISPATCH:
    case VT_UNKNOWN: return v.object() ? "Object" : "Nothing";
    case VT_ERROR: return "Error " + std::to_string(v.scode());
    case VT_DATE: return dateText(v.dateValue());
    default: break;
    }
    if (v.isArray()) {
        std::string out = "Array(";
        const auto& items = v.items();
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i) out += ", ";
            out += canonicalText(items[i]);
        }
        return out + ")";
    }
    Variant text;
    if (FAILED(changeType(&text, v, LCID_EN_US, 0, VT_BSTR))) return "?";
    return text.str().str();
}

std::string describeValue(const Variant& v) {
    unsigned vt = v.isArray() ? VT_ARRAY | VT_VARIANT : v.vt();
    return std::to_string(vt) + "\t" + canonicalText(v);
}

} // namespace qvr::vbscript
