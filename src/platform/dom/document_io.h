// Reading, parsing, writing and serialising documents. Parsing never touches the network, never
// loads a DTD or an external entity and never substitutes entities; whitespace-only text between
// elements is dropped. Writing goes to a temporary file beside the target that is then renamed
// over it.
#pragma once

#include <string>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <qvr/variant.h>

#include "platform/dom/parse_error.h"
#include "platform/dom/quiet_errors.h"

namespace qvr::dom {

class DocumentIO {
public:
    // The file a load or save names: a path (a relative one against the working directory) or a
    // file: URL, as text. E_INVALIDARG for another kind of value or an empty text,
    // E_ACCESSDENIED for a URL of another scheme (nothing is fetched from a network).
    static HRESULT pathOf(const Variant& source, std::string* path);
    // The failure record of a source that cannot be read at all.
    static ParseErrorRecord unreadable(HRESULT status, const String& url);

    // Parses `text`; null with the record filled on failure.
    static xmlDocPtr parse(std::string_view text, const String& url, ParseErrorRecord* error);
    // Parses the file at `path`; null with the record filled on failure (also when the file
    // cannot be read).
    static xmlDocPtr parseFile(const std::string& path, ParseErrorRecord* error);

    // The document as it is saved: declaration with encoding, indented, UTF-8.
    static std::string savedForm(xmlDocPtr doc);
    // The document's XML text: declaration without encoding, not indented.
    static std::string documentXml(xmlDocPtr doc);
    // A node's XML text; an element below another element carries the declarations it needs.
    static std::string nodeXml(xmlNodePtr node);

    // Writes `bytes` to a temporary file beside `path`, then renames it over `path`.
    static HRESULT writeReplacing(const std::string& path, std::string_view bytes);

private:
    static bool readFile(const std::string& path, std::string* bytes, ParseErrorRecord* error);
    static xmlDocPtr runParser(xmlParserCtxtPtr context);
    static void describe(const QuietErrors& quiet, std::string_view text, ParseErrorRecord* error);
};

} // namespace qvr::dom
