#include "platform/url/url.h"

#include <string>
#include <vector>

namespace qvr::url {
namespace {

bool isAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Length of the scheme at the start of `text` (without the colon), or 0 if there is none.
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isAlpha(text[0])) return 0;
    std::size_t i = 1;
    while (i < text.size() && (isAlpha(text[i]) || isDigit(text[i]) || text[i] == '+' ||
                               text[i] == '-' || text[i] == '.'))
        ++i;
    if (i >= text.size() || text[i] != ':' || i < 2) return 0;
    return i;
}

bool isDrivePath(std::string_view p) {
    return p.size() >= 2 && isAlpha(p[0]) && p[1] == ':' &&
           (p.size() == 2 || p[2] == '\\' || p[2] == '/');
}

bool keepsInUrl(unsigned char c) {
    if (c >= 0x80 || c <= 0x20 || c == 0x7F) return false;
    switch (c) {
    case '%':
    case '#':
    case '?':
    case '"':
    case '<':
    case '>':
    case '`':
    case '{':
    case '}':
    case '|':
    case '^':
    case '[':
    case ']': return false;
    default: return true;
    }
}

int hexValue(char c) {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string percentDecode(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        int hi, lo;
        if (s[i] == '%' && i + 2 < s.size() && (hi = hexValue(s[i + 1])) >= 0 &&
            (lo = hexValue(s[i + 2])) >= 0) {
            out += static_cast<char>(hi * 16 + lo);
            i += 2;
        } else {
            out += s[i];
        }
    }
    return out;
}

// Resolves "." and ".." in a slash-separated path, keeping a leading slash.
std::string normalizeSegments(std::string_view path) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    const bool rooted = !path.empty() && path[0] == '/';
    const bool trailing = !path.empty() && path.back() == '/';
    while (start <= path.size()) {
        std::size_t end = path.find('/', start);
        if (end == std::string_view::npos) end = path.size();
        std::string_view seg = path.substr(start, end - start);
        if (seg == "..") {
            if (!parts.empty() && parts.back() != "..")
                parts.pop_back();
            else if (!rooted)
                parts.push_back(seg);
        } else if (!seg.empty() && seg != ".") {
            parts.push_back(seg);
        }
        start = end + 1;
    }
    std::string out = rooted ? "/" : "";
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i) out += '/';
        out += parts[i];
    }
    if (trailing && !parts.empty()) out += '/';
    return out;
}

// The folder part of a path, up to and including its last slash ("" when there is none).
std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash + 1);
}

} // namespace

bool isUrl(std::string_view text) {
    return schemeLength(text) != 0;
}

bool isRelative(std::string_view path) {
    if (path.empty()) return true;
    if (path[0] == '/' || path[0] == '\\') return false;
    if (isDrivePath(path)) return false;
    return !isUrl(path);
}

HRESULT urlFromPath(std::string_view path, String* url) {
    if (!url) return E_POINTER;
    *url = String();
    if (isRelative(path) || isUrl(path)) return E_INVALIDARG;
    std::string out = "file://";
    if (isDrivePath(path)) out += '/';
    static const char hex[] = "0123456789ABCDEF";
    for (char ch : path) {
        auto c = static_cast<unsigned char>(ch);
        if (c == '\\')
            out += '/';
        else if (keepsInUrl(c))
            out += ch;
        else {
            out += '%';
            out += hex[c >> 4];
            out += hex[c & 15];
        }
    }
    *url = String(std::move(out));
    return S_OK;
}

HRESULT pathFromUrl(std::string_view text, String* path) {
    if (!path) return E_POINTER;
    *path = String();
    const std::size_t n = schemeLength(text);
    if (n != 4 || !String(text.substr(0, 4)).equalsIgnoreCase("file")) return E_INVALIDARG;
    std::string_view rest = text.substr(5);
    if (rest.substr(0, 2) == "//") {
        rest.remove_prefix(2);
        std::size_t slash = rest.find('/');
        std::string_view host = rest.substr(0, slash);
        if (!host.empty() && !String(host).equalsIgnoreCase("localhost")) return E_INVALIDARG;
        rest = slash == std::string_view::npos ? std::string_view("/") : rest.substr(slash);
    }
    std::string decoded = percentDecode(rest);
    // "file:///C:/x" names a drive path.
    if (decoded.size() >= 3 && decoded[0] == '/' &&
        isDrivePath(std::string_view(decoded).substr(1)))
        decoded.erase(0, 1);
    *path = String(std::move(decoded));
    return S_OK;
}

bool localPath(std::string_view text, std::string* path) {
    String converted;
    if (isUrl(text)) {
        if (pathFromUrl(text, &converted) != S_OK) return false;
    } else if (isRelative(text)) {
        return false;
    } else {
        converted = String(text);
    }
    *path = converted.str();
    for (char& c : *path)
        if (c == '\\') c = '/';
    return true;
}

String fileUrlOf(std::string_view path) {
    String url;
    return urlFromPath(path, &url) == S_OK ? url : String(path);
}

HRESULT scheme(std::string_view text, String* out) {
    if (!out) return E_POINTER;
    *out = String();
    const std::size_t n = schemeLength(text);
    if (n == 0) return E_INVALIDARG;
    *out = String(text.substr(0, n));
    return S_OK;
}

HRESULT pathToUrl(const String& path, String* out) {
    if (!out) return E_POINTER;
    if (path.isNull()) return E_INVALIDARG;
    *out = String();
    if (isUrl(path.view())) return S_FALSE;
    if (isRelative(path.view())) {
        std::string s = path.str();
        for (char& c : s)
            if (c == '\\') c = '/';
        *out = String(std::move(s));
        return S_OK;
    }
    return urlFromPath(path.view(), out);
}

String combine(std::string_view base, std::string_view relative) {
    if (isUrl(relative)) return String(relative);
    std::string rel(relative);
    for (char& c : rel)
        if (c == '\\') c = '/';
    const bool baseIsUrl = isUrl(base);
    if (!isRelative(rel)) {
        if (!baseIsUrl) return String(normalizeSegments(rel));
        String u;
        return urlFromPath(rel, &u) == S_OK ? u : String(rel);
    }
    std::string b(base);
    for (char& c : b)
        if (c == '\\' && !baseIsUrl) c = '/';
    if (baseIsUrl) {
        // Keep "scheme://authority" and resolve within the path after it.
        std::size_t pathStart = schemeLength(b) + 1;
        if (b.compare(pathStart, 2, "//") == 0) {
            std::size_t slash = b.find('/', pathStart + 2);
            pathStart = slash == std::string::npos ? b.size() : slash;
        }
        std::string_view dir = folderOf(std::string_view(b).substr(pathStart));
        std::string joined = dir.empty() ? std::string(1, '/') : std::string(dir);
        return String(b.substr(0, pathStart) + normalizeSegments(joined + rel));
    }
    return String(normalizeSegments(std::string(folderOf(b)) + rel));
}

} // namespace qvr::url
