#include "transfer/reference.h"

#include <cstring>
#include <string>

#include <qvr/catalog.h>
#include <qvr/content.h>
#include <qvr/media.h>
#include <qvr/table.h>

#include "core/object_factory.h"
#include "platform/com/failure.h"
#include "platform/file/file_copy.h"
#include "platform/url/url.h"

namespace qvr {
namespace {

const ErrorSource referenceSource{"QVRCatalog.Reference", IQVRCatalogReference::iid};

// The message `number` with its inserts, and the system's reason for `error` behind it.
String withReason(std::uint32_t number, std::initializer_list<std::string_view> inserts,
                  int error) {
    return String(formatInserts(messageText(number), inserts).str() + " " + std::strerror(error) +
                  ".");
}

// Calls `f` with `object` as interface I; E_UNEXPECTED when it does not offer I.
template <class I, class F>
HRESULT through(IQVRCatalogObject* object, F&& f) {
    Ref<I> typed = query<I>(object);
    return typed ? f(typed.get()) : E_UNEXPECTED;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

} // namespace

// How a holder's pointer is reached: the interface of the object that carries it (the target),
// and the operations that read and write it there. A null writer: the pointer is not written
// directly (a part's table moves by setTableLocation).
struct PointerAccess {
    bool (*offeredBy)(IQVRCatalogObject* target);
    HRESULT (*read)(IQVRCatalogObject* target, String* url);
    HRESULT (*write)(IQVRCatalogObject* target, const String& url);
};

template <class I, auto get, auto put>
constexpr PointerAccess accessThrough() {
    return {[](IQVRCatalogObject* target) { return bool(query<I>(target)); },
            [](IQVRCatalogObject* target, String* url) {
                Ref<I> typed = query<I>(target);
                return typed ? (typed.get()->*get)(url) : E_UNEXPECTED;
            },
            [](IQVRCatalogObject* target, const String& url) {
                if constexpr (put == nullptr) {
                    return E_NOTIMPL;
                } else {
                    Ref<I> typed = query<I>(target);
                    return typed ? (typed.get()->*put)(url) : E_UNEXPECTED;
                }
            }};
}

constexpr PointerAccess tableRef =
    accessThrough<IQVRCatalogPart, &IQVRCatalogPart::get_tableRef, nullptr>();
constexpr PointerAccess href =
    accessThrough<IQVRCatalogURL, &IQVRCatalogURL::get_href, &IQVRCatalogURL::put_href>();

// The holders of file pointers, by the object type of the pointer's holder (the parent of the
// object found): the `referenceKind` of a reference.
struct HolderRow {
    QVRObjectType holder;
    PointerAccess access;
    bool carriesFile; // false: a link target, whose file operations do nothing
};

namespace {

constexpr HolderRow holderTable[] = {
    {qvrPart, tableRef, true},
    {qvrImage, href, true},
    {qvrDocument, href, true},
    {qvrReferencedFiles, href, true},
    {qvrLink, href, false},
    {qvrOrderTarget, href, false},
    {qvrRefColumn,
     accessThrough<IQVRTableRefCell, &IQVRTableRefCell::get_value, &IQVRTableRefCell::put_value>(),
     true},
    {qvrView,
     accessThrough<IQVRTableDrawing, &IQVRTableDrawing::get_value, &IQVRTableDrawing::put_value>(),
     true},
    {qvrConstView,
     accessThrough<IQVRTableRecipe, &IQVRTableRecipe::get_path, &IQVRTableRecipe::put_path>(),
     true},
};

} // namespace

struct CQVRCatalogReference::Move {
    const String& baseUrl;
    const String& relativeDir;
    const String& fileName;
    bool move;
    bool overwrite;
    bool skipCopy; // make the folder, copy nothing (a table, which its next save writes)
    // Filled by transferFile: the source and destination paths, and whether a copy was made.
    std::string source{};
    std::string destination{};
    bool copied = false;
};

const HolderRow* CQVRCatalogReference::row() const {
    for (const HolderRow& r : holderTable)
        if (static_cast<std::uint32_t>(r.holder) == kind_) return &r;
    return nullptr;
}

HRESULT CQVRCatalogReference::bind(IQVRCatalogObject* owner, IQVRCatalogObject* object) {
    return guarded([&] {
        if (!owner || !object) return E_INVALIDARG;
        Ref<IQVRCatalogObject> holder;
        HRESULT hr = object->get_parentNode(&holder);
        if (hr == S_FALSE || (hr == S_OK && !holder))
            holder = object; // no parent: the object holds its own pointer
        else if (hr != S_OK)
            return hr;
        QVRObjectType type = qvrCatalog;
        hr = holder->get_objectType(&type);
        if (FAILED(hr)) return hr;
        owner_ = nullptr;
        target_ = nullptr;
        kind_ = static_cast<std::uint32_t>(type);
        const HolderRow* held = row();
        if (!held) {
            kind_ = unbound;
            return QVR_E_NOFILEREF;
        }
        // The part holds its table's pointer itself; every other holder through its child.
        IQVRCatalogObject* target = held->holder == qvrPart ? holder.get() : object;
        if (!held->access.offeredBy(target)) {
            kind_ = unbound;
            return E_NOINTERFACE;
        }
        target_ = target;
        owner_ = owner;
        get_absoluteUrl(&cachedKey_); // a pointer that can't be read leaves the key empty
        return S_OK;
    });
}

HRESULT CQVRCatalogReference::readPointer(String* url) {
    const HolderRow* held = row();
    return held && target_ ? held->access.read(target_.get(), url) : S_FALSE;
}

HRESULT CQVRCatalogReference::writePointer(const String& url) {
    const HolderRow* held = row();
    return held && target_ ? held->access.write(target_.get(), url) : S_FALSE;
}

HRESULT CQVRCatalogReference::fail(String text, HRESULT status) {
    lastMessage_ = std::move(text);
    return reportError(referenceSource, lastMessage_, status);
}

// --- IQVRCatalogObject ---------------------------------------------------------------------------

namespace {

// A reference stands in no tree and holds nothing: null, and S_FALSE.
template <class T>
HRESULT nothingIn(Ref<T>* out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    return S_FALSE;
}

} // namespace

HRESULT CQVRCatalogReference::getValue(const String&, Variant* value) {
    if (!value) return E_POINTER;
    *value = Variant();
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::insertBefore(IQVRCatalogObject*, const Variant&,
                                           Ref<IQVRCatalogObject>* inserted) {
    if (inserted) *inserted = nullptr;
    return S_FALSE;
}
HRESULT CQVRCatalogReference::appendChild(IQVRCatalogObject* newChild,
                                          Ref<IQVRCatalogObject>* inserted) {
    return insertBefore(newChild, Variant(), inserted);
}
HRESULT CQVRCatalogReference::removeChild(IQVRCatalogObject*, Ref<IQVRCatalogObject>*) {
    return S_FALSE;
}
HRESULT CQVRCatalogReference::cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>* clone) {
    if (clone) *clone = nullptr;
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) {
    if (!isDescendant) return E_POINTER;
    *isDescendant = VARIANT_FALSE;
    return object ? S_OK : E_INVALIDARG;
}
HRESULT CQVRCatalogReference::get_key(String* key) {
    if (!key) return E_POINTER;
    return guarded([&] {
        *key = cachedKey_;
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_objectType(QVRObjectType* type) {
    if (!type) return E_POINTER;
    *type = qvrReference;
    return S_OK;
}
HRESULT CQVRCatalogReference::get_childNodes(Ref<IQVRCatalogObjectList>* list) {
    return nothingIn(list);
}
HRESULT CQVRCatalogReference::get_catalog(Ref<IQVRCatalogObject>* catalog) {
    return nothingIn(catalog);
}
HRESULT CQVRCatalogReference::putref_catalog(IQVRCatalogObject*) {
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::get_parentNode(Ref<IQVRCatalogObject>* parent) {
    return nothingIn(parent);
}
HRESULT CQVRCatalogReference::putref_parentNode(IQVRCatalogObject*) {
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::get_domNode(Ref<IXMLDOMElement>* node) {
    if (node) *node = nullptr;
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::getDataObject(Ref<IDataObject>* dataObject) {
    return guarded([&] { return createDataObject(this, dataObject); });
}
HRESULT CQVRCatalogReference::getReferencedFiles(VARIANT_BOOL, Ref<IQVRCatalogObjectList>* files) {
    return nothingIn(files);
}

HRESULT CQVRCatalogReference::InterfaceSupportsErrorInfo(const IID& iid) {
    return iid == IQVRCatalogReference::iid || iid == IQVRCatalogObject::iid ? S_OK : S_FALSE;
}

// --- IQVRCatalogReference ------------------------------------------------------------------------

HRESULT CQVRCatalogReference::get_owner(Ref<IQVRCatalogObject>* owner) {
    if (!owner) return E_POINTER;
    *owner = owner_;
    return S_OK;
}
HRESULT CQVRCatalogReference::putref_owner(IQVRCatalogObject* owner) {
    if (!owner) return E_INVALIDARG;
    owner_ = owner;
    return S_OK;
}
HRESULT CQVRCatalogReference::get_kind(std::uint32_t* kind) {
    if (!kind) return E_INVALIDARG;
    *kind = kind_;
    return S_OK;
}
HRESULT CQVRCatalogReference::get_url(String* url) {
    if (!url) return E_POINTER;
    return guarded([&] {
        *url = String();
        return readPointer(url);
    });
}
HRESULT CQVRCatalogReference::get_baseUrl(String* baseUrl) {
    if (!baseUrl) return E_POINTER;
    return guarded([&] {
        *baseUrl = String();
        if (!owner_) return S_FALSE;
        Ref<IQVRCatalogObject> root;
        HRESULT hr = owner_->get_catalog(&root);
        if (FAILED(hr)) return hr;
        QVRObjectType type = qvrReference;
        if (root) root->get_objectType(&type);
        if (type == qvrCatalog)
            return through<IQVRCatalog>(root.get(),
                                        [&](auto* c) { return c->get_baseUrl(baseUrl); });
        if (type == qvrTable)
            return through<IQVRCatalogTable>(root.get(),
                                             [&](auto* t) { return t->get_baseUrl(baseUrl); });
        return E_UNEXPECTED;
    });
}
// A text made from the pointer: `out` cleared, the pointer read (a failure or S_FALSE is the
// answer), then `make(pointer, out)`.
template <class F>
HRESULT CQVRCatalogReference::fromPointer(String* out, F&& make) {
    if (!out) return E_POINTER;
    return guarded([&] {
        *out = String();
        String pointer;
        const HRESULT hr = readPointer(&pointer);
        return hr == S_OK ? make(pointer.view(), out) : hr;
    });
}

HRESULT CQVRCatalogReference::get_absoluteUrl(String* absolute) {
    return fromPointer(absolute, [&](std::string_view text, String* out) {
        if (url::isUrl(text) || !url::isRelative(text)) {
            *out = String(text);
            return S_OK;
        }
        String base;
        const HRESULT hr = get_baseUrl(&base);
        if (FAILED(hr)) return hr;
        *out = String(base.str() + std::string(text));
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_fileName(String* fileName) {
    return fromPointer(fileName, [](std::string_view text, String* out) {
        String scheme;
        if (url::isUrl(text) &&
            (url::scheme(text, &scheme) != S_OK || !scheme.equalsIgnoreCase("file"))) {
            *out = String("");
            return S_OK;
        }
        const std::size_t cut = text.find_last_of("/\\");
        *out = String(cut == std::string_view::npos ? text : text.substr(cut + 1));
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_extension(String* extension) {
    return fromPointer(extension, [](std::string_view text, String* out) {
        const std::size_t dot = text.rfind('.');
        if (dot == std::string_view::npos) return S_FALSE;
        *out = String(text.substr(dot));
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_directory(String* directory) {
    return fromPointer(directory, [](std::string_view text, String* out) {
        if (url::isUrl(text) || !url::isRelative(text) || text.empty()) {
            *out = String("");
            return S_OK;
        }
        // The separator is looked for from the second character on; a path without one gives
        // its first character.
        std::size_t cut = text.size() - 1;
        while (cut >= 1 && !isSeparator(text[cut])) --cut;
        *out = String(text.substr(0, cut == 0 ? 1 : cut + 1));
        return S_OK;
    });
}

HRESULT CQVRCatalogReference::moveTo(const String& baseUrl, const String& relativeDir,
                                     const String& fileName, VARIANT_BOOL overwrite) {
    return guarded([&] {
        if (baseUrl.isNull() || relativeDir.isNull() || fileName.isNull()) return E_INVALIDARG;
        return relocate({baseUrl, relativeDir, fileName, true, overwrite == VARIANT_TRUE,
                         row() && row()->holder == qvrPart});
    });
}
HRESULT CQVRCatalogReference::copyTo(const String& baseUrl, const String& relativeDir,
                                     const String& fileName, VARIANT_BOOL overwrite,
                                     VARIANT_BOOL copyFile) {
    return guarded([&] {
        if (baseUrl.isNull() || relativeDir.isNull() || fileName.isNull()) return E_INVALIDARG;
        return relocate({baseUrl, relativeDir, fileName, false, overwrite == VARIANT_TRUE,
                         row() && row()->holder == qvrPart && copyFile != VARIANT_TRUE});
    });
}

// The file first, then the pointer, then (for a move) the source: a failure at any step leaves
// the file at its old place with the old pointer, or at its new place with the new one.
HRESULT CQVRCatalogReference::relocate(const Move& given) {
    const HolderRow* held = row();
    if (!held || !held->carriesFile) return S_FALSE; // unbound, or a link: nothing to move
    Move move = given;
    HRESULT hr = transferFile(move);
    if (FAILED(hr)) return hr;
    const HRESULT transferred = hr;
    const String newRelative(move.relativeDir.str() + move.fileName.str());
    if (held->holder == qvrPart) {
        // An existing file at the destination makes way for the next save, unless it is the
        // table's own file or the copy just made.
        if (move.overwrite && move.skipCopy && !file::sameFile(move.source, move.destination))
            file::removeFile(move.destination);
        hr = through<IQVRCatalogPart>(target_.get(), [&](auto* part) {
            return part->setTableLocation(move.baseUrl, move.relativeDir, move.fileName);
        });
    } else {
        hr = writePointer(newRelative);
    }
    if (FAILED(hr)) {
        if (move.copied) file::removeFile(move.destination); // the old pointer keeps the source
        return hr;
    }
    if (move.copied && move.move) file::removeFile(move.source);
    cachedKey_ = url::fileUrlOf(move.destination);
    return transferred;
}

HRESULT CQVRCatalogReference::transferFile(Move& move) {
    std::string base;
    if (!url::localPath(move.baseUrl.view(), &base))
        return fail(String(messageText(msgUploadNotSupported)), E_NOTIMPL);
    if (!url::localPath(cachedKey_.view(), &move.source))
        return fail(String(messageText(msgDownloadNotSupported)), E_NOTIMPL);
    std::string relative = move.relativeDir.str() + move.fileName.str();
    for (char& c : relative)
        if (c == '\\') c = '/';
    move.destination = base + (base.empty() || base.back() == '/' ? "" : "/") + relative;
    const std::string folder = move.destination.substr(0, move.destination.rfind('/') + 1);
    const String folderUrl = url::fileUrlOf(folder);
    if (!file::exists(folder)) {
        if (const int error = file::makeDirectories(folder))
            return fail(withReason(msgCreateDirectoryFailed, {folderUrl.view()}, error),
                        file::statusOf(error));
    }
    if (move.skipCopy) return S_OK;
    // A copy is on the disk before its source may go; one that leaves its source need not wait.
    const file::CopyResult result =
        file::copyFile(move.source, move.destination, move.overwrite, move.move);
    switch (result.outcome) {
    case file::CopyOutcome::Copied: move.copied = true; return S_OK;
    case file::CopyOutcome::KeptExisting: return S_OK; // the file there stays, unreported
    case file::CopyOutcome::SameFile:
        // Copying a file onto itself would be nothing, and removing it as a moved source would
        // lose it: neither happens, and the caller hears why.
        return reportError(referenceSource,
                           String("The file " + cachedKey_.str() +
                                  " is already at its destination; nothing was copied."),
                           S_FALSE);
    case file::CopyOutcome::Failed: break;
    }
    return fail(withReason(msgCopyFileFailed,
                           {move.fileName.view(), cachedKey_.view(), folderUrl.view()},
                           result.error),
                file::statusOf(result.error));
}

HRESULT CQVRCatalogReference::put_url(const String& url) {
    return guarded([&] {
        HRESULT hr = S_OK;
        if (kind_ != unbound) {
            const HolderRow* held = row();
            if (!held) return E_UNEXPECTED;
            hr = writePointer(url);
            if (FAILED(hr)) return hr;
        }
        get_absoluteUrl(&cachedKey_);
        return hr;
    });
}

HRESULT CQVRCatalogReference::get_object(Ref<IQVRCatalogObject>* object) {
    if (!object) return E_POINTER;
    *object = target_;
    return target_ ? S_OK : S_FALSE;
}

} // namespace qvr
