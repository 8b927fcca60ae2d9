// Reading, parsing, writing and serialising documents. Parsing never touches the network, never
// loads a DTD or an external entity and never substitutes entities; whitespace-only text between
// elements is dropped. Writing goes to a temporary file beside the target that reaches the disk
// and is then renamed over the target.
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

    // Parses `text`; null with the record filled on failure. A document whose entities expand to
    // far more than its own size, or that nests too deep, is refused (ParseLimits).
    static xmlDocPtr parse(std::string_view text, const String& url, ParseErrorRecord* error);
    // Parses the file at `path`; null with the record filled on failure (also when the file
    // cannot be read).
    static xmlDocPtr parseFile(const std::string& path, ParseErrorRecord* error);

    // The document's XML text: declaration without encoding, not indented.
    static std::string documentXml(xmlDocPtr doc);
    // A node's XML text; an element below another element carries the declarations it needs.
    static std::string nodeXml(xmlNodePtr node);

    // Writes the saved form of `doc` straight into a temporary file beside `path`, flushes it,
    // renames it over `path` (over the file a symbolic link names) and flushes the folder. An
    // existing file keeps its owner and mode; a read-only one is refused. On failure the old file
    // is untouched, the temporary file gone, and `reason` tells why.
    static HRESULT saveReplacing(const std::string& path, xmlDocPtr doc, std::string* reason);

private:
    static bool readFile(const std::string& path, std::string* bytes, ParseErrorRecord* error);
    // Parses an input of `inputSize` bytes within the parse limits; a refusal by those limits is
    // told in `refusal`.
    static xmlDocPtr runParser(xmlParserCtxtPtr context, std::size_t inputSize,
                               CapturedError* refusal);
    static void describe(const QuietErrors& quiet, const CapturedError& refusal,
                         std::string_view text, ParseErrorRecord* error);
};

} // namespace qvr::dom
