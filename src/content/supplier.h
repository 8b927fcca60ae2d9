// The supplier of a catalog and what it is made of (qvr/supplier.h). The supplier, its locations
// and the two lists of identifiers are keyed by a text made for each wrapper; an identifier by
// its domain.
#pragma once

#include <qvr/supplier.h>

#include "content/descriptive_element.h"
#include "core/accessors.h"
#include "core/catalog_object.h"

namespace qvr {

// The children of a supplier in the order they stand in; all but the locations at most once.
inline constexpr const char* supplierOrder[] = {
    "Desc", "Images", "Link", "Documents", "SupplierIDs", "ECommerceCenterIDs", "SupplierLocation"};

class CQVRCatalogSupplier final
    : public MediaGroups<CatalogObject<IQVRCatalogSupplier, qvrSupplier>, supplierOrder> {
public:
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
    HRESULT get_desc(String* desc) override { return accessors::getChildText(*this, "Desc", desc); }
    // Unlike a chapter's, a supplier's Desc is made when it is missing.
    HRESULT put_desc(const String& desc) override {
        return accessors::putOrderedChildText(*this, "Desc", desc,
                                              namesAfter(supplierOrder, "Desc"));
    }
    HRESULT get_supplierIDs(Ref<IQVRCatalogSupplierIDs>* ids) override {
        return accessors::getSingleton(*this, "SupplierIDs", ids);
    }
    HRESULT putref_supplierIDs(IQVRCatalogObject* ids) override {
        return putGroup("SupplierIDs", ids);
    }
    HRESULT get_eCommerceCenterIDs(Ref<IQVRCatalogECommerceCenterIDs>* ids) override {
        return accessors::getSingleton(*this, "ECommerceCenterIDs", ids);
    }
    HRESULT putref_eCommerceCenterIDs(IQVRCatalogObject* ids) override {
        return putGroup("ECommerceCenterIDs", ids);
    }
};

// An Address and the OrderMethods that reach it; once set, neither can be removed.
class CQVRCatalogSupplierLocation final
    : public CatalogObject<IQVRCatalogSupplierLocation, qvrSupplierLocation> {
public:
    HRESULT get_address(Ref<IQVRCatalogAddress>* address) override {
        return accessors::getSingleton(*this, "Address", address);
    }
    // Always the first child.
    HRESULT putref_address(IQVRCatalogObject* address) override {
        return accessors::putRequiredSingleton(*this, "Address", address, {});
    }
    HRESULT get_orderMethods(Ref<IQVRCatalogOrderMethods>* orderMethods) override {
        return accessors::getSingleton(*this, "OrderMethods", orderMethods);
    }
    HRESULT putref_orderMethods(IQVRCatalogObject* orderMethods) override {
        return accessors::putRequiredSingleton(*this, "OrderMethods", orderMethods, afterAddress);
    }

private:
    static constexpr const char* afterAddress[] = {"Address"};
};

// A value in a domain; the domain is the key and no sibling may share it, the empty one included.
template <class Interface, QVRObjectType Type>
class DomainValue : public CatalogObject<Interface, Type> {
public:
    HRESULT get_domain(String* domain) override {
        return accessors::getAttribute(*this, "domain", domain);
    }
    HRESULT put_domain(const String& domain) override {
        if (domain.isNull()) return E_POINTER;
        return accessors::putUniqueAttribute(*this, "domain", domain);
    }
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override { return accessors::putOwnText(*this, value); }
};

class CQVRCatalogSupplierID final : public DomainValue<IQVRCatalogSupplierID, qvrSupplierID> {};
class CQVRCatalogECommerceCenterID final
    : public DomainValue<IQVRCatalogECommerceCenterID, qvrECommerceCenterID> {};

class CQVRCatalogSupplierIDs final : public CatalogObject<IQVRCatalogSupplierIDs, qvrSupplierIDs> {
};
class CQVRCatalogECommerceCenterIDs final
    : public CatalogObject<IQVRCatalogECommerceCenterIDs, qvrECommerceCenterIDs> {};

} // namespace qvr
