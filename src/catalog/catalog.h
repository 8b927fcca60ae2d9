// The catalog: the root of the model. It owns the document, is the catalog link of every object
// in it, and holds the sinks that hear every change. It has no element of its own: operations
// that need the root element ask the document each time.
//
// Its own changes (insertBefore, removeChild, put_name, put_desc) go to its sinks directly; the
// changes of its objects climb to it through their catalog link.
//
// Beside the document it owns the table cache: the documents of the tables its parts have opened,
// which a save writes before the catalog, and a new document (create, load, loadXML) forgets.
#pragma once

#include <qvr/catalog.h>

#include "core/root_object.h"
#include "transfer/table_cache.h"

namespace qvr {

class CQVRCatalog final : public RootObject<IQVRCatalog, qvrCatalog> {
public:
    CQVRCatalog();

    // --- ObjectCore hooks: the root element of the document, message 102, direct firing ------
    bool initialized() const override { return document_ != nullptr; }
    HRESULT notInitialized() const override;
    HRESULT workElement(Ref<IXMLDOMElement>* element) override;
    HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT insertChild(CXMLDOMTool& tool, IQVRCatalogObject* child, const Variant& position,
                        Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) override;
    void fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) override;

    // --- IQVRCatalogObject ---------------------------------------------------------------------
    HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                         Ref<IQVRCatalogObject>* inserted) override {
        return containerInsertBefore(newChild, position, inserted);
    }
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override {
        return containerRemoveChild(child, removed, false);
    }
    HRESULT cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>*) override { return E_NOTIMPL; }
    // The `id` of the root element.
    HRESULT get_key(String* key) override { return readRootAttribute("id", key); }
    // The catalog is its own catalog, and has no parent; neither link can be set.
    HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT putref_catalog(IQVRCatalogObject*) override { return E_FAIL; }
    HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) override;
    HRESULT putref_parentNode(IQVRCatalogObject*) override { return E_FAIL; }

    // --- IQVRCatalog ---------------------------------------------------------------------------
    HRESULT get_version(float* version) override;
    HRESULT get_name(String* name) override { return readRootAttribute("name", name); }
    HRESULT put_name(const String& name) override;
    HRESULT get_language(String* language) override {
        return readRootAttribute("xml:lang", language);
    }
    HRESULT put_language(const String& language) override;
    HRESULT get_desc(String* desc) override;
    HRESULT put_desc(const String& desc) override;
    HRESULT get_xml(String* xml) override;
    HRESULT get_images(Ref<IQVRCatalogImages>* images) override {
        return getSingleton("Images", images);
    }
    HRESULT putref_images(IQVRCatalogObject* images) override {
        return putSingleton("Images", images);
    }
    HRESULT get_link(Ref<IQVRCatalogLink>* link) override { return getSingleton("Link", link); }
    HRESULT putref_link(IQVRCatalogObject* link) override { return putSingleton("Link", link); }
    HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) override {
        return getSingleton("Documents", documents);
    }
    HRESULT putref_documents(IQVRCatalogObject* documents) override {
        return putSingleton("Documents", documents);
    }
    HRESULT get_tables(Ref<IQVRCatalogObjectList>* tables) override;
    HRESULT get_orderInfo(Ref<IQVRCatalogOrderInfo>* orderInfo) override {
        return getSingleton("OrderInfo", orderInfo);
    }
    HRESULT putref_orderInfo(IQVRCatalogObject* orderInfo) override {
        return putSingleton("OrderInfo", orderInfo);
    }
    HRESULT get_supplier(Ref<IQVRCatalogSupplier>* supplier) override {
        return getSingleton("Supplier", supplier);
    }
    HRESULT putref_supplier(IQVRCatalogObject* supplier) override {
        return putSingleton("Supplier", supplier);
    }
    HRESULT get_baseUrl(String* baseUrl) override;
    HRESULT put_baseUrl(const String& baseUrl) override;
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override;
    HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) override {
        return putSingleton("Extrinsics", extrinsics);
    }
    HRESULT getHostStream(Ref<IStream>* stream) override;
    HRESULT putref_host(IUnknown* host) override;
    HRESULT load(const Variant& source, VARIANT_BOOL* done) override;
    HRESULT loadXML(const String& xml, VARIANT_BOOL* done) override;
    HRESULT saveAs(const Variant& target, VARIANT_BOOL* done) override;
    HRESULT create(const String& baseUrl, const String& name, const String& language,
                   VARIANT_BOOL* done) override;
    HRESULT createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) override;
    HRESULT createPart(const String& name, Ref<IQVRCatalogPart>* part) override;
    HRESULT createOrderInfo(const Variant& effDate, const Variant& expDate,
                            IQVRCatalogObject* availability,
                            Ref<IQVRCatalogOrderInfo>* orderInfo) override;
    HRESULT createAvailability(IQVRCatalogObject* countryCode,
                               Ref<IQVRCatalogAvailability>* availability) override;
    HRESULT createCountryCode(const String& code, const String& value,
                              Ref<IQVRCatalogCountryCode>* countryCode) override;
    HRESULT createOrderTarget(IQVRCatalogObject* target,
                              Ref<IQVRCatalogOrderTarget>* orderTarget) override;
    HRESULT createOrderMethod(IQVRCatalogObject* orderTarget, const String& protocol,
                              Ref<IQVRCatalogOrderMethod>* orderMethod) override;
    HRESULT createOrderMethods(IQVRCatalogObject* orderMethod,
                               Ref<IQVRCatalogOrderMethods>* orderMethods) override;
    HRESULT createSupplierLocation(IQVRCatalogObject* address, IQVRCatalogObject* orderMethods,
                                   Ref<IQVRCatalogSupplierLocation>* location) override;
    HRESULT createSupplierID(const String& domain, const String& value,
                             Ref<IQVRCatalogSupplierID>* id) override;
    HRESULT createSupplierIDs(IQVRCatalogObject* id, Ref<IQVRCatalogSupplierIDs>* ids) override;
    HRESULT createECommerceCenterID(const String& domain, const String& value,
                                    Ref<IQVRCatalogECommerceCenterID>* id) override;
    HRESULT createECommerceCenterIDs(IQVRCatalogObject* id,
                                     Ref<IQVRCatalogECommerceCenterIDs>* ids) override;
    HRESULT createSupplier(const String& name, const String& desc, IQVRCatalogObject* images,
                           IQVRCatalogObject* link, IQVRCatalogObject* documents,
                           IQVRCatalogObject* supplierIDs, IQVRCatalogObject* eCommerceCenterIDs,
                           IQVRCatalogObject* location,
                           Ref<IQVRCatalogSupplier>* supplier) override;
    HRESULT findById(const String& id, Ref<IQVRCatalogObject>* object) override;

private:
    // The root's Desc, selected on the document.
    HRESULT selectDesc(Ref<IXMLDOMNode>* desc);
    // The end of load and loadXML: the parse failure's text, then the check of the root.
    HRESULT checkLoaded(HRESULT loadStatus);
    HRESULT buildDocument(const String& name, const String& language);
    // Saves each table of the cache whose part is still in the document, in key order; the first
    // failure is reported with the table's path and ends the walk.
    HRESULT saveTables();
    // The frame of every element factory: the out pointer, the required arguments, the
    // document, a new object of class T standing in no tree, then `fill` with its steps. The
    // object goes out only when every step succeeded.
    template <class T, class I, class Fill>
    HRESULT createFilled(bool requiredGiven, Ref<I>* out, Fill&& fill);

    // The singletons of the root (catalog_contents.cpp).
    // The wrapper of the root's child `tag`, with the catalog as parent. When there is none,
    // `clearWhenAbsent` clears `object` and answers S_FALSE; else the selection's status comes
    // back with `object` untouched.
    HRESULT getSingletonObject(const char* tag, Ref<IQVRCatalogObject>* object,
                               bool clearWhenAbsent);
    template <class I>
    HRESULT getSingleton(const char* tag, Ref<I>* out, bool clearWhenAbsent = true) {
        if (!out) return E_POINTER;
        return guarded([&] {
            Ref<IQVRCatalogObject> found;
            HRESULT hr = getSingletonObject(tag, &found, clearWhenAbsent);
            if (hr == S_OK) {
                *out = query<I>(found);
                return *out ? S_OK : E_NOINTERFACE;
            }
            if (clearWhenAbsent) *out = nullptr;
            return hr;
        });
    }
    // Sets, replaces or (null) removes the root's child `tag` at its place among the singletons.
    HRESULT putSingleton(const char* tag, IQVRCatalogObject* object);

    IUnknown* host_ = nullptr; // opaque and not counted: the host keeps itself alive
    // The open tables of the catalog's parts; made with the catalog, lives as long as it.
    Ref<CQVRCatalogObjectTableCache> tables_;
};

} // namespace qvr
