// The entry points by which clients make the roots of the model.
#include <qvr/catalog.h>
#include <qvr/table.h>

#include "catalog/catalog.h"
#include "platform/com/failure.h"
#include "tables/table.h"

namespace qvr {

HRESULT CreateCatalog(Ref<IQVRCatalog>* catalog) {
    if (!catalog) return E_POINTER;
    *catalog = nullptr;
    return guarded([&] {
        *catalog = makeObject<CQVRCatalog>();
        return S_OK;
    });
}

HRESULT CreateCatalogTable(Ref<IQVRCatalogTable>* table) {
    if (!table) return E_POINTER;
    *table = nullptr;
    return guarded([&] {
        *table = makeObject<CQVRCatalogTable>();
        return S_OK;
    });
}

} // namespace qvr
