// The part's table: opening it through the catalog's table cache, moving it, attaching one a
// caller built, and copying it for a cloned part.
#include <qvr/catalog.h>

#include "content/part.h"
#include "core/ids.h"
#include "platform/com/failure.h"
#include "platform/url/url.h"
#include "tables/table.h"

namespace qvr {
namespace {

// The reference of a copied table: a new id ahead of the last "." of the whole text (directories
// included), or at the end when there is no ".".
String copiedReference(const String& reference) {
    const std::string_view text = reference.view();
    const std::size_t dot = text.rfind('.');
    if (dot == std::string_view::npos) return reference + newGuidId().view();
    return String(text.substr(0, dot)) + newGuidId().view() + "." + text.substr(dot + 1);
}

bool endsInSeparator(std::string_view text) {
    return !text.empty() && (text.back() == '/' || text.back() == '\\');
}

} // namespace

HRESULT CQVRCatalogPart::tableKey(String* key) {
    HRESULT hr = get_key(key);
    if (SUCCEEDED(hr)) *key += "T";
    return hr;
}

Ref<IQVRCatalogObjectList> CQVRCatalogPart::tableCache() {
    Ref<IQVRCatalogObject> catalog;
    Ref<IQVRCatalogObjectList> tables;
    if (get_catalog(&catalog) == S_OK)
        if (Ref<IQVRCatalog> root = query<IQVRCatalog>(catalog)) root->get_tables(&tables);
    return tables;
}

void CQVRCatalogPart::closeTable() {
    String key;
    Ref<IQVRCatalogObjectList> tables = tableCache();
    VARIANT_BOOL done = VARIANT_FALSE;
    if (tables && SUCCEEDED(tableKey(&key))) tables->removeChild(Variant(key), &done);
}

HRESULT CQVRCatalogPart::loadTable(const String& key, bool enterInCache,
                                   Ref<IQVRCatalogTable>* table) {
    String reference;
    HRESULT hr = get_tableRef(&reference);
    if (hr != S_OK) return hr; // also an empty reference: no table, and nothing to report
    Ref<IQVRCatalogObject> catalog;
    get_catalog(&catalog);
    String path;
    if (resolveReference(reference, &path) != S_OK || path.isEmpty())
        return report(msgTableRefNotSet);
    Ref<CQVRCatalogTable> loaded = makeObject<CQVRCatalogTable>();
    if ((hr = loaded->attachToCatalog(catalog, self(), Variant(path), key)) != S_OK) return hr;
    if (enterInCache)
        if (Ref<IQVRCatalogObjectList> tables = tableCache()) {
            VARIANT_BOOL done = VARIANT_FALSE;
            tables->removeChild(Variant(key), &done);
            tables->appendChild(loaded->self(), &done);
        }
    *table = loaded.get();
    return S_OK;
}

HRESULT CQVRCatalogPart::resolveReference(const String& reference, String* path) {
    *path = reference;
    if (url::isUrl(reference.view()) || !url::isRelative(reference.view())) return S_OK;
    // Relative to the catalog: its base and the reference, joined with nothing between.
    Ref<IQVRCatalogObject> catalog;
    get_catalog(&catalog);
    Ref<IQVRCatalog> root = query<IQVRCatalog>(catalog);
    String base;
    if (!root || FAILED(root->get_baseUrl(&base))) return E_FAIL;
    *path = base + reference.view();
    return S_OK;
}

HRESULT CQVRCatalogPart::getTable(std::int32_t, Ref<IQVRCatalogTable>* table) {
    return guarded([&] {
        if (!table) return E_POINTER;
        *table = nullptr;
        if (!initialized() || !ownerDocument()) return notInitialized();
        String key;
        HRESULT hr = tableKey(&key);
        if (FAILED(hr)) return hr;
        // An open table: a new table object over the cached document, linked to this part.
        Ref<IQVRCatalogObject> cached;
        Ref<IQVRCatalogObjectList> tables = tableCache();
        if (tables && tables->get_item(Variant(key), &cached) == S_OK)
            if (Ref<IQVRCatalogTable> open = query<IQVRCatalogTable>(cached)) {
                Ref<IQVRCatalogObject> catalog;
                get_catalog(&catalog);
                open->putref_catalog(catalog);
                open->putref_parentNode(self());
                *table = std::move(open);
                return S_OK;
            }
        return loadTable(key, true, table);
    });
}

HRESULT CQVRCatalogPart::setTableLocation(const String& baseDirectory,
                                          const String& relativeDirectory, const String& fileName) {
    return guarded([&] {
        if (baseDirectory.isNull() || relativeDirectory.isNull() || fileName.isNull())
            return E_INVALIDARG;
        if (!initialized()) {
            notInitialized();
            return S_FALSE;
        }
        Ref<IXMLDOMElement> link;
        String present;
        if (selectTableLink(&link) != S_OK || !link || link->getAttribute(href, &present) != S_OK)
            return S_FALSE;
        // From now on the reference is relative to the catalog.
        HRESULT hr = link->setAttribute(href, relativeDirectory + fileName.view());
        if (hr != S_OK) return hr;
        // An open table learns its new base and address, and its entry is made anew to keep them.
        String key;
        Ref<IQVRCatalogObject> cached;
        Ref<IQVRCatalogObjectList> tables = tableCache();
        if (tables && SUCCEEDED(tableKey(&key)) && tables->get_item(Variant(key), &cached) == S_OK)
            if (Ref<IQVRCatalogTable> open = query<IQVRCatalogTable>(cached)) {
                String base = baseDirectory;
                if (!base.isEmpty() && !endsInSeparator(base.view())) base += "/";
                const String folder = base + relativeDirectory.view();
                if ((hr = open->put_baseUrl(folder)) == S_OK) {
                    VARIANT_BOOL done = VARIANT_FALSE;
                    open->put_url(Variant(folder + fileName.view()));
                    tables->removeChild(Variant(key), &done);
                    hr = tables->appendChild(open, &done);
                }
            }
        fireChanged();
        return hr;
    });
}

HRESULT CQVRCatalogPart::attachTable(IQVRCatalogTable* table) {
    return guarded([&] {
        if (!table) return E_INVALIDARG;
        if (!initialized()) return notInitialized();
        Variant url;
        HRESULT hr = table->get_url(&url);
        if (FAILED(hr)) return hr;
        // A table never loaded or saved has no address the part could refer to.
        if (url.vt() != VT_BSTR) return report(msgUnknownTableURL);
        if (FAILED(hr = put_tableRef(url.str()))) return hr;
        Ref<IQVRCatalogObject> catalog;
        get_catalog(&catalog);
        table->putref_parentNode(self());
        table->putref_catalog(catalog);
        // No removal ahead: a table already open under the key stays, and this one is refused.
        Ref<IQVRCatalogObjectList> tables = tableCache();
        VARIANT_BOOL done = VARIANT_FALSE;
        return tables ? tables->appendChild(table, &done) : E_FAIL;
    });
}

HRESULT CQVRCatalogPart::copyTable(IQVRCatalogPart* source, IQVRCatalogPart* copy,
                                   const String& newKey) {
    return guarded([&] {
        String reference;
        HRESULT hr = source ? source->get_tableRef(&reference) : E_POINTER;
        if (FAILED(hr)) return hr;
        if (reference.isEmpty()) return S_OK; // nothing to hand over
        auto* from = dynamic_cast<CQVRCatalogPart*>(source);
        auto* to = dynamic_cast<CQVRCatalogPart*>(copy);
        if (!from || !to) return E_INVALIDARG;
        // The source's table: the open document under the new key, or loaded from its file
        // without entering the cache.
        Ref<IQVRCatalogTable> original;
        String sourceKey;
        Ref<IQVRCatalogObjectTableCache> cache =
            query<IQVRCatalogObjectTableCache>(from->tableCache());
        if (!cache || FAILED(from->tableKey(&sourceKey)) ||
            cache->getTableAs(Variant(sourceKey), newKey, &original) != S_OK)
            if ((hr = from->loadTable(newKey, false, &original)) != S_OK) return hr;
        // A second document in memory, which keeps the new key.
        Ref<IQVRCatalogObject> cloned;
        if ((hr = original->cloneNode(VARIANT_TRUE, &cloned)) != S_OK) return hr;
        Ref<IQVRCatalogTable> table = query<IQVRCatalogTable>(cloned);
        if (!table) return E_NOINTERFACE;
        const String name = copiedReference(reference);
        if (FAILED(hr = to->put_tableRef(name))) return hr;
        // The copy's file is where its part's reference will look for it. (Joining the new
        // name to the source table's own folder would double a folder that the reference
        // names, and the copy would be written where no reference finds it.)
        String path;
        if ((hr = to->resolveReference(name, &path)) != S_OK) return hr;
        if (FAILED(hr = table->put_url(Variant(path)))) return hr;
        // The copy reaches its file when the catalog saves its tables.
        Ref<IQVRCatalogObjectList> tables = to->tableCache();
        VARIANT_BOOL done = VARIANT_FALSE;
        return tables ? tables->appendChild(table, &done) : E_FAIL;
    });
}

} // namespace qvr
