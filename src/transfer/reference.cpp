#include "transfer/reference.h"

#include <cstring>
#include <string>

#include <sys/stat.h>

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

// The local path that `text` names: a "file" URL (its scheme compared without case), or an
// absolute path as it stands. False for a URL of another scheme and for a relative path.
bool localPath(std::string_view text, std::string* path) {
    String converted;
    if (url::isUrl(text)) {
        if (url::pathFromUrl(text, &converted) != S_OK) return false;
    } else if (url::isRelative(text)) {
        return false;
    } else {
        converted = String(text);
    }
    *path = converted.str();
    for (char& c : *path)
        if (c == '\\') c = '/';
    return true;
}

String urlOf(const std::string& path) {
    String url;
    return url::urlFromPath(path, &url) == S_OK ? url : String(path);
}

bool exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

bool sameFile(const std::string& a, const std::string& b) {
    struct stat x {
    }, y{};
    return ::stat(a.c_str(), &x) == 0 && ::stat(b.c_str(), &y) == 0 && x.st_dev == y.st_dev &&
           x.st_ino == y.st_ino;
}

// The message `number` with its inserts, and the system's reason for `error` behind it.
String withReason(std::uint32_t number, std::initializer_list<std::string_view> inserts,
                  int error) {
    return String(formatInserts(messageText(number), inserts).str() + " " + std::strerror(error) +
                  ".");
}

HRESULT statusOf(int error) {
    return HRESULT_FROM_WIN32(file::systemErrorOf(error));
}

// Calls `f` with the target as interface I; E_UNEXPECTED when it does not offer I.
template <class I, class F>
HRESULT through(IQVRCatalogObject* target, F&& f) {
    Ref<I> typed = query<I>(target);
    return typed ? f(typed.get()) : E_UNEXPECTED;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

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
        IQVRCatalogObject* target = held->access == PointerAccess::TableRef ? holder.get() : object;
        bool offers = false;
        switch (held->access) {
        case PointerAccess::TableRef: offers = bool(query<IQVRCatalogPart>(target)); break;
        case PointerAccess::Href: offers = bool(query<IQVRCatalogURL>(target)); break;
        case PointerAccess::RefCell: offers = bool(query<IQVRTableRefCell>(target)); break;
        case PointerAccess::Drawing: offers = bool(query<IQVRTableDrawing>(target)); break;
        case PointerAccess::RecipePath: offers = bool(query<IQVRTableRecipe>(target)); break;
        }
        if (!offers) {
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
    if (!held || !target_) return S_FALSE;
    IQVRCatalogObject* t = target_.get();
    switch (held->access) {
    case PointerAccess::TableRef:
        return through<IQVRCatalogPart>(t, [&](auto* p) { return p->get_tableRef(url); });
    case PointerAccess::Href:
        return through<IQVRCatalogURL>(t, [&](auto* p) { return p->get_href(url); });
    case PointerAccess::RefCell:
        return through<IQVRTableRefCell>(t, [&](auto* p) { return p->get_value(url); });
    case PointerAccess::Drawing:
        return through<IQVRTableDrawing>(t, [&](auto* p) { return p->get_value(url); });
    case PointerAccess::RecipePath:
        return through<IQVRTableRecipe>(t, [&](auto* p) { return p->get_path(url); });
    }
    return E_UNEXPECTED;
}

HRESULT CQVRCatalogReference::writePointer(const String& url) {
    const HolderRow* held = row();
    if (!held || !target_) return S_FALSE;
    IQVRCatalogObject* t = target_.get();
    switch (held->access) {
    case PointerAccess::TableRef: return E_NOTIMPL; // a table moves by setTableLocation
    case PointerAccess::Href:
        return through<IQVRCatalogURL>(t, [&](auto* p) { return p->put_href(url); });
    case PointerAccess::RefCell:
        return through<IQVRTableRefCell>(t, [&](auto* p) { return p->put_value(url); });
    case PointerAccess::Drawing:
        return through<IQVRTableDrawing>(t, [&](auto* p) { return p->put_value(url); });
    case PointerAccess::RecipePath:
        return through<IQVRTableRecipe>(t, [&](auto* p) { return p->put_path(url); });
    }
    return E_UNEXPECTED;
}

HRESULT CQVRCatalogReference::fail(String text, HRESULT status) {
    lastMessage_ = std::move(text);
    return reportError(referenceSource, lastMessage_, status);
}

// --- IQVRCatalogObject ---------------------------------------------------------------------------

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
    if (!list) return E_POINTER;
    *list = nullptr;
    return S_FALSE;
}
HRESULT CQVRCatalogReference::get_catalog(Ref<IQVRCatalogObject>* catalog) {
    if (!catalog) return E_POINTER;
    *catalog = nullptr;
    return S_FALSE;
}
HRESULT CQVRCatalogReference::putref_catalog(IQVRCatalogObject*) {
    return E_NOTIMPL;
}
HRESULT CQVRCatalogReference::get_parentNode(Ref<IQVRCatalogObject>* parent) {
    if (!parent) return E_POINTER;
    *parent = nullptr;
    return S_FALSE;
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
    if (!files) return E_POINTER;
    *files = nullptr;
    return S_FALSE;
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
HRESULT CQVRCatalogReference::get_absoluteUrl(String* absolute) {
    if (!absolute) return E_POINTER;
    return guarded([&] {
        *absolute = String();
        String pointer;
        HRESULT hr = get_url(&pointer);
        if (hr != S_OK) return hr;
        if (url::isUrl(pointer.view()) || !url::isRelative(pointer.view())) {
            *absolute = std::move(pointer);
            return S_OK;
        }
        String base;
        hr = get_baseUrl(&base);
        if (FAILED(hr)) return hr;
        *absolute = String(base.str() + pointer.str());
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_fileName(String* fileName) {
    if (!fileName) return E_POINTER;
    return guarded([&] {
        *fileName = String();
        String pointer;
        HRESULT hr = get_url(&pointer);
        if (hr != S_OK) return hr;
        const std::string_view text = pointer.view();
        String scheme;
        if (url::isUrl(text) &&
            (url::scheme(text, &scheme) != S_OK || !scheme.equalsIgnoreCase("file"))) {
            *fileName = String("");
            return S_OK;
        }
        const std::size_t cut = text.find_last_of("/\\");
        *fileName = String(cut == std::string_view::npos ? text : text.substr(cut + 1));
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_extension(String* extension) {
    if (!extension) return E_POINTER;
    return guarded([&] {
        *extension = String();
        String pointer;
        HRESULT hr = get_url(&pointer);
        if (hr != S_OK) return hr;
        const std::size_t dot = pointer.view().rfind('.');
        if (dot == std::string_view::npos) return S_FALSE;
        *extension = String(pointer.view().substr(dot));
        return S_OK;
    });
}
HRESULT CQVRCatalogReference::get_directory(String* directory) {
    if (!directory) return E_POINTER;
    return guarded([&] {
        *directory = String();
        String pointer;
        HRESULT hr = get_url(&pointer);
        if (hr != S_OK) return hr;
        const std::string_view text = pointer.view();
        if (url::isUrl(text) || !url::isRelative(text) || text.empty()) {
            *directory = String("");
            return S_OK;
        }
        // The separator is looked for from the second character on; a path without one gives
        // its first character.
        std::size_t cut = text.size();
        while (--cut >= 1 && !isSeparator(text[cut])) {
        }
        *directory = String(text.substr(0, cut == 0 ? 1 : cut + 1));
        return S_OK;
    });
}

HRESULT CQVRCatalogReference::moveTo(const String& baseUrl, const String& relativeDir,
                                     const String& fileName, VARIANT_BOOL overwrite) {
    return guarded([&] {
        if (baseUrl.isNull() || relativeDir.isNull() || fileName.isNull()) return E_INVALIDARG;
        return relocate({baseUrl, relativeDir, fileName, true, overwrite == VARIANT_TRUE,
                         row() && row()->access == PointerAccess::TableRef});
    });
}
HRESULT CQVRCatalogReference::copyTo(const String& baseUrl, const String& relativeDir,
                                     const String& fileName, VARIANT_BOOL overwrite,
                                     VARIANT_BOOL copyFile) {
    return guarded([&] {
        if (baseUrl.isNull() || relativeDir.isNull() || fileName.isNull()) return E_INVALIDARG;
        return relocate(
            {baseUrl, relativeDir, fileName, false, overwrite == VARIANT_TRUE,
             row() && row()->access == PointerAccess::TableRef && copyFile != VARIANT_TRUE});
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
    if (held->access == PointerAccess::TableRef) {
        // An existing file at the destination makes way for the next save, unless it is the
        // table's own file or the copy just made.
        if (move.overwrite && move.skipCopy && !sameFile(move.source, move.destination))
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
    cachedKey_ = urlOf(move.destination);
    return transferred;
}

HRESULT CQVRCatalogReference::transferFile(Move& move) {
    std::string base;
    if (!localPath(move.baseUrl.view(), &base))
        return fail(String(messageText(msgUploadNotSupported)), E_NOTIMPL);
    if (!localPath(cachedKey_.view(), &move.source))
        return fail(String(messageText(msgDownloadNotSupported)), E_NOTIMPL);
    std::string relative = move.relativeDir.str() + move.fileName.str();
    for (char& c : relative)
        if (c == '\\') c = '/';
    move.destination = base + (base.empty() || base.back() == '/' ? "" : "/") + relative;
    const std::string folder = move.destination.substr(0, move.destination.rfind('/') + 1);
    const String folderUrl = urlOf(folder);
    if (!exists(folder)) {
        if (const int error = file::makeDirectories(folder))
            return fail(withReason(msgCreateDirectoryFailed, {folderUrl.view()}, error),
                        statusOf(error));
    }
    if (move.skipCopy) return S_OK;
    const file::CopyResult result = file::copyFile(move.source, move.destination, move.overwrite);
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
                statusOf(result.error));
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
