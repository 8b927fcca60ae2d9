// A part: one manufactured item. A leaf of the catalog's tree that takes no children through
// insertBefore, yet removes like a container. Behind its groups stand OrderInfo, Classifications
// and last the TableRef, whose URL child names the part's table document. Its key is its `id`;
// the key of its table is that id with "T" behind it.
//
// The part holds nothing of its table. Seen from the part a table is closed (a reference, no entry
// in the catalog's table cache) or open (an entry under the table key); getTable opens it, a new
// reference closes it. The table operations live in part_table.cpp.
#pragma once

#include <qvr/content.h>

#include "content/descriptive_element.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRCatalogPart final : public DescriptiveElement<CatalogObject<IQVRCatalogPart, qvrPart>> {
public:
    // A new part: a new `id`, an empty Desc, an empty table reference, the name, visible. The
    // last three go through the part's own setters and fire their events.
    HRESULT fillNew(const String& name);
    // Hands a copy of the table of `source` over to `copy` under `newKey`: a second document in
    // memory, named after the source's reference with a new id ahead of its last ".", entered in
    // the cache. No file is written; the catalog's next save writes it. A source without a table
    // reference has nothing to hand over.
    static HRESULT copyTable(IQVRCatalogPart* source, IQVRCatalogPart* copy, const String& newKey);

    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override {
        return containerRemoveChild(child, removed, false);
    }
    // The copy gets a new `id`. A deep copy takes a copy of the table along; a shallow one gets
    // an empty table reference.
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override;

    HRESULT get_tableRef(String* tableRef) override;
    HRESULT put_tableRef(const String& tableRef) override;
    HRESULT getTable(std::int32_t reserved, Ref<IQVRCatalogTable>* table) override;
    HRESULT get_classifications(Ref<IQVRCatalogClassifications>* classifications) override {
        return accessors::getSingleton(*this, "Classifications", classifications);
    }
    HRESULT putref_classifications(IQVRCatalogObject* classifications) override {
        return putGroup("Classifications", classifications);
    }
    HRESULT get_orderInfo(Ref<IQVRCatalogOrderInfo>* orderInfo) override {
        return accessors::getSingleton(*this, "OrderInfo", orderInfo);
    }
    HRESULT putref_orderInfo(IQVRCatalogObject* orderInfo) override {
        return putGroup("OrderInfo", orderInfo);
    }
    HRESULT setTableLocation(const String& baseDirectory, const String& relativeDirectory,
                             const String& fileName) override;
    HRESULT attachTable(IQVRCatalogTable* table) override;

private:
    static constexpr const char* tableRefUrl = "TableRef/URL";
    static constexpr const char* href = "xlink:href";

    // A TableRef (kept if there is one) with a new URL child naming `tableRef`.
    HRESULT makeTableLink(const String& tableRef);
    // The TableRef/URL element (null when there is none) and the status of selecting it.
    HRESULT selectTableLink(Ref<IXMLDOMElement>* link);
    // The part's id with "T" behind it.
    HRESULT tableKey(String* key);
    // The table cache of the part's catalog, or null when the part has no catalog.
    Ref<IQVRCatalogObjectList> tableCache();
    // Drops the cache entry of the part's table; a table object that a caller holds lives on.
    void closeTable();
    // Where `reference` points: a URL or absolute path as it stands, a relative one behind the
    // catalog's base.
    HRESULT resolveReference(const String& reference, String* path);
    // Loads the table that the reference names, resolved against the catalog's base when it is
    // relative, as a table attached to this part under `key`; enters it in the cache when
    // `enterInCache` is set. An empty reference answers S_FALSE and reports nothing.
    HRESULT loadTable(const String& key, bool enterInCache, Ref<IQVRCatalogTable>* table);
};

} // namespace qvr
