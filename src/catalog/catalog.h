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

    // --- ObjectCore hooks: the root element of the document, msgCatalogNotInitialized, direct
    // firing ------
    bool initialized() const override { return document_ != nullptr; }
    HRESULT notInitialized() const override;
    HRESULT workElement(Ref<IXMLDOMElement>* element) override;
    HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
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
        return getGroup("Images", images);
    }
    HRESULT putref_images(IQVRCatalogObject* images) override { return putGroup("Images", images); }
    HRESULT get_link(Ref<IQVRCatalogLink>* link) override { return getGroup("Link", link); }
    HRESULT putref_link(IQVRCatalogObject* link) override { return putGroup("Link", link); }
    HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) override {
        return getGroup("Documents", documents);
    }
    HRESULT putref_documents(IQVRCatalogObject* documents) override {
        return putGroup("Documents", documents);
    }
    HRESULT get_tables(Ref<IQVRCatalogObjectList>* tables) override;
    HRESULT get_baseUrl(String* baseUrl) override;
    HRESULT put_baseUrl(const String& baseUrl) override;
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override;
    HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) override {
        return putGroup("Extrinsics", extrinsics);
    }
    HRESULT getHostStream(Ref<IStream>* stream) override;
    HRESULT putref_host(IUnknown* host) override;
    HRESULT load(const Variant& source, VARIANT_BOOL* done) override;
    HRESULT loadXML(const String& xml, VARIANT_BOOL* done) override;
    HRESULT saveAs(const Variant& target, VARIANT_BOOL* done) override;
    HRESULT create(const String& baseUrl, const String& name, const String& language,
                   VARIANT_BOOL* done) override;
    HRESULT createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) override;
    HRESULT createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) override;
    HRESULT createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) override;
    HRESULT createURL(const String& href, const String& title, const String& language,
                      Ref<IQVRCatalogURL>* url) override;
    HRESULT createLink(IQVRCatalogObject* url, Ref<IQVRCatalogLink>* link) override;
    HRESULT createDocument(IQVRCatalogObject* url, const String& name,
                           Ref<IQVRCatalogDocument>* document) override;
    HRESULT createDocuments(IQVRCatalogObject* document, const String& name,
                            Ref<IQVRCatalogDocuments>* documents) override;
    HRESULT createPart(const String& name, Ref<IQVRCatalogPart>* part) override;
    HRESULT createClass(const String& domain, const String& value,
                        Ref<IQVRCatalogClass>* classObject) override;
    HRESULT createClassifications(IQVRCatalogObject* classObject,
                                  Ref<IQVRCatalogClassifications>* classifications) override;
    HRESULT createTelephoneNumber(const String& country, const String& isoCountryCode,
                                  const String& areaOrCityCode, const String& number,
                                  const String& extension,
                                  Ref<IQVRCatalogTelephoneNumber>* telephoneNumber) override;
    HRESULT createPhone(const String& name, IQVRCatalogObject* telephoneNumber,
                        Ref<IQVRCatalogPhone>* phone) override;
    HRESULT createFax(const String& name, IQVRCatalogObject* telephoneNumber,
                      Ref<IQVRCatalogFax>* fax) override;
    HRESULT createEmail(const String& name, const String& address,
                        Ref<IQVRCatalogEmail>* email) override;
    HRESULT createStreet(const String& text, Ref<IQVRCatalogStreet>* street) override;
    HRESULT createPostalAddress(const String& id, const String& city, const String& country,
                                const String& isoCountryCode, IQVRCatalogObject* street,
                                const String& state, const String& postalCode,
                                Ref<IQVRCatalogPostalAddress>* postalAddress) override;
    HRESULT createAddress(const String& name, const String& isoCountryCode,
                          IQVRCatalogObject* postalAddress, IQVRCatalogObject* email,
                          IQVRCatalogObject* phone, IQVRCatalogObject* fax,
                          Ref<IQVRCatalogAddress>* address) override;
    HRESULT createExtrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override;
    HRESULT createExtrinsic(const String& name, Ref<IQVRCatalogExtrinsic>* extrinsic) override;
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
    // The group `tag` of the root, wrapped with the catalog as catalog and parent; none: S_FALSE
    // and null.
    template <class I>
    HRESULT getGroup(const char* tag, Ref<I>* group);
    // Sets, replaces or (null) removes the group `tag`; a new one lands right behind the last
    // group ahead of it in the root's order, or first without Desc. Told also when nothing was
    // done.
    HRESULT putGroup(const char* tag, IQVRCatalogObject* group);
    // The frame of every factory: the out pointer, the required texts (`required`: none is null),
    // the document, a new object of class T, then `fill` on it. A failure leaves the out value
    // null.
    template <class T, class I, class Fill>
    HRESULT newElementObject(Ref<I>* out, bool required, Fill&& fill);

    IUnknown* host_ = nullptr; // opaque and not counted: the host keeps itself alive
    // The open tables of the catalog's parts; made with the catalog, lives as long as it.
    Ref<CQVRCatalogObjectTableCache> tables_;
};

} // namespace qvr
