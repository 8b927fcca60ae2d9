// The register of a table's rows (`ColumnUnique`, id "C0", always the first child of the root):
// one `RowUnique` per row, in the order of the rows. Rows are made as a side effect of cells
// entering columns, or explicitly by inserting a row object here; removing a row object here
// takes the row's cells out of every column.
#pragma once

#include <qvr/table_columns.h>

#include "tables/table_column_object.h"

namespace qvr {

class CQVRTableUniqueColumn final
    : public TableColumnObject<IQVRTableUniqueColumn, qvrUniqueColumn> {
public:
    // A row and every cell that names it.
    HRESULT removeChild(IQVRCatalogObject* row, Ref<IQVRCatalogObject>* removed) override;
    HRESULT cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>*) override { return E_NOTIMPL; }
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override {
        if (extrinsics) *extrinsics = nullptr;
        return E_NOTIMPL;
    }
    HRESULT putref_extrinsics(IQVRCatalogObject*) override { return E_NOTIMPL; }

    HRESULT moveRows(const Variant& from, const Variant& to) override;

    // A row that enters gets a new id first (the one it may have had is lost).
    HRESULT insertChild(ChildTool& tool, IQVRCatalogObject* child, const Variant& position,
                        Ref<IQVRCatalogObject>* inserted, const ContainerRow& row) override;

private:
    // Moves the row at the one-based place `from` before the row at `to`, its cells with it.
    HRESULT moveRow(std::int32_t from, std::int32_t to);
};

} // namespace qvr
