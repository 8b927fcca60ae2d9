// The catalog: the root of the model. It owns the catalog document, makes the objects that go
// into it, finds them by id, and tells its sinks of every change.
//
//   Ref<IQVRCatalog> cat;
//   CreateCatalog(&cat);
//   VARIANT_BOOL ok;
//   cat->create("/data/cat/", "Fasteners", "en", &ok);
//   Ref<IQVRCatalogChapter> chapter;
//   cat->createChapter("Bolts", &chapter);
//   cat->appendChild(chapter, nullptr);
//   cat->saveAs(Variant("/data/cat/catalog.xml"), &ok);
//
// Until create, load or loadXML has given it a document, a catalog reports "The Catalog is not
// initialized yet." with E_FAIL.
#pragma once

#include <cstdint>

#include <qvr/classification.h>
#include <qvr/contact.h>
#include <qvr/content.h>
#include <qvr/events.h>
#include <qvr/media.h>
#include <qvr/object.h>
#include <qvr/object_list.h>
#include <qvr/stream.h>
#include <qvr/table_cache.h>

namespace qvr {

class QVR_API IQVRCatalog : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalog)

    // The `version` attribute read as a number, handed out as the low half of the number's bit
    // pattern taken as a float (so "1.2" reads as about 4.17e-08). Compare it only with another
    // reading of the same attribute.
    virtual HRESULT get_version(float* version) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    virtual HRESULT get_language(String* language) = 0;
    // Two lower-case letters, else "This is not a valid ISO 639 language code." and E_FAIL.
    virtual HRESULT put_language(const String& language) = 0;
    virtual HRESULT get_desc(String* desc) = 0;
    virtual HRESULT put_desc(const String& desc) = 0;
    // The whole document as text.
    virtual HRESULT get_xml(String* xml) = 0;
    // The groups of the root. Each stands at most once, at its place in the order Desc, Images,
    // Link, Documents, (ActiveXs), Extrinsics, OrderInfo, Supplier, ahead of the chapters. A
    // putref_* sets the group (any object is placed, whatever its kind), replaces the one there,
    // or with null removes it; the change is told also when nothing was there to remove.
    virtual HRESULT get_images(Ref<IQVRCatalogImages>* images) = 0;
    virtual HRESULT putref_images(IQVRCatalogObject* images) = 0;
    virtual HRESULT get_link(Ref<IQVRCatalogLink>* link) = 0;
    virtual HRESULT putref_link(IQVRCatalogObject* link) = 0;
    virtual HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) = 0;
    virtual HRESULT putref_documents(IQVRCatalogObject* documents) = 0;
    // The table cache (qvr/table_cache.h): the open tables of the catalog's parts. It lives as
    // long as the catalog and needs no document.
    virtual HRESULT get_tables(Ref<IQVRCatalogObjectList>* tables) = 0;
    // The folder URL against which relative references resolve, with a trailing "/".
    virtual HRESULT get_baseUrl(String* baseUrl) = 0;
    // A path is stored in its URL form. A value that already is a URL is stored as it is and
    // the call still answers E_FAIL: read that answer as "stored unchanged", not as a refusal.
    virtual HRESULT put_baseUrl(const String& baseUrl) = 0;
    // Without Extrinsics: S_FALSE, and `extrinsics` is left as it was.
    virtual HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) = 0;
    virtual HRESULT getHostStream(Ref<IStream>* stream) = 0;
    // Stores an opaque reference for the host application; it is not counted.
    virtual HRESULT putref_host(IUnknown* host) = 0;
    // Loads a file (path or file: URL). A file that does not parse reports "XML parse error:"
    // with the details; a root other than vCAT reports "The .xml file is not an vCATCatalog
    // file." with QVR_E_NOTCATALOG. The table cache is emptied first, also when the load fails.
    virtual HRESULT load(const Variant& source, VARIANT_BOOL* done) = 0;
    virtual HRESULT loadXML(const String& xml, VARIANT_BOOL* done) = 0;
    // Saves to where the document was last loaded from or saved to.
    virtual HRESULT save(VARIANT_BOOL* done) = 0;
    // Saves every open table whose part is still in the catalog (each to its own URL), then the
    // catalog. A table that fails stops it all: "Error while saving table" and the table's path,
    // under the table's status, and the catalog is not written.
    virtual HRESULT saveAs(const Variant& target, VARIANT_BOOL* done) = 0;
    // A new document with the given name and language; `baseUrl` as put_baseUrl takes it.
    virtual HRESULT create(const String& baseUrl, const String& name, const String& language,
                           VARIANT_BOOL* done) = 0;
    // New elements, standing in no tree until a parent inserts them. A required text that is
    // null gives E_INVALIDARG; the objects handed in are moved into the new element (a null one
    // fails where the element needs it: a container is never made empty). A failing step of
    // the new object's own setters ends it with that step's status and message.
    virtual HRESULT createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) = 0;
    virtual HRESULT createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) = 0;
    virtual HRESULT createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) = 0;
    // An `xlink:type` of "simple"; an empty language sets none.
    virtual HRESULT createURL(const String& href, const String& title, const String& language,
                              Ref<IQVRCatalogURL>* url) = 0;
    virtual HRESULT createLink(IQVRCatalogObject* url, Ref<IQVRCatalogLink>* link) = 0;
    virtual HRESULT createDocument(IQVRCatalogObject* url, const String& name,
                                   Ref<IQVRCatalogDocument>* document) = 0;
    virtual HRESULT createDocuments(IQVRCatalogObject* document, const String& name,
                                    Ref<IQVRCatalogDocuments>* documents) = 0;
    virtual HRESULT createPart(const String& name, Ref<IQVRCatalogPart>* part) = 0;
    virtual HRESULT createClass(const String& domain, const String& value,
                                Ref<IQVRCatalogClass>* classObject) = 0;
    virtual HRESULT createClassifications(IQVRCatalogObject* classObject,
                                          Ref<IQVRCatalogClassifications>* classifications) = 0;
    // `country` is the calling code's text and may be null; the others are required.
    virtual HRESULT createTelephoneNumber(const String& country, const String& isoCountryCode,
                                          const String& areaOrCityCode, const String& number,
                                          const String& extension,
                                          Ref<IQVRCatalogTelephoneNumber>* telephoneNumber) = 0;
    virtual HRESULT createPhone(const String& name, IQVRCatalogObject* telephoneNumber,
                                Ref<IQVRCatalogPhone>* phone) = 0;
    virtual HRESULT createFax(const String& name, IQVRCatalogObject* telephoneNumber,
                              Ref<IQVRCatalogFax>* fax) = 0;
    virtual HRESULT createEmail(const String& name, const String& address,
                                Ref<IQVRCatalogEmail>* email) = 0;
    virtual HRESULT createStreet(const String& text, Ref<IQVRCatalogStreet>* street) = 0;
    // `id` is the caller's; nothing checks or makes it unique.
    virtual HRESULT createPostalAddress(const String& id, const String& city, const String& country,
                                        const String& isoCountryCode, IQVRCatalogObject* street,
                                        const String& state, const String& postalCode,
                                        Ref<IQVRCatalogPostalAddress>* postalAddress) = 0;
    // The four objects may each be null: that child is left out.
    virtual HRESULT createAddress(const String& name, const String& isoCountryCode,
                                  IQVRCatalogObject* postalAddress, IQVRCatalogObject* email,
                                  IQVRCatalogObject* phone, IQVRCatalogObject* fax,
                                  Ref<IQVRCatalogAddress>* address) = 0;
    // An empty Extrinsics: it is the one group that may be.
    virtual HRESULT createExtrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT createExtrinsic(const String& name, Ref<IQVRCatalogExtrinsic>* extrinsic) = 0;
    // Delivers an event to this catalog's sinks. 30001 to 30004 call the sink method of that
    // number; any other number arrives as onObjectInserted.
    virtual HRESULT fireEvent(std::int32_t event, IQVRCatalogObject* subject,
                              const Variant& position, VARIANT_BOOL* result) = 0;
    // The element whose `id` is `id` (a GUID text of 36 characters), anywhere in the document.
    virtual HRESULT findById(const String& id, Ref<IQVRCatalogObject>* object) = 0;
    // Adds a sink; the catalog holds it until unadvise.
    virtual HRESULT advise(IQVRCatalogEvents* sink, std::uint32_t* cookie) = 0;
    virtual HRESULT unadvise(std::uint32_t cookie) = 0;
};

// A new catalog, not initialized yet.
QVR_API HRESULT CreateCatalog(Ref<IQVRCatalog>* catalog);

} // namespace qvr
