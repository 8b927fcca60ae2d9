#include "core/node_import.h"

#include <qvr/catalog.h>
#include <qvr/table.h>

#include "core/object_factory.h"

namespace qvr {

bool NodeImport::isForeignNode(IXMLDOMNode* node) {
    Ref<IXMLDOMDocument> document;
    Ref<IXMLDOMElement> root;
    String mark;
    return node && node->get_ownerDocument(&document) == S_OK && document &&
           document->get_documentElement(&root) == S_OK && root &&
           root->getAttribute(transferMark, &mark) == S_OK;
}

HRESULT NodeImport::importNode(Ref<IXMLDOMElement>* copy) {
    if (!copy) return E_POINTER;
    *copy = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMDocument> document;
    HRESULT hr = CreateDOMDocument(&document);
    if (hr != S_OK) return hr;
    String text;
    if ((hr = node_->get_xml(&text)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
    const String wrapped = String("<?xml version='1.0'?><vCAT xmlns:xlink='"
                                  "http://www.w3.org/1999/xlink'>") +
                           text.view() + "</vCAT>";
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->put_async(VARIANT_FALSE);
    if ((hr = document->loadXML(wrapped, &loaded)) != S_OK) return hr;
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMNode> first;
    if ((hr = document->get_documentElement(&root)) != S_OK ||
        (hr = root->get_firstChild(&first)) != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    *copy = query<IXMLDOMElement>(first);
    return *copy ? S_OK : E_FAIL;
}

HRESULT NodeImport::attachChapterTables(IQVRCatalogObject* catalog,
                                        IQVRCatalogObject* foreignChapter,
                                        IQVRCatalogObject* chapter) {
    // The copy has the children of the original, in the same order.
    Ref<IQVRCatalogObjectList> sources, copies;
    std::int32_t count = 0;
    HRESULT hr = foreignChapter->get_childNodes(&sources);
    if (hr != S_OK || (hr = chapter->get_childNodes(&copies)) != S_OK ||
        (hr = sources->get_count(&count)) != S_OK)
        return hr;
    for (std::int32_t i = 1; i <= count; ++i) {
        Ref<IQVRCatalogObject> source, copy;
        QVRObjectType type;
        if ((hr = sources->get_item(Variant(i), &source)) != S_OK ||
            (hr = copies->get_item(Variant(i), &copy)) != S_OK ||
            (hr = source->get_objectType(&type)) != S_OK)
            return hr;
        if (type == qvrPart)
            hr = attachPartTables(catalog, source, copy);
        else if (type == qvrChapter)
            hr = attachChapterTables(catalog, source, copy);
        if (hr != S_OK) return hr;
    }
    return S_OK;
}

bool NodeImport::catalogHasTable(const String& key, IQVRCatalogObject* part) {
    Ref<IQVRCatalogObject> catalogObject;
    Ref<IQVRCatalog> catalog;
    Ref<IQVRCatalogObjectList> tables;
    Ref<IQVRCatalogObject> item;
    return part->get_catalog(&catalogObject) == S_OK &&
           (catalog = query<IQVRCatalog>(catalogObject)) && catalog->get_tables(&tables) == S_OK &&
           tables->get_item(Variant(key), &item) == S_OK && item;
}

HRESULT NodeImport::attachPartTables(IQVRCatalogObject* catalog, IQVRCatalogObject* foreignPart,
                                     IQVRCatalogObject* part) {
    Ref<IQVRCatalogPart> source = query<IQVRCatalogPart>(foreignPart);
    if (!source) return E_NOINTERFACE;
    Ref<IQVRCatalogTable> table;
    HRESULT hr = source->getTable(0, &table);
    if (hr == S_FALSE) return S_OK;
    if (hr != S_OK) return hr;
    String key, text;
    if ((hr = table->get_key(&key)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
    if (!catalogHasTable(key, foreignPart)) return S_OK;
    Ref<IQVRCatalog> target = query<IQVRCatalog>(catalog);
    Ref<IQVRCatalogObjectList> tables;
    if (!target) return E_NOINTERFACE;
    if ((hr = target->get_tables(&tables)) != S_OK || (hr = table->get_xml(&text)) != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    Ref<IQVRCatalogTable> local;
    VARIANT_BOOL loaded = VARIANT_FALSE;
    if ((hr = CreateCatalogTable(&local)) != S_OK ||
        (hr = local->loadXML(text, key, 0, &loaded)) != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    // Where the source table came from, as far as it tells.
    Variant url;
    String base;
    if (table->get_url(&url) == S_OK) local->put_url(url);
    if (table->get_baseUrl(&base) == S_OK) local->put_baseUrl(base);
    if ((hr = local->putref_catalog(catalog)) != S_OK ||
        (hr = local->putref_parentNode(part)) != S_OK)
        return hr;
    VARIANT_BOOL added = VARIANT_FALSE;
    hr = tables->appendChild(local, &added);
    return FAILED(hr) ? hr : S_OK;
}

HRESULT NewChild::prepare(IQVRCatalogObject* child) {
    child_ = child;
    HRESULT hr = child->get_domNode(&element_);
    if (FAILED(hr)) return hr;
    if (!element_ || !NodeImport::isForeignNode(element_)) return S_OK;
    foreign_ = true;
    Ref<IXMLDOMElement> copy;
    if ((hr = NodeImport(element_).importNode(&copy)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
    element_ = std::move(copy);
    return S_OK;
}

HRESULT NewChild::linkGiven(IXMLDOMNode* into, IQVRCatalogObject* catalog,
                            IQVRCatalogObject* parent, Ref<IQVRCatalogObject>* inserted) {
    HRESULT hr = child_->putref_catalog(catalog);
    if (hr != E_OUTOFMEMORY) hr = child_->putref_parentNode(parent);
    if (hr == E_OUTOFMEMORY) {
        into->removeChild(element_, nullptr);
        return hr;
    }
    if (inserted) *inserted = child_;
    return S_OK;
}

HRESULT NewChild::link(IXMLDOMNode* into, IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                       Ref<IQVRCatalogObject>* inserted) {
    if (!foreign_) return linkGiven(into, catalog, parent, inserted);
    Ref<IQVRCatalogObject> wrapper;
    HRESULT hr = createObjectOf(element_, catalog, parent, &wrapper);
    if (hr != S_OK) {
        into->removeChild(element_, nullptr);
        return hr;
    }
    QVRObjectType type;
    if ((hr = child_->get_objectType(&type)) != S_OK) return hr;
    if (type == qvrChapter) {
        hr = NodeImport::attachChapterTables(catalog, child_, wrapper);
    } else if (type == qvrPart &&
               (hr = NodeImport::attachPartTables(catalog, child_, wrapper)) != S_OK) {
        return hr;
    }
    if (inserted) *inserted = std::move(wrapper);
    return S_OK;
}

} // namespace qvr
