#include "transfer/table_cache.h"

#include <algorithm>

#include "platform/com/error_report.h"
#include "platform/com/failure.h"
#include "tables/table.h"
#include "transfer/table_cache_enumerator.h"

namespace qvr {
namespace {

// The order of the keys: the platform's text comparison under the user's locale, case counting.
bool keyBefore(const String& a, const String& b) {
    return varCmp(Variant(a), Variant(b), LOCALE_USER_DEFAULT, 0) == VARCMP_LT;
}

// A new table over the entry's document, with its address, base and key. It has no catalog and
// no parent: the part that asked for it links it.
HRESULT tableOf(const STableCache& entry, Ref<CQVRCatalogTable>* table) {
    Ref<CQVRCatalogTable> made = makeObject<CQVRCatalogTable>();
    HRESULT hr = made->adoptCacheEntry(entry);
    if (hr == S_OK) *table = std::move(made);
    return hr;
}

// What the cache keeps of `table`: its document and root element (left empty when they can't be
// had), then its address, base and key as the table tells them.
STableCache entryOf(IQVRCatalogObject* table) {
    STableCache entry;
    Ref<IXMLDOMElement> element;
    Ref<IXMLDOMDocument> document;
    if (table->get_domNode(&element) == S_OK && element &&
        element->get_ownerDocument(&document) == S_OK && document) {
        entry.ownerDocument = std::move(document);
        entry.element = std::move(element);
    }
    if (Ref<IQVRCatalogTable> asTable = query<IQVRCatalogTable>(table)) {
        asTable->get_url(&entry.url);
        asTable->get_baseUrl(&entry.baseUrl);
        asTable->get_key(&entry.cachedKey);
    }
    return entry;
}

} // namespace

HRESULT CQVRCatalogObjectTableCache::report(std::uint32_t message, HRESULT status) const {
    return reportError({"QVRCatalog.ObjectTableCache", IQVRCatalogObjectList::iid}, message,
                       status);
}

HRESULT CQVRCatalogObjectTableCache::InterfaceSupportsErrorInfo(const IID& iid) {
    return iid == IQVRCatalogObjectList::iid || iid == IQVRCatalogObjectTableCache::iid ? S_OK
                                                                                        : S_FALSE;
}

CQVRCatalogObjectTableCache::Entries::iterator
CQVRCatalogObjectTableCache::lowerBound(const String& key) {
    return std::lower_bound(
        entries_.begin(), entries_.end(), key,
        [](const Entry& entry, const String& k) { return keyBefore(entry.first, k); });
}

CQVRCatalogObjectTableCache::Entries::iterator
CQVRCatalogObjectTableCache::find(const String& key) {
    auto at = lowerBound(key);
    return at != entries_.end() && !keyBefore(key, at->first) ? at : entries_.end();
}

// --- IQVRCatalogObjectList ---------------------------------------------------------------------

HRESULT CQVRCatalogObjectTableCache::get__NewEnum(Ref<IUnknown>* enumerator) {
    return guarded([&] {
        if (!enumerator) return E_POINTER;
        *enumerator = makeObject<CQVRCatalogTableCacheEnumerator>(this);
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectTableCache::get_item(const Variant& indexOrKey,
                                              Ref<IQVRCatalogObject>* table) {
    return guarded([&] {
        if (!table) return E_POINTER;
        *table = nullptr;
        Variant converted;
        if (indexOrKey.vt() != VT_BSTR &&
            changeType(&converted, indexOrKey, LOCALE_USER_DEFAULT, 0, VT_I4) == S_OK) {
            const std::int32_t index = converted.i4();
            if (index < 1 || static_cast<std::size_t>(index) > entries_.size())
                return report(index > 0 ? msgIndexOutOfRange : msgIndexZero, E_INVALIDARG);
            return getItem(index, table);
        }
        // Whatever is no index is read as a key.
        HRESULT hr = changeType(&converted, indexOrKey, LOCALE_USER_DEFAULT, 0, VT_BSTR);
        if (hr != S_OK) return hr;
        const auto found = find(converted.str());
        if (found == entries_.end()) return E_FAIL; // a miss, and no message
        Ref<CQVRCatalogTable> made;
        if ((hr = tableOf(found->second, &made)) == S_OK) *table = made->self();
        return hr;
    });
}

HRESULT CQVRCatalogObjectTableCache::get_count(std::int32_t* count) {
    if (!count) return E_POINTER;
    *count = static_cast<std::int32_t>(entries_.size());
    return S_OK;
}

HRESULT CQVRCatalogObjectTableCache::insertBefore(IQVRCatalogObject*, const Variant&,
                                                  VARIANT_BOOL*) {
    return E_NOTIMPL; // the keys give the order; there are no positions
}

HRESULT CQVRCatalogObjectTableCache::appendChild(IQVRCatalogObject* table, VARIANT_BOOL* done) {
    return guarded([&] {
        String key;
        const HRESULT keyStatus = table ? table->get_key(&key) : E_INVALIDARG;
        if (FAILED(keyStatus)) key = String(""); // entered under the empty key all the same
        if (!done) return E_POINTER;
        *done = VARIANT_FALSE;
        if (!table) return E_INVALIDARG;
        auto at = lowerBound(key);
        if (at != entries_.end() && !keyBefore(key, at->first)) return S_FALSE; // first one stays
        entries_.emplace(at, key, entryOf(table));
        if (keyStatus == S_OK) *done = VARIANT_TRUE;
        return keyStatus;
    });
}

HRESULT CQVRCatalogObjectTableCache::removeChild(const Variant& key, VARIANT_BOOL* done) {
    return guarded([&] {
        if (!done) return E_POINTER;
        *done = VARIANT_FALSE;
        if (key.vt() != VT_BSTR) return E_INVALIDARG; // by key only: a map has no index to remove
        const auto found = find(key.str());
        if (found == entries_.end()) return S_FALSE;
        entries_.erase(found);
        *done = VARIANT_TRUE;
        return S_OK;
    });
}

HRESULT CQVRCatalogObjectTableCache::clear() {
    entries_.clear();
    return S_OK;
}

HRESULT CQVRCatalogObjectTableCache::getItem(std::int32_t index, Ref<IQVRCatalogObject>* table) {
    return guarded([&] {
        if (!table) return E_POINTER;
        *table = nullptr;
        if (index < 1) return E_INVALIDARG;
        if (static_cast<std::size_t>(index) > entries_.size()) return E_FAIL;
        Ref<CQVRCatalogTable> made;
        HRESULT hr = tableOf(entries_[index - 1].second, &made);
        if (hr == S_OK) *table = made->self();
        return hr;
    });
}

// --- IQVRCatalogObjectTableCache ---------------------------------------------------------------

HRESULT CQVRCatalogObjectTableCache::getTableAs(const Variant& key, const String& newKey,
                                                Ref<IQVRCatalogTable>* table) {
    return guarded([&] {
        if (!table) return E_POINTER;
        *table = nullptr;
        if (key.vt() != VT_BSTR) return E_INVALIDARG;
        const auto found = find(key.str());
        if (found == entries_.end()) return E_FAIL;
        STableCache renamed = found->second;
        renamed.cachedKey = newKey;
        Ref<CQVRCatalogTable> made;
        HRESULT hr = tableOf(renamed, &made);
        if (hr == S_OK) *table = made.get();
        return hr;
    });
}

} // namespace qvr
