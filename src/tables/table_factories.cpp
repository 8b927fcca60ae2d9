// The table's create… operations: each makes an object of its class around a new element of the
// table's document, standing in no tree, with the table as its catalog, and fills it through the
// object's own operations. The kinds whose classes arrive later answer E_NOTIMPL; each becomes a
// one-line call of createChild with its class and its filling.
#include "core/event_firing.h"
#include "core/ids.h"
#include "core/object_factory.h"
#include "formulas/calculated_column.h"
#include "platform/com/failure.h"
#include "tables/const_column.h"
#include "tables/info_cell.h"
#include "tables/recipe.h"
#include "tables/table.h"
#include "tables/table_cell.h"
#include "tables/table_column.h"

namespace qvr {

template <class T, class I, class Fill>
HRESULT CQVRCatalogTable::createChild(Ref<I>* out, Fill&& fill) {
    return guarded([&] {
        if (!out) return E_POINTER;
        *out = nullptr;
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
    return createChild<CQVRTableCell>(cell, [&](CQVRTableCell& created) {
        // The value is told as a change, though the cell has no parent yet.
        HRESULT hr = created.put_value(value);
        if (hr == S_OK) created.setKey(key);
        return hr;
    });
}

HRESULT CQVRCatalogTable::createInfoCell(const String& value, Ref<IQVRTableInfoCell>* cell) {
    return createChild<CQVRTableInfoCell>(
        cell, [&](CQVRTableInfoCell& created) { return created.put_row(value); });
}

HRESULT CQVRCatalogTable::createRecipe(const String& application, Ref<IQVRTableRecipe>* recipe) {
    return guarded([&] {
        // Nobody hears of the new recipe while it is made and named.
        EventFreeze freeze;
        return createChild<CQVRTableRecipe>(
            recipe, [&](CQVRTableRecipe& created) { return created.put_application(application); });
    });
}

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

HRESULT CQVRCatalogTable::newGuid(String* guid) {
    if (!guid) return E_POINTER;
    return guarded([&] {
        *guid = newGuidId();
        return S_OK;
    });
}

// --- Kinds whose classes arrive later ----------------------------------------------------------

namespace {

template <class I>
HRESULT notYet(Ref<I>* out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    return E_NOTIMPL;
}

} // namespace

HRESULT CQVRCatalogTable::createURL(const String&, const String&, const String&,
                                    Ref<IQVRCatalogURL>* url) {
    return notYet(url);
}

HRESULT CQVRCatalogTable::createImage(IQVRCatalogObject*, Ref<IQVRCatalogImage>* image) {
    return notYet(image);
}

HRESULT CQVRCatalogTable::createImages(IQVRCatalogObject*, Ref<IQVRCatalogImages>* images) {
    return notYet(images);
}

HRESULT CQVRCatalogTable::createReferencedFiles(IQVRCatalogObject*,
                                                Ref<IQVRCatalogReferencedFiles>* files) {
    return notYet(files);
}

HRESULT CQVRCatalogTable::createView(QVRViewKey, const String&, const String&, VARIANT_BOOL,
                                     Ref<IQVRTableView>* view) {
    return notYet(view);
}

HRESULT CQVRCatalogTable::createDrawing(const String&, const String&,
                                        Ref<IQVRTableDrawing>* drawing) {
    return notYet(drawing);
}

HRESULT CQVRCatalogTable::createRefCell(const String&, const String&, const String&, const String&,
                                        Ref<IQVRTableRefCell>* cell) {
    return notYet(cell);
}

HRESULT CQVRCatalogTable::createRefColumn(std::int32_t, const String&, const String&, std::int32_t,
                                          std::int32_t, VARIANT_BOOL,
                                          Ref<IQVRTableRefColumn>* column) {
    return notYet(column);
}

HRESULT CQVRCatalogTable::createConstView(QVRViewKey, IQVRCatalogObject*, const String&,
                                          const String&, VARIANT_BOOL,
                                          Ref<IQVRTableConstView>* view) {
    return notYet(view);
}

} // namespace qvr
