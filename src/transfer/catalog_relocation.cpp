// Copying or moving a catalog with everything it points at, in three steps: copy every file and
// rewrite its pointer, save the catalog and its tables at the new place, and only then (for a
// move) remove the old files. A failure in the first two steps undoes them.
#include <map>
#include <set>
#include <string>
#include <vector>

#include <qvr/catalog.h>
#include <qvr/content.h>
#include <qvr/dom.h>
#include <qvr/error_info.h>
#include <qvr/reference.h>

#include "platform/com/error_report.h"
#include "platform/com/failure.h"
#include "platform/file/file_copy.h"
#include "platform/url/url.h"
#include "transfer/reference.h"

namespace qvr {
namespace {

const ErrorSource source{"QVRCatalog.Reference", IQVRCatalogReference::iid};

// A pointer split at its last separator: the folder (with the separator) and the name.
struct Split {
    std::string folder;
    std::string name;
};
Split split(std::string_view pointer) {
    const std::size_t cut = pointer.find_last_of("/\\");
    if (cut == std::string_view::npos) return {"", std::string(pointer)};
    return {std::string(pointer.substr(0, cut + 1)), std::string(pointer.substr(cut + 1))};
}

// The local path that a "file" URL or an absolute path names; empty for anything else.
std::string localPathOf(const String& text) {
    std::string path;
    return url::localPath(text.view(), &path) ? path : std::string();
}

// One file to carry, with what it takes to put it back.
struct Planned {
    Ref<IQVRCatalogReference> reference;
    bool table = false;
    String oldPointer;
    std::string source;      // where the file is
    std::string newBase;     // the folder its new pointer is relative to
    Split place;             // its new pointer
    std::string destination; // newBase + place
    bool existed = false;    // the destination was there before: it is never removed
    bool done = false;
};

class Relocation {
public:
    Relocation(IQVRCatalog* catalog, std::string folder) : catalog_(catalog), folder_(folder) {}

    HRESULT run(const std::string& fileName, bool move) {
        HRESULT hr = plan();
        if (hr != S_OK) return hr;
        const std::string oldCatalog = catalogPath();
        for (Planned& file : planned_)
            if (FAILED(hr = carry(file))) return undo(hr);
        VARIANT_BOOL saved = VARIANT_FALSE;
        const std::string target = folder_ + fileName;
        const bool catalogExisted = file::exists(target);
        if (FAILED(hr = catalog_->saveAs(Variant(target), &saved))) {
            if (!catalogExisted) file::removeFile(target);
            return undo(hr);
        }
        if (!move) return S_OK;
        // Everything stands at its new place: once it is on the disk the old files can go. The
        // copies were not flushed one by one; one flush of the file system puts them there.
        // Should that fail, both places stay whole, each with its own catalog file.
        if (const int error = file::flushFileSystem(folder_))
            return reportError(source,
                               String("The copies in " + folder_ +
                                      " could not be flushed to the disk: the old files are kept."),
                               file::statusOf(error));
        std::set<std::string> removed;
        for (const Planned& file : planned_)
            if (!file.source.empty() && !file::sameFile(file.source, file.destination) &&
                removed.insert(file.source).second)
                file::removeFile(file.source);
        if (!oldCatalog.empty() && !file::sameFile(oldCatalog, target))
            file::removeFile(oldCatalog);
        return S_OK;
    }

private:
    // Every file pointer of the catalog whose file is local, and its place in the new folder.
    HRESULT plan() {
        Ref<IQVRCatalogObjectList> files;
        HRESULT hr = catalog_->getReferencedFiles(VARIANT_TRUE, &files);
        if (hr != S_OK) return hr;
        String oldBase;
        catalog_->get_baseUrl(&oldBase);
        oldBase_ = oldBase.isNull() ? std::string() : oldBase.str();
        // The tables first: their new folders are the bases of the pointers inside them.
        std::vector<Ref<IQVRCatalogReference>> references;
        for (Ref<IQVRCatalogObject> item : *files) {
            Ref<IQVRCatalogReference> reference = query<IQVRCatalogReference>(item);
            std::uint32_t kind = 0;
            reference->get_kind(&kind);
            if (kind == qvrLink || kind == qvrOrderTarget) continue;
            references.push_back(reference);
            if (kind == qvrPart) {
                Ref<IQVRCatalogObject> part;
                reference->get_object(&part);
                String pointer, key;
                reference->get_url(&pointer);
                part->get_key(&key);
                tableFolders_[key.str() + "T"] = folder_ + newPlace(pointer).folder;
            }
        }
        // A table that does not open is not in the list: its file would stay behind while the
        // pointer of the moved catalog looked for it in the new folder.
        if (tablesReferenced() != static_cast<std::int32_t>(tableFolders_.size()))
            return reportError(source,
                               String("The table of a part cannot be opened, so the catalog "
                                      "cannot be carried whole; nothing was copied."),
                               E_FAIL);
        std::map<std::string, std::string> sourceOf; // destination -> source
        for (const auto& reference : references) {
            Planned file;
            file.reference = reference;
            std::uint32_t kind = 0;
            reference->get_kind(&kind);
            file.table = kind == qvrPart;
            reference->get_url(&file.oldPointer);
            String key;
            reference->get_key(&key);
            file.source = localPathOf(key);
            if (file.source.empty()) continue; // a file elsewhere than on this system stays
            file.newBase = file.table ? folder_ : baseOf(reference);
            file.place = newPlace(file.oldPointer);
            // Files from outside that share a name are told apart by a number ahead of it.
            for (int n = 2;; ++n) {
                file.destination = file.newBase + file.place.folder + file.place.name;
                auto [at, added] = sourceOf.emplace(file.destination, file.source);
                if (added || file::sameFile(at->second, file.source) || at->second == file.source)
                    break;
                file.place.name = std::to_string(n) + "-" + split(file.oldPointer.view()).name;
            }
            file.existed = file::exists(file.destination);
            planned_.push_back(std::move(file));
        }
        return S_OK;
    }

    // How many parts of the catalog have a table reference.
    std::int32_t tablesReferenced() {
        Ref<IXMLDOMElement> root;
        Ref<IXMLDOMNodeList> parts;
        std::int32_t count = -1;
        if (catalog_->get_domNode(&root) == S_OK &&
            root->selectNodes("//Part[TableRef/URL/@xlink:href != '']", &parts) == S_OK)
            parts->get_length(&count);
        return count;
    }

    // A relative pointer keeps its place; any other comes into the base folder under its name.
    static Split newPlace(const String& pointer) {
        Split place = split(pointer.view());
        if (url::isUrl(pointer.view()) || !url::isRelative(pointer.view())) place.folder.clear();
        return place;
    }

    // The new folder of the root that the reference's owner belongs to.
    std::string baseOf(IQVRCatalogReference* reference) {
        Ref<IQVRCatalogObject> owner, root;
        reference->get_owner(&owner);
        if (owner) owner->get_catalog(&root);
        QVRObjectType type = qvrCatalog;
        if (root) root->get_objectType(&type);
        if (type != qvrTable) return folder_;
        String key;
        root->get_key(&key);
        const auto found = tableFolders_.find(key.str());
        return found == tableFolders_.end() ? folder_ : found->second;
    }

    HRESULT carry(Planned& file) {
        // A second pointer to a file already carried finds it there and keeps it. A table is
        // written by the save, which replaces whatever stands there; nothing is removed ahead.
        const bool carried = !file.existed && file::exists(file.destination);
        const HRESULT hr = file.reference->copyTo(
            url::fileUrlOf(file.newBase), String(file.place.folder), String(file.place.name),
            carried || file.table ? VARIANT_FALSE : VARIANT_TRUE, VARIANT_FALSE);
        file.done = SUCCEEDED(hr);
        return hr;
    }

    // Puts back every pointer and removes every copy made; the failure stays the caller's to read.
    HRESULT undo(HRESULT status) {
        ErrorInfo failure;
        const bool reported = GetErrorInfo(&failure);
        for (auto file = planned_.rbegin(); file != planned_.rend(); ++file) {
            if (!file->done) continue;
            if (!file->existed && !file::sameFile(file->source, file->destination))
                file::removeFile(file->destination);
            if (!file->table) {
                file->reference->put_url(file->oldPointer);
                continue;
            }
            Ref<IQVRCatalogObject> object;
            file->reference->get_object(&object);
            const Split old = split(file->oldPointer.view());
            const bool relative = url::isRelative(file->oldPointer.view());
            query<IQVRCatalogPart>(object)->setTableLocation(String(relative ? oldBase_ : ""),
                                                             String(old.folder), String(old.name));
        }
        if (reported)
            SetErrorInfo(failure);
        else
            ClearErrorInfo();
        return status;
    }

    // The file the catalog was loaded from, while its folder is still the catalog's base (the
    // folder the moved files were found in); empty otherwise.
    std::string catalogPath() {
        Ref<IXMLDOMElement> root;
        Ref<IXMLDOMDocument> document;
        String url;
        if (catalog_->get_domNode(&root) != S_OK || root->get_ownerDocument(&document) != S_OK ||
            document->get_url(&url) != S_OK)
            return {};
        const std::string path = localPathOf(url);
        const std::string base = localPathOf(String(oldBase_));
        if (path.empty() || base.empty() || path.compare(0, path.rfind('/') + 1, base) != 0)
            return {};
        return path;
    }

    IQVRCatalog* catalog_;
    std::string folder_; // the new folder, closed with "/"
    std::string oldBase_;
    std::map<std::string, std::string> tableFolders_; // table key -> its new folder
    std::vector<Planned> planned_;
};

} // namespace

HRESULT RelocateCatalog(IQVRCatalog* catalog, const String& folder, const String& fileName,
                        VARIANT_BOOL move) {
    return guarded([&] {
        if (!catalog || folder.isNull() || fileName.isNull() || fileName.isEmpty())
            return E_INVALIDARG;
        std::string path = localPathOf(folder);
        if (path.empty()) return E_INVALIDARG;
        if (path.back() != '/') path += '/';
        return Relocation(catalog, path).run(fileName.str(), move == VARIANT_TRUE);
    });
}

} // namespace qvr
