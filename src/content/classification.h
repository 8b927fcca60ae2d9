// Classes by domain and named extra data. A Classifications holds one Class per domain and keeps
// its last; an Extrinsics holds extrinsics side by side and can be emptied (their container rows
// in core/object_types.h). A Class and an Extrinsic take no children.
#pragma once

#include <qvr/classification.h>

#include "core/accessors.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRCatalogClass final : public CatalogObject<IQVRCatalogClass, qvrClass> {
public:
    HRESULT get_domain(String* domain) override {
        return accessors::getAttribute(*this, "domain", domain);
    }
    // The domain is the class's key among its siblings.
    HRESULT put_domain(const String& domain) override {
        return accessors::putKeyAttribute(*this, "domain", domain);
    }
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override { return accessors::putOwnText(*this, value); }
};

class CQVRCatalogClassifications final
    : public CatalogObject<IQVRCatalogClassifications, qvrClassifications> {};

// Holds a text or one element, never both: each writer clears what was there. The held element
// is a copy; nothing links it to what it was copied from.
class CQVRCatalogExtrinsic final : public CatalogObject<IQVRCatalogExtrinsic, qvrExtrinsic> {
public:
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
    HRESULT get_content(Ref<IQVRCatalogObject>* content) override;
    HRESULT putref_content(IQVRCatalogObject* content) override;
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override;

protected:
    HRESULT keyFromOwnOperation(String* key) override { return get_name(key); }

private:
    // Removes every child node of the element, one after the other; a failing removal is
    // passed over.
    void clear();
};

class CQVRCatalogExtrinsics final : public CatalogObject<IQVRCatalogExtrinsics, qvrExtrinsics> {};

} // namespace qvr
