// A part: one manufactured item. A leaf of the catalog's tree that takes no children through
// insertBefore, yet removes like a container. Behind its groups stand OrderInfo, Classifications
// and last the TableRef, whose URL child names the part's table document. Its key is its `id`;
// the key of its table is that id with "T" behind it.
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
    // Hands the table of `source` over to `copy` under `newKey`. A source without a table
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
    // A TableRef (kept if there is one) with a new URL child naming `tableRef`.
    HRESULT makeTableLink(const String& tableRef);
};

} // namespace qvr
