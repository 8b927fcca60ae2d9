// Referenced files: which files an object needs, and moving them.
//
// `getReferencedFiles(deep)` on any object gives a list of reference objects, one per file pointer
// found on the way down: table documents of parts, images, documents, a view's further files,
// drawings, recipes and the target files of reference cells. Links and order targets are listed
// too, but carry no file: their file operations answer S_FALSE and change nothing. With `deep` the
// walk goes into every table of a part (opening it); without, it stays in the object's own
// document. Two pointers to the same file give two references.
//
// A reference is not stored in any document. It knows the object that owns the pointer (the
// nearest chapter, part, supplier, table or column above it), the object through which the pointer
// is read and written, and the pointer's absolute form at the time the list was made (its key).
#pragma once

#include <qvr/object.h>

namespace qvr {

class IQVRCatalog;

class QVR_API IQVRCatalogReference : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogReference)

    // The object that owns the pointer; its root decides the base the pointer is relative to.
    virtual HRESULT get_owner(Ref<IQVRCatalogObject>* owner) = 0;
    virtual HRESULT putref_owner(IQVRCatalogObject* owner) = 0;
    // The object type of the pointer's holder: qvrPart for a table document, qvrImage,
    // qvrDocument, qvrReferencedFiles, qvrLink, qvrOrderTarget, qvrRefColumn, qvrView,
    // qvrConstView; 47 for a reference bound to nothing.
    virtual HRESULT get_kind(std::uint32_t* kind) = 0;
    // The pointer as its holder keeps it; S_FALSE for a reference bound to nothing.
    virtual HRESULT get_url(String* url) = 0;
    // The base of the owner's root: the catalog's or the table's `baseUrl`.
    virtual HRESULT get_baseUrl(String* baseUrl) = 0;
    // The pointer itself when it is a URL or an absolute path; else the base joined to it.
    virtual HRESULT get_absoluteUrl(String* url) = 0;
    // The name after the last separator; empty for a URL that is not a "file" URL.
    virtual HRESULT get_fileName(String* fileName) = 0;
    // From the last dot on, the dot included; S_FALSE when the name has no dot.
    virtual HRESULT get_extension(String* extension) = 0;
    // The folder part of a relative pointer, up to and including its last separator; empty for a
    // URL or an absolute path. A relative pointer without a separator after its first character
    // gives that first character alone ("a.png" gives "a"), as the original cut falls: split
    // get_url yourself where that matters.
    virtual HRESULT get_directory(String* directory) = 0;
    // Moves the file to `baseUrl` + `relativeDir` + `fileName` (`baseUrl` a "file" URL or an
    // absolute path), making missing folders, and then rewrites the pointer to `relativeDir` +
    // `fileName`. The source is deleted only once the copy is whole, on the disk and pointed at.
    // A copy onto the file itself does nothing and answers S_FALSE. A failure answers
    // 0x80070000 plus the system's error number with "Unable to copy file ..." and the reason,
    // and leaves file and pointer as they were. A table document is not copied: its part is
    // pointed at the new place, and the next save writes it there. Links answer S_FALSE.
    virtual HRESULT moveTo(const String& baseUrl, const String& relativeDir, const String& fileName,
                           VARIANT_BOOL overwrite) = 0;
    // As moveTo, leaving the source in place; a table document is copied only with `copyFile`.
    // An existing destination is kept unless `overwrite`.
    virtual HRESULT copyTo(const String& baseUrl, const String& relativeDir, const String& fileName,
                           VARIANT_BOOL overwrite, VARIANT_BOOL copyFile) = 0;
    // Rewrites the pointer through its holder (E_NOTIMPL for a table document's).
    virtual HRESULT put_url(const String& url) = 0;
    // The object through which the pointer is read and written; S_FALSE when bound to nothing.
    virtual HRESULT get_object(Ref<IQVRCatalogObject>* object) = 0;
};

// Copies a catalog and every file it points at (deep: its tables and what they point at too)
// into `folder` (a path or a "file" URL), and saves the catalog there as `fileName` with its
// tables. Each file keeps its place relative to the catalog, or to its table; a file named by an
// absolute path or a "file" URL comes into the folder (or its table's folder) and its pointer
// becomes relative. Links and files of other schemes stay as they are.
//
// Afterwards the catalog object is the catalog in `folder`. With `move` the old files, and the
// file the catalog was loaded from if its folder is still the catalog's base, are removed, but
// only once everything has been copied, saved and flushed to the disk. A failure before that
// removes the copies made so far and puts every pointer back, so that every file is at its old
// place with its old pointer or at its new place with its new one, never neither; the failure's
// status and report are those of the step that failed. A catalog with a part whose table does
// not open is refused (E_FAIL) before anything is done. Two pointers to one file are copied once
// and both follow it.
QVR_API HRESULT RelocateCatalog(IQVRCatalog* catalog, const String& folder, const String& fileName,
                                VARIANT_BOOL move);

} // namespace qvr
