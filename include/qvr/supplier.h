// The supplier of a catalog.
//
//   Supplier            name; Desc, Images, Link, Documents, SupplierIDs, ECommerceCenterIDs
//                       (each at most once, in this order), then SupplierLocation children
//   SupplierLocation    Address, OrderMethods; each at most once, in this order; once set,
//                       each can be replaced but not removed
//   SupplierIDs         SupplierID children, one per domain; the last one stays
//   ECommerceCenterIDs  ECommerceCenterID children, one per domain; the last one stays
//   SupplierID, ECommerceCenterID   a value (the text) in a domain (the attribute, the key)
#pragma once

#include <qvr/contact.h>
#include <qvr/media.h>
#include <qvr/object.h>
#include <qvr/order.h>

namespace qvr {

// A value (the text) in a domain (the key); one per domain in its list.
class QVR_API IQVRCatalogSupplierID : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogSupplierID)

    // The same as get_key.
    virtual HRESULT get_domain(String* domain) = 0;
    // A domain that a sibling holds: "A child with the same id already exists." and E_FAIL. The
    // empty text is a domain like any other. Null: E_POINTER.
    virtual HRESULT put_domain(const String& domain) = 0;
    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// Built as a SupplierID.
class QVR_API IQVRCatalogECommerceCenterID : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogECommerceCenterID)

    virtual HRESULT get_domain(String* domain) = 0;
    virtual HRESULT put_domain(const String& domain) = 0;
    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

class QVR_API IQVRCatalogSupplierIDs : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogSupplierIDs)
};

class QVR_API IQVRCatalogECommerceCenterIDs : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogECommerceCenterIDs)
};

class QVR_API IQVRCatalogSupplierLocation : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogSupplierLocation)

    virtual HRESULT get_address(Ref<IQVRCatalogAddress>* address) = 0;
    // Sets or replaces the address; null gives E_POINTER.
    virtual HRESULT putref_address(IQVRCatalogObject* address) = 0;
    virtual HRESULT get_orderMethods(Ref<IQVRCatalogOrderMethods>* orderMethods) = 0;
    // Sets or replaces the order methods; null gives E_POINTER.
    virtual HRESULT putref_orderMethods(IQVRCatalogObject* orderMethods) = 0;
};

class QVR_API IQVRCatalogSupplier : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogSupplier)

    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    virtual HRESULT get_desc(String* desc) = 0;
    // Makes the Desc when there is none.
    virtual HRESULT put_desc(const String& desc) = 0;
    // The groups: null removes one.
    virtual HRESULT get_images(Ref<IQVRCatalogImages>* images) = 0;
    virtual HRESULT putref_images(IQVRCatalogObject* images) = 0;
    virtual HRESULT get_link(Ref<IQVRCatalogLink>* link) = 0;
    virtual HRESULT putref_link(IQVRCatalogObject* link) = 0;
    virtual HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) = 0;
    virtual HRESULT putref_documents(IQVRCatalogObject* documents) = 0;
    virtual HRESULT get_supplierIDs(Ref<IQVRCatalogSupplierIDs>* ids) = 0;
    virtual HRESULT putref_supplierIDs(IQVRCatalogObject* ids) = 0;
    virtual HRESULT get_eCommerceCenterIDs(Ref<IQVRCatalogECommerceCenterIDs>* ids) = 0;
    virtual HRESULT putref_eCommerceCenterIDs(IQVRCatalogObject* ids) = 0;
};

} // namespace qvr
