#include "platform/dom/document_io.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlsave.h>

#include "platform/dom/parse_limits.h"
#include "platform/dom/quiet_errors.h"
#include "platform/file/replacing_write.h"
#include "platform/url/url.h"

namespace qvr::dom {
namespace {

// Texts of any length load (XML_PARSE_HUGE lifts the parser's limit of 10,000,000 bytes on one
// text, which a value the library accepted could exceed); ParseLimits bounds instead what the
// input makes the parser build beyond its own size. A text shorter than two pointers (most values
// of cells, most keys) is kept inside its node (XML_PARSE_COMPACT), which saves a block of memory
// and a read of memory for each: libxml2's own calls that change or free a text know the place.
constexpr int kParseOptions =
    XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT;
// Parse error codes are told apart from other statuses by this base.
constexpr std::uint32_t kParseCodeBase = 0xC00CE000u;
// The source line of an error record is cut to this many bytes around the error.
constexpr std::size_t kSourceWindow = 1024;

struct FileFailure {
    int error;
    HRESULT status;
    const char* reason;
};

constexpr FileFailure kFileFailures[] = {
    {ENOENT, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
     "The system cannot locate the object specified."},
    {ENOTDIR, HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND),
     "The system cannot locate the object specified."},
    {EACCES, E_ACCESSDENIED, "Access is denied."},
    {EPERM, E_ACCESSDENIED, "Access is denied."},
    {EROFS, E_ACCESSDENIED, "Access is denied."},
    {EISDIR, E_ACCESSDENIED, "Access is denied."},
    {ENOSPC, STG_E_MEDIUMFULL, "There is not enough space on the disk."},
    {EFBIG, E_OUTOFMEMORY, "The file is too large."},
    {ENOMEM, E_OUTOFMEMORY, "Not enough memory."},
    {EDQUOT, STG_E_MEDIUMFULL, "There is not enough space on the disk."},
    {EIO, STG_E_READFAULT, "The device does not work as it should."},
    {ELOOP, HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND),
     "The system cannot locate the object specified."},
};

const FileFailure& failureOf(int error) {
    static constexpr FileFailure other{0, E_FAIL, "The file could not be read or written."};
    for (const auto& failure : kFileFailures)
        if (failure.error == error) return failure;
    return other;
}

const char* reasonOf(HRESULT status) {
    for (const auto& failure : kFileFailures)
        if (failure.status == status) return failure.reason;
    return failureOf(0).reason;
}

String urlOfPath(const std::string& path) {
    String url;
    if (FAILED(url::urlFromPath(path, &url))) return String(path);
    return url;
}

// The text of line `line` (from 1) and the character offset of column `column` in it.
void locate(std::string_view text, int line, int column, ParseErrorRecord* record) {
    std::size_t start = 0;
    for (int i = 1; i < line && start < text.size(); ++i) {
        const auto newline = text.find('\n', start);
        if (newline == std::string_view::npos) {
            start = text.size();
            break;
        }
        start = newline + 1;
    }
    std::size_t end = std::min(text.find('\n', start), text.size());
    if (end > start && text[end - 1] == '\r') --end;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < start; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) ++characters;
    record->filepos = static_cast<std::int32_t>(characters + (column > 0 ? column - 1 : 0));
    std::string_view source = text.substr(start, end - start);
    if (source.size() > kSourceWindow) {
        // A very long line (a whole document on one line): the part around the error.
        const std::size_t at = std::min<std::size_t>(column > 0 ? column - 1 : 0, source.size());
        const std::size_t from = at > kSourceWindow / 2 ? at - kSourceWindow / 2 : 0;
        source = source.substr(from, kSourceWindow);
    }
    // Cut characters and bytes of another encoding become replacement characters.
    record->srcText = String(fromCodePoints(toCodePoints(source)));
}

class StringSink {
public:
    static int write(void* context, const char* buffer, int length) {
        try {
            static_cast<std::string*>(context)->append(buffer, static_cast<std::size_t>(length));
            return length;
        } catch (...) {
            return -1; // called from C: nothing may be thrown through it
        }
    }
    static int close(void*) { return 0; }
};

// Serialises with libxml2's writer into a string.
template <class Write>
std::string serialise(int options, Write&& write) {
    std::string out;
    xmlSaveCtxtPtr save =
        xmlSaveToIO(&StringSink::write, &StringSink::close, &out, "UTF-8", options);
    if (!save) throw std::bad_alloc();
    write(save);
    xmlSaveClose(save);
    return out;
}

bool isDeclarationNode(xmlNodePtr node) {
    return node->type == XML_PI_NODE && xmlStrEqual(node->name, BAD_CAST "xml");
}

// A processing instruction named "xml" made in memory stands for the declaration, which the
// writer makes itself: it is held out of the document while the document is written.
class DeclarationNodesAside {
public:
    explicit DeclarationNodesAside(xmlDocPtr doc) : doc_(doc) {
        for (xmlNodePtr node = doc->children; node; node = node->next)
            if (isDeclarationNode(node)) aside_.push_back({node, node->next});
        for (const auto& entry : aside_) xmlUnlinkNode(entry.node);
    }
    ~DeclarationNodesAside() {
        auto* parent = reinterpret_cast<xmlNodePtr>(doc_);
        for (auto it = aside_.rbegin(); it != aside_.rend(); ++it) {
            xmlNodePtr node = it->node;
            xmlNodePtr next = it->next;
            node->parent = parent;
            node->next = next;
            node->prev = next ? next->prev : parent->last;
            if (node->prev)
                node->prev->next = node;
            else
                parent->children = node;
            if (next)
                next->prev = node;
            else
                parent->last = node;
        }
    }
    DeclarationNodesAside(const DeclarationNodesAside&) = delete;
    DeclarationNodesAside& operator=(const DeclarationNodesAside&) = delete;

private:
    struct Entry {
        xmlNodePtr node;
        xmlNodePtr next;
    };
    xmlDocPtr doc_;
    std::vector<Entry> aside_;
};

// Feeds the parser from a file descriptor, keeping the cause of a failed read.
struct FileReader {
    int fd = -1;
    int error = 0;
    std::size_t size = 0;

    FileReader() = default;
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;
    ~FileReader() {
        if (fd >= 0) ::close(fd);
    }

    bool open(const std::string& path) {
        fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat info {};
        if (fd < 0 || ::fstat(fd, &info) != 0)
            error = errno;
        else if (S_ISDIR(info.st_mode))
            error = EISDIR;
        else
            size = static_cast<std::size_t>(info.st_size);
        return error == 0;
    }
    static int read(void* self, char* buffer, int length) {
        auto* reader = static_cast<FileReader*>(self);
        for (;;) {
            const ssize_t got = ::read(reader->fd, buffer, static_cast<std::size_t>(length));
            if (got >= 0) return static_cast<int>(got);
            if (errno != EINTR) {
                reader->error = errno;
                return -1;
            }
        }
    }
    static int close(void*) { return 0; }
};

} // namespace

HRESULT DocumentIO::pathOf(const Variant& source, std::string* path) {
    if (source.vt() != VT_BSTR || source.str().isEmpty()) return E_INVALIDARG;
    const std::string& text = source.str().str();
    if (url::isUrl(text)) {
        String scheme;
        if (FAILED(url::scheme(text, &scheme)) || !scheme.equalsIgnoreCase("file"))
            return E_ACCESSDENIED;
        String local;
        if (FAILED(url::pathFromUrl(text, &local)) || local.isEmpty()) return E_INVALIDARG;
        *path = local.str();
        return S_OK;
    }
    std::error_code error;
    const auto absolute = std::filesystem::absolute(text, error);
    if (error) return E_INVALIDARG;
    *path = absolute.lexically_normal().string();
    return S_OK;
}

ParseErrorRecord DocumentIO::unreadable(HRESULT status, const String& url) {
    ParseErrorRecord record;
    record.code = status;
    record.url = url;
    record.reason = String(reasonOf(status));
    return record;
}

bool DocumentIO::readFile(const std::string& path, std::string* bytes, ParseErrorRecord* error) {
    const String url = urlOfPath(path);
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info {};
    if (fd < 0 || ::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        const int cause = fd < 0 ? errno : (S_ISDIR(info.st_mode) ? EISDIR : errno);
        if (fd >= 0) ::close(fd);
        *error = unreadable(failureOf(cause).status, url);
        return false;
    }
    // One allocation of the file's size; a file that grows meanwhile is read to its end.
    bytes->assign(static_cast<std::size_t>(info.st_size), '\0');
    std::size_t filled = 0;
    for (;;) {
        if (filled == bytes->size()) bytes->resize(bytes->size() + (1 << 16));
        const ssize_t got = ::read(fd, bytes->data() + filled, bytes->size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            const int cause = errno;
            ::close(fd);
            *error = unreadable(failureOf(cause).status, url);
            return false;
        }
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    bytes->resize(filled);
    ::close(fd);
    return true;
}

xmlDocPtr DocumentIO::parse(std::string_view text, const String& url, ParseErrorRecord* error) {
    *error = ParseErrorRecord{};
    error->url = url.isNull() ? String("") : url;
    if (text.size() > static_cast<std::size_t>(INT_MAX)) {
        error->code = E_OUTOFMEMORY;
        error->reason = String(reasonOf(E_OUTOFMEMORY));
        return nullptr;
    }
    QuietErrors quiet;
    CapturedError refusal;
    if (!text.empty()) {
        // (libxml2's static input buffer would spare the copy the memory parser makes, but it
        // breaks on large inputs in the libxml2 we build against.)
        xmlParserCtxtPtr context =
            xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()));
        if (!context) throw std::bad_alloc();
        if (xmlDocPtr doc = runParser(context, text.size(), &refusal)) return doc;
    }
    describe(quiet, refusal, text, error);
    return nullptr;
}

xmlDocPtr DocumentIO::parseFile(const std::string& path, ParseErrorRecord* error) {
    *error = ParseErrorRecord{};
    error->url = urlOfPath(path);
    FileReader reader;
    if (!reader.open(path)) {
        *error = unreadable(failureOf(reader.error).status, error->url);
        return nullptr;
    }
    QuietErrors quiet;
    CapturedError refusal;
    // Streamed from the file as libxml2 reads files itself; the file is read again only to
    // show the line of an error.
    xmlParserCtxtPtr context = xmlCreateIOParserCtxt(
        nullptr, nullptr, &FileReader::read, &FileReader::close, &reader, XML_CHAR_ENCODING_NONE);
    if (!context) throw std::bad_alloc();
    if (xmlDocPtr doc = runParser(context, reader.size, &refusal)) return doc;
    if (reader.error) {
        *error = unreadable(failureOf(reader.error).status, error->url);
        return nullptr;
    }
    std::string text;
    ParseErrorRecord unread;
    readFile(path, &text, &unread);
    describe(quiet, refusal, text, error);
    return nullptr;
}

xmlDocPtr DocumentIO::runParser(xmlParserCtxtPtr context, std::size_t inputSize,
                                CapturedError* refusal) {
    xmlCtxtUseOptions(context, kParseOptions);
    // No registration of ID attributes: the layer keeps its own tables, and libxml2's would
    // keep pointers to attributes that the layer changes and frees.
    context->loadsubset |= XML_SKIP_IDS;
    ParseLimits limits(context, inputSize);
    xmlParseDocument(context);
    xmlDocPtr doc = context->myDoc;
    const bool wellFormed = context->wellFormed != 0 && doc && !limits.refusal();
    xmlFreeParserCtxt(context);
    if (wellFormed && limits.acceptsTree(doc)) return doc;
    if (const CapturedError* refused = limits.refusal()) *refusal = *refused;
    if (doc) xmlFreeDoc(doc);
    return nullptr;
}

void DocumentIO::describe(const QuietErrors& quiet, const CapturedError& refusal,
                          std::string_view text, ParseErrorRecord* error) {
    CapturedError captured;
    if (refusal.code != 0)
        captured = refusal; // a bound of the parse, not a fault libxml2 found
    else if (const CapturedError* first = quiet.first())
        captured = *first;
    else
        captured = {XML_ERR_DOCUMENT_EMPTY, 1, 1, "Document is empty"};
    error->code =
        static_cast<std::int32_t>(kParseCodeBase + static_cast<std::uint32_t>(captured.code));
    error->reason = String(captured.message);
    error->line = captured.line;
    error->linepos = captured.column;
    locate(text, captured.line, captured.column, error);
}

std::string DocumentIO::documentXml(xmlDocPtr doc) {
    DeclarationNodesAside aside(doc);
    std::string out = "<?xml version=\"";
    out += doc->version ? reinterpret_cast<const char*>(doc->version) : "1.0";
    out += "\"";
    if (doc->standalone == 1) out += " standalone=\"yes\"";
    out += "?>\n";
    out += serialise(XML_SAVE_NO_DECL, [&](xmlSaveCtxtPtr save) { xmlSaveDoc(save, doc); });
    return out;
}

std::string DocumentIO::nodeXml(xmlNodePtr node) {
    if (node->type == XML_DOCUMENT_NODE) return documentXml(reinterpret_cast<xmlDocPtr>(node));
    xmlNodePtr written = node;
    // A copy declares on itself the namespaces that the element's ancestors declared.
    if (node->type == XML_ELEMENT_NODE && node->parent && node->parent->type == XML_ELEMENT_NODE)
        written = xmlDocCopyNode(node, node->doc, 1);
    if (!written) throw std::bad_alloc();
    std::string out;
    try {
        out = serialise(XML_SAVE_NO_DECL, [&](xmlSaveCtxtPtr save) { xmlSaveTree(save, written); });
    } catch (...) {
        if (written != node) xmlFreeNode(written);
        throw;
    }
    if (written != node) xmlFreeNode(written);
    // libxml2 writes an attribute as it stands in a start tag, behind a blank.
    if (node->type == XML_ATTRIBUTE_NODE && !out.empty() && out.front() == ' ') out.erase(0, 1);
    return out;
}

namespace {

// Gathers the writer's small pieces into writes of a size the disk takes well, so that a large
// document costs few system calls and is never held whole in memory.
class BufferedFileSink {
public:
    explicit BufferedFileSink(file::ReplacingWrite& file) : file_(file) { buffer_.reserve(kSize); }

    static int write(void* context, const char* bytes, int length) {
        try {
            auto* sink = static_cast<BufferedFileSink*>(context);
            const std::string_view piece(bytes, static_cast<std::size_t>(length));
            if (sink->buffer_.size() + piece.size() > kSize && !sink->flush()) return -1;
            if (piece.size() >= kSize) return sink->put(piece) ? length : -1;
            sink->buffer_.append(piece);
            return length;
        } catch (...) {
            return -1; // called from C: nothing may be thrown through it
        }
    }
    static int close(void*) { return 0; }

    // Writes what was gathered; false once a write has failed.
    bool flush() {
        const bool ok = buffer_.empty() || put(buffer_);
        buffer_.clear();
        return ok;
    }
    // The errno of the failed write, or 0.
    int error() const { return error_; }

private:
    bool put(std::string_view bytes) {
        if (!error_) error_ = file_.write(bytes.data(), bytes.size());
        return !error_;
    }

    static constexpr std::size_t kSize = 1 << 16;
    file::ReplacingWrite& file_;
    std::string buffer_;
    int error_ = 0;
};

} // namespace

HRESULT DocumentIO::saveReplacing(const std::string& path, xmlDocPtr doc, std::string* reason) {
    file::ReplacingWrite write(path);
    int error = write.begin();
    if (!error) {
        BufferedFileSink sink(write);
        {
            DeclarationNodesAside aside(doc);
            xmlSaveCtxtPtr save = xmlSaveToIO(&BufferedFileSink::write, &BufferedFileSink::close,
                                              &sink, "UTF-8", XML_SAVE_FORMAT);
            if (!save) throw std::bad_alloc();
            xmlSaveDoc(save, doc);
            xmlSaveClose(save);
        }
        sink.flush();
        error = sink.error();
    }
    if (!error) error = write.commit();
    if (!error) return S_OK;
    const FileFailure& failure = failureOf(error);
    *reason = failure.reason;
    *reason += " (" + std::string(write.detail() ? write.detail() : std::strerror(error)) + ")";
    // A device that fails while the file is written: the write's fault, not the reader's.
    return error == EIO ? STG_E_WRITEFAULT : failure.status;
}

} // namespace qvr::dom
