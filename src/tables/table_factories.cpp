// The table's create… operations: each makes an object of its class around a new element of the
// table's document, standing in no tree, with the table as its catalog, and fills it through the
// object's own operations.
#include "content/media.h"
#include "content/url.h"
#include "core/event_firing.h"
#include "core/ids.h"
#include "core/object_factory.h"
#include "formulas/calculated_column.h"
#include "platform/com/failure.h"
#include "tables/const_column.h"
#include "tables/const_view.h"
#include "tables/drawing.h"
#include "tables/info_cell.h"
#include "tables/recipe.h"
#include "tables/ref_cell.h"
#include "tables/ref_column.h"
#include "tables/table.h"
#include "tables/table_cell.h"
#include "tables/table_column.h"
#include "tables/view.h"

namespace qvr {

template <class T, class I, class Fill>
HRESULT CQVRCatalogTable::createChild(Ref<I>* out, bool required, Fill&& fill) {
    return guarded([&] {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (!required) return E_INVALIDARG;
        HRESULT hr = requireDocument();
        if (hr != S_OK) return hr;
        Ref<T> created;
        if ((hr = createNewWrapper<T>(document_, self(), &created)) != S_OK) return hr;
        if ((hr = fill(*created)) != S_OK) return FAILED(hr) ? hr : E_FAIL;
        *out = created.get();
        return S_OK;
    });
}

HRESULT CQVRCatalogTable::createColumn(QVRColumnDataType dataType, const String& name,
                                       const String& attrib, const String& desc, const String& unit,
                                       VARIANT_BOOL visible, Ref<IQVRTableColumn>* column) {
    return createChild<CQVRTableColumn>(column, [&](CQVRTableColumn& created) {
        return created.describeNew(dataType, name, attrib, desc, unit, visible);
    });
}

HRESULT CQVRCatalogTable::createCell(const String& key, const Variant& value,
                                     Ref<IQVRTableCell>* cell) {
    return createChild<CQVRTableCell>(
        cell, [&](CQVRTableCell& created) { return created.fillNew(value, key); });
}

HRESULT CQVRCatalogTable::createInfoCell(const String& value, Ref<IQVRTableInfoCell>* cell) {
    return createChild<CQVRTableInfoCell>(
        cell, [&](CQVRTableInfoCell& created) { return created.put_row(value); });
}

// docs-begin: create-recipe
HRESULT CQVRCatalogTable::createRecipe(const String& application, Ref<IQVRTableRecipe>* recipe) {
    return guarded([&] {
        // Nobody hears of the new recipe while it is made and named.
        EventFreeze freeze;
        return createChild<CQVRTableRecipe>(
            recipe, [&](CQVRTableRecipe& created) { return created.put_application(application); });
    });
}
// docs-end: create-recipe

HRESULT CQVRCatalogTable::createConstColumn(QVRColumnDataType dataType, const String& name,
                                            const String& constant, const String& attrib,
                                            const String& desc, const String& unit,
                                            VARIANT_BOOL visible,
                                            Ref<IQVRTableConstColumn>* column) {
    return createChild<CQVRTableConstColumn>(column, [&](CQVRTableConstColumn& created) {
        // The constant goes first, while no type stands: it is stored as given.
        HRESULT hr = created.put_constant(constant);
        if (hr == S_OK) hr = created.describeNew(dataType, name, attrib, desc, unit, visible);
        return hr;
    });
}

HRESULT CQVRCatalogTable::createCalculatedColumn(QVRColumnDataType dataType, const String& name,
                                                 const String& expression, const String& attrib,
                                                 const String& desc, const String& unit,
                                                 VARIANT_BOOL visible,
                                                 Ref<IQVRTableCalculatedColumn>* column) {
    return createChild<CQVRTableCalculatedColumn>(column, [&](CQVRTableCalculatedColumn& created) {
        HRESULT hr = created.put_expression(expression);
        if (hr == S_OK) hr = created.describeNew(dataType, name, attrib, desc, unit, visible);
        return hr;
    });
}

HRESULT CQVRCatalogTable::createView(QVRViewKey viewKey, const String& viewName, const String& desc,
                                     VARIANT_BOOL visible, Ref<IQVRTableView>* view) {
    return createChild<CQVRTableView>(view, [&](CQVRTableView& created) {
        HRESULT hr = created.identifyNew(viewKey);
        return hr == S_OK ? created.describeNew(viewName, desc, visible) : hr;
    });
}

// docs-begin: create-const-view
HRESULT CQVRCatalogTable::createConstView(QVRViewKey viewKey, IQVRCatalogObject* recipe,
                                          const String& viewName, const String& desc,
                                          VARIANT_BOOL visible, Ref<IQVRTableConstView>* view) {
    return createChild<CQVRTableConstView>(view, [&](CQVRTableConstView& created) {
        // A const view is never without a recipe: the first one comes before the rest.
        HRESULT hr = created.identifyNew(viewKey);
        if (hr == S_OK) hr = created.appendChild(recipe, nullptr);
        return hr == S_OK ? created.describeNew(viewName, desc, visible) : hr;
    });
}
// docs-end: create-const-view

HRESULT CQVRCatalogTable::createDrawing(const String& key, const String& value,
                                        Ref<IQVRTableDrawing>* drawing) {
    return createChild<CQVRTableDrawing>(
        drawing, [&](CQVRTableDrawing& created) { return created.fillNew(value, key); });
}

HRESULT CQVRCatalogTable::createRefColumn(std::int32_t role, const String& name, const String& desc,
                                          std::int32_t show, std::int32_t actuate,
                                          VARIANT_BOOL visible, Ref<IQVRTableRefColumn>* column) {
    return createChild<CQVRTableRefColumn>(column, [&](CQVRTableRefColumn& created) {
        return created.describeNew(role, name, desc, show, actuate, visible);
    });
}

HRESULT CQVRCatalogTable::createRefCell(const String& key, const String& value, const String& desc,
                                        const String& title, Ref<IQVRTableRefCell>* cell) {
    return createChild<CQVRTableRefCell>(cell, [&](CQVRTableRefCell& created) {
        HRESULT hr = created.put_value(value);
        if (hr == S_OK) hr = created.put_desc(desc);
        if (hr == S_OK) hr = created.put_title(title);
        if (hr == S_OK) created.setKey(key);
        return hr;
    });
}

HRESULT CQVRCatalogTable::newGuid(String* guid) {
    if (!guid) return E_POINTER;
    return guarded([&] {
        *guid = newGuidId();
        return S_OK;
    });
}

// --- Media of the views ----------------------------------------------------------------------

HRESULT CQVRCatalogTable::createURL(const String& href, const String& title, const String& language,
                                    Ref<IQVRCatalogURL>* url) {
    return createChild<CQVRCatalogURL>(
        url, !href.isNull() && !title.isNull() && !language.isNull(),
        [&](CQVRCatalogURL& created) { return created.fillNew(href, title, language); });
}

HRESULT CQVRCatalogTable::createImage(IQVRCatalogObject* url, Ref<IQVRCatalogImage>* image) {
    return createChild<CQVRCatalogImage>(image, url != nullptr, [&](CQVRCatalogImage& created) {
        return created.appendChild(url, nullptr);
    });
}

HRESULT CQVRCatalogTable::createImages(IQVRCatalogObject* image, Ref<IQVRCatalogImages>* images) {
    return createChild<CQVRCatalogImages>(
        images, image != nullptr,
        [&](CQVRCatalogImages& created) { return created.appendChild(image, nullptr); });
}

HRESULT CQVRCatalogTable::createReferencedFiles(IQVRCatalogObject* reference,
                                                Ref<IQVRCatalogReferencedFiles>* files) {
    return createChild<CQVRCatalogReferencedFiles>(files, [&](CQVRCatalogReferencedFiles& created) {
        return created.appendChild(reference, nullptr);
    });
}

} // namespace qvr
