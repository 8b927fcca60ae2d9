#include "platform/dom/carriable_text.h"

#include <algorithm>
#include <cstdio>

#include <qvr/dom.h>

#include "platform/com/error_report.h"

namespace qvr::dom {
namespace {

bool isXmlChar(char32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

std::string hex(const char* format, unsigned value) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

// Decodes the UTF-8 sequence at `at`: its code point and length, or a length of 0 when the bytes
// there are not well-formed UTF-8 (overlong forms and encoded surrogates included, whose code
// point is still given so that a lone surrogate is named as such).
struct Decoded {
    char32_t c = 0;
    std::size_t length = 0;
};

Decoded decode(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) return {lead, 1};
    std::size_t length;
    char32_t c;
    char32_t least;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, c = lead & 0x1F, least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, c = lead & 0x0F, least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, c = lead & 0x07, least = 0x10000;
    } else {
        return {};
    }
    if (at + length > text.size()) return {};
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return {};
        c = (c << 6) | (byte(at + i) & 0x3F);
    }
    if (c < least || c > 0x10FFFF) return {};
    return {c, length};
}

} // namespace

std::string uncarriable(std::string_view text, TextKind kind) {
    // Plain ASCII content, what nearly every value is, needs no decoding.
    if (kind == TextKind::Content && std::all_of(text.begin(), text.end(), [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return (byte >= 0x20 && byte < 0x80) || byte == '\t' || byte == '\n' || byte == '\r';
        }))
        return {};
    std::size_t character = 1;
    for (std::size_t at = 0; at < text.size(); ++character) {
        const Decoded d = decode(text, at);
        if (d.length == 0)
            return "the byte " + hex("0x%02X", static_cast<unsigned char>(text[at])) +
                   " (not UTF-8) at byte " + std::to_string(at + 1);
        if (!isXmlChar(d.c))
            return hex(d.c > 0xFFFF ? "U+%06X" : "U+%04X", static_cast<unsigned>(d.c)) +
                   " at character " + std::to_string(character);
        const std::string_view rest = text.substr(at);
        const std::string_view closing = kind == TextKind::Comment ? "--" : "?>";
        if (kind != TextKind::Content && rest.starts_with(closing))
            return "\"" + std::string(closing) + "\" at character " + std::to_string(character);
        if (kind == TextKind::Comment && rest == "-")
            return "\"-\" at its end (character " + std::to_string(character) + ")";
        at += d.length;
    }
    return {};
}

HRESULT checkCarriable(const String& text, std::string_view what, TextKind kind) {
    const std::string fault = uncarriable(text.view(), kind);
    if (fault.empty()) return S_OK;
    std::string message(what);
    message += " holds " + fault + ", which XML cannot carry.";
    return reportError({"XMLDOM.Node", IXMLDOMNode::iid}, String(std::move(message)), E_INVALIDARG);
}

} // namespace qvr::dom
