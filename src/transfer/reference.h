// One file pointer found by getReferencedFiles: who owns it, through which object it is read and
// written, and the copy or move of its file with the pointer rewritten. A reference wraps no
// element and stands in no document; of the common operations it has its key (the pointer's
// absolute form when it was bound), its type and a data object, and the others are inert.
#pragma once

#include <cstdint>

#include <qvr/reference.h>

#include "platform/com/error_report.h"
#include "platform/com/object_base.h"

namespace qvr {

struct HolderRow;

class CQVRCatalogReference final : public ObjectBase<IQVRCatalogReference, ISupportErrorInfo> {
public:
    // The kind of a reference bound to nothing.
    static constexpr std::uint32_t unbound = 47;

    // Binds the reference to the pointer that `object` holds, with `owner` as its owner.
    // QVR_E_NOFILEREF when the object's holder keeps no file pointer.
    HRESULT bind(IQVRCatalogObject* owner, IQVRCatalogObject* object);

    // --- IQVRCatalogObject: the key, the type and the data object; the rest is inert -----------
    HRESULT getValue(const String& xpath, Variant* value) override;
    HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                         Ref<IQVRCatalogObject>* inserted) override;
    HRESULT appendChild(IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted) override;
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override;
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override;
    HRESULT contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) override;
    HRESULT get_key(String* key) override;
    HRESULT get_objectType(QVRObjectType* type) override;
    HRESULT get_childNodes(Ref<IQVRCatalogObjectList>* list) override;
    HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT putref_catalog(IQVRCatalogObject* catalog) override;
    HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) override;
    HRESULT putref_parentNode(IQVRCatalogObject* parent) override;
    HRESULT get_domNode(Ref<IXMLDOMElement>* node) override;
    HRESULT getDataObject(Ref<IDataObject>* dataObject) override;
    HRESULT getReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) override;

    // --- IQVRCatalogReference ------------------------------------------------------------------
    HRESULT get_owner(Ref<IQVRCatalogObject>* owner) override;
    HRESULT putref_owner(IQVRCatalogObject* owner) override;
    HRESULT get_kind(std::uint32_t* kind) override;
    HRESULT get_url(String* url) override;
    HRESULT get_baseUrl(String* baseUrl) override;
    HRESULT get_absoluteUrl(String* url) override;
    HRESULT get_fileName(String* fileName) override;
    HRESULT get_extension(String* extension) override;
    HRESULT get_directory(String* directory) override;
    HRESULT moveTo(const String& baseUrl, const String& relativeDir, const String& fileName,
                   VARIANT_BOOL overwrite) override;
    HRESULT copyTo(const String& baseUrl, const String& relativeDir, const String& fileName,
                   VARIANT_BOOL overwrite, VARIANT_BOOL copyFile) override;
    HRESULT put_url(const String& url) override;
    HRESULT get_object(Ref<IQVRCatalogObject>* object) override;

    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override;

private:
    struct Move; // the arguments of one relocation

    const HolderRow* row() const;
    HRESULT readPointer(String* url);
    template <class F>
    HRESULT fromPointer(String* out, F&& make);
    HRESULT writePointer(const String& url);
    HRESULT relocate(const Move& move);
    HRESULT transferFile(Move& move);
    // Reports `text` (kept as lastMessage) with `status`, which it returns.
    HRESULT fail(String text, HRESULT status);

    String cachedKey_;
    Ref<IQVRCatalogObject> owner_;
    std::uint32_t kind_ = unbound;
    Ref<IQVRCatalogObject> target_;
    String lastMessage_;
};

} // namespace qvr
