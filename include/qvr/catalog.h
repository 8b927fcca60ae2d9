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

#include <qvr/content.h>
#include <qvr/events.h>
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
    // The table cache (qvr/table_cache.h): the open tables of the catalog's parts. It lives as
    // long as the catalog and needs no document.
    virtual HRESULT get_tables(Ref<IQVRCatalogObjectList>* tables) = 0;
    // The folder URL against which relative references resolve, with a trailing "/".
    virtual HRESULT get_baseUrl(String* baseUrl) = 0;
    // A path is stored in its URL form. A value that already is a URL is stored as it is and
    // the call still answers E_FAIL: read that answer as "stored unchanged", not as a refusal.
    virtual HRESULT put_baseUrl(const String& baseUrl) = 0;
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
    // New elements, standing in no tree until a parent inserts them.
    virtual HRESULT createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) = 0;
    virtual HRESULT createPart(const String& name, Ref<IQVRCatalogPart>* part) = 0;
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
