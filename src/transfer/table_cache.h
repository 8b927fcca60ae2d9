// The catalog's table cache: for each open table, under its key, what the table needs to stand
// again (its document, root element, address, base and key). Entries hold no table object; each
// request turns an entry into a new table over the cached document, which is why two requests
// give two objects that see each other's changes.
//
// The entries are kept sorted by key (text order, case counts), so that the one-based index by
// which the catalog walks the cache is the key order and costs nothing to reach.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <qvr/catalog.h>
#include <qvr/table.h>

#include "platform/com/object_base.h"
#include "tables/table_cache_entry.h"

namespace qvr {

class CQVRCatalogObjectTableCache final
    : public ObjectBase<IQVRCatalogObjectList, IQVRCatalogObjectTableCache, ISupportErrorInfo> {
public:
    std::size_t size() const { return entries_.size(); }

    // IQVRCatalogObjectList
    HRESULT get__NewEnum(Ref<IUnknown>* enumerator) override;
    HRESULT get_item(const Variant& indexOrKey, Ref<IQVRCatalogObject>* table) override;
    HRESULT get_count(std::int32_t* count) override;
    HRESULT insertBefore(IQVRCatalogObject* table, const Variant& position,
                         VARIANT_BOOL* done) override;
    HRESULT appendChild(IQVRCatalogObject* table, VARIANT_BOOL* done) override;
    HRESULT removeChild(const Variant& key, VARIANT_BOOL* done) override;
    HRESULT clear() override;
    HRESULT getItem(std::int32_t index, Ref<IQVRCatalogObject>* table) override;

    // IQVRCatalogObjectTableCache
    HRESULT getTableAs(const Variant& key, const String& newKey,
                       Ref<IQVRCatalogTable>* table) override;

    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override;

private:
    using Entry = std::pair<String, STableCache>;
    using Entries = std::vector<Entry>;

    HRESULT report(std::uint32_t message, HRESULT status) const;
    // The first entry whose key is not before `key`.
    Entries::iterator lowerBound(const String& key);
    // The entry under `key`, or end.
    Entries::iterator find(const String& key);

    Entries entries_;
};

} // namespace qvr
