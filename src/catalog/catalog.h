// The catalog: the root of the model. It owns the document, is the catalog link of every object
// in it, and holds the sinks that hear every change. It has no element of its own: operations
// that need the root element ask the document each time.
//
// Its own changes (insertBefore, removeChild, put_name, put_desc) go to its sinks directly; the
// changes of its objects climb to it through their catalog link.
#pragma once

#include <qvr/catalog.h>

#include "core/event_root.h"
#include "core/event_sinks.h"
#include "core/object_core.h"
#include "platform/com/object_base.h"

namespace qvr {

class CQVRCatalog final : public ObjectBase<IQVRCatalog, ISupportErrorInfo>,
                          public ObjectCore,
                          public IEventRoot {
public:
    CQVRCatalog();

    // --- ObjectCore hooks: the root element of the document, message 102, direct firing ------
    IQVRCatalogObject* self() override { return static_cast<IQVRCatalog*>(this); }
    bool initialized() const override { return document_ != nullptr; }
    HRESULT notInitialized() const override;
    HRESULT workElement(Ref<IXMLDOMElement>* element) override;
    HRESULT catalogObject(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT insertChild(CXMLDOMTool& tool, IQVRCatalogObject* child, const Variant& position,
                        Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) override;
    void fire(std::int32_t event, IQVRCatalogObject* subject, const Variant& position) override;

    // --- IQVRCatalogObject ---------------------------------------------------------------------
    HRESULT getValue(const String& xpath, Variant* value) override {
        return baseGetValue(xpath, value);
    }
    HRESULT insertBefore(IQVRCatalogObject* newChild, const Variant& position,
                         Ref<IQVRCatalogObject>* inserted) override {
        return containerInsertBefore(newChild, position, inserted);
    }
    HRESULT appendChild(IQVRCatalogObject* newChild, Ref<IQVRCatalogObject>* inserted) override {
        return insertBefore(newChild, Variant(), inserted);
    }
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override {
        return containerRemoveChild(child, removed, false);
    }
    HRESULT cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>*) override { return E_NOTIMPL; }
    HRESULT contains(IQVRCatalogObject* object, VARIANT_BOOL* isDescendant) override {
        return baseContains(object, isDescendant);
    }
    // The `id` of the root element.
    HRESULT get_key(String* key) override { return readRootAttribute("id", key); }
    HRESULT get_objectType(QVRObjectType* type) override { return baseObjectType(type); }
    HRESULT get_childNodes(Ref<IQVRCatalogObjectList>* list) override {
        return containerChildNodes(list);
    }
    // The catalog is its own catalog, and has no parent; neither link can be set.
    HRESULT get_catalog(Ref<IQVRCatalogObject>* catalog) override;
    HRESULT putref_catalog(IQVRCatalogObject*) override { return E_FAIL; }
    HRESULT get_parentNode(Ref<IQVRCatalogObject>* parent) override;
    HRESULT putref_parentNode(IQVRCatalogObject*) override { return E_FAIL; }
    HRESULT get_domNode(Ref<IXMLDOMElement>* node) override { return baseDomNode(node); }
    HRESULT getDataObject(Ref<IDataObject>* dataObject) override {
        return baseDataObject(dataObject);
    }
    HRESULT getReferencedFiles(VARIANT_BOOL flag, Ref<IQVRCatalogObjectList>* files) override {
        return baseReferencedFiles(flag, files);
    }

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
    HRESULT get_baseUrl(String* baseUrl) override;
    HRESULT put_baseUrl(const String& baseUrl) override;
    HRESULT getHostStream(Ref<IStream>* stream) override;
    HRESULT putref_host(IUnknown* host) override;
    HRESULT load(const Variant& source, VARIANT_BOOL* done) override;
    HRESULT loadXML(const String& xml, VARIANT_BOOL* done) override;
    HRESULT save(VARIANT_BOOL* done) override;
    HRESULT saveAs(const Variant& target, VARIANT_BOOL* done) override;
    HRESULT create(const String& baseUrl, const String& name, const String& language,
                   VARIANT_BOOL* done) override;
    HRESULT createChapter(const String& name, Ref<IQVRCatalogChapter>* chapter) override;
    HRESULT createPart(const String& name, Ref<IQVRCatalogPart>* part) override;
    HRESULT findById(const String& id, Ref<IQVRCatalogObject>* object) override;

    // --- Sinks (IQVRCatalog and IEventRoot) ----------------------------------------------------
    HRESULT fireEvent(std::int32_t event, IQVRCatalogObject* subject, const Variant& position,
                      VARIANT_BOOL* result) override;
    HRESULT advise(IQVRCatalogEvents* sink, std::uint32_t* cookie) override;
    HRESULT unadvise(std::uint32_t cookie) override;
    HRESULT adviseListener(IQVRCatalogEvents* sink, std::uint32_t* cookie) override;

    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override;

private:
    HRESULT readRootAttribute(const char* name, String* value) noexcept;
    // The root's Desc, selected on the document.
    HRESULT selectDesc(Ref<IXMLDOMNode>* desc);
    // Makes a document when there is none (message 102 when that fails).
    HRESULT ensureDocument();
    // The end of load and loadXML: the parse failure's text, then the check of the root.
    HRESULT checkLoaded(HRESULT loadStatus);
    HRESULT buildDocument(const String& name, const String& language);
    template <class T, class I>
    HRESULT createElementObject(const String& name, Ref<I>* out);

    IUnknown* host_ = nullptr; // opaque and not counted: the host keeps itself alive
    Ref<IXMLDOMDocument> document_;
    Variant path_;
    String baseUrl_;
    EventSinks sinks_{EventSide::Catalog};
};

} // namespace qvr
