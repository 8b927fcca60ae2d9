// URL and path services: the tests and conversions the model uses to tell files from URLs, to
// write file references, and to resolve a table's reference against its catalog.
#pragma once

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr::url {

// True when `text` starts with a scheme of two or more characters and a colon ("file:",
// "http:"). A drive letter ("C:\x") is a path, not a URL.
bool isUrl(std::string_view text);
// True for a path that is neither rooted ("/x", "\x"), nor a drive path ("C:\x"), nor a URL.
bool isRelative(std::string_view path);

// An absolute path as a file URL: "/data/a b.xml" gives "file:///data/a%20b.xml". Backslashes
// become slashes; spaces, '%', '#', '?', controls and non-ASCII bytes are percent-encoded.
// A relative path fails with E_INVALIDARG.
HRESULT urlFromPath(std::string_view path, String* url);
// A file URL as a path: percent-escapes decoded, "file://localhost/x" and "file:/x" accepted.
// Another scheme fails with E_INVALIDARG.
HRESULT pathFromUrl(std::string_view url, String* path);
// The local path that `text` names: a "file" URL, or an absolute path as it stands; backslashes
// become slashes. False for a URL of another scheme and for a relative path.
bool localPath(std::string_view text, std::string* path);
// The file URL of an absolute path; the path itself when it is none.
String fileUrlOf(std::string_view path);
// The scheme of a URL, without the colon ("file", "http"); E_INVALIDARG when there is none.
HRESULT scheme(std::string_view url, String* out);

// The reference form a document stores for a file: a URL stays as it is (S_FALSE, no out value),
// a relative path has its backslashes turned to slashes, an absolute path becomes a file URL.
// A null out pointer gives E_POINTER, a null path E_INVALIDARG.
HRESULT pathToUrl(const String& path, String* out);

// Resolves `relative` against the folder URL or path `base`. A `relative` that is a URL or an
// absolute path stands alone; "." and ".." segments are resolved.
String combine(std::string_view base, std::string_view relative);

} // namespace qvr::url
