// The entry points by which clients make the roots of the model.
#include <qvr/catalog.h>

#include "catalog/catalog.h"
#include "platform/com/failure.h"

namespace qvr {

HRESULT CreateCatalog(Ref<IQVRCatalog>* catalog) {
    if (!catalog) return E_POINTER;
    *catalog = nullptr;
    return guarded([&] {
        *catalog = makeObject<CQVRCatalog>();
        return S_OK;
    });
}

} // namespace qvr
