// How a const view is made for one application (`Recipe` under `ColumnConstView`): the name of
// the application, which is the recipe's key among its siblings, and the path of the recipe.
#pragma once

#include <qvr/table_cells.h>

#include "core/accessors.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRTableRecipe final : public CatalogObject<IQVRTableRecipe, qvrRecipe> {
public:
    // The application, without the tests of the other keys.
    HRESULT get_key(String* key) override { return get_application(key); }
    HRESULT cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>*) override { return E_NOTIMPL; }

    HRESULT get_application(String* application) override {
        if (application) *application = String();
        return accessors::getAttribute(*this, "application", application);
    }
    // An empty name is written; a null one is refused.
    HRESULT put_application(const String& application) override {
        if (application.isNull()) return E_POINTER;
        return accessors::putAttribute(*this, "application", application);
    }
    HRESULT get_path(String* path) override { return accessors::getReferenceText(*this, path); }
    HRESULT put_path(const String& path) override {
        return accessors::putReferenceText(*this, path);
    }
};

} // namespace qvr
