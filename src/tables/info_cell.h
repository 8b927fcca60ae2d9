// A row of a table (`RowUnique` in the unique column): its text is the row's key, its `id` what
// the cells of the row name in `idref`. From it the cell of the row in any column is found.
#pragma once

#include <qvr/table_cells.h>

#include "tables/table_cell_object.h"

namespace qvr {

class CQVRTableInfoCell final : public TableCellObject<IQVRTableInfoCell, qvrInfoCell> {
public:
    // A row's own id, not a reference: no check, no event.
    HRESULT put_idref(const String& id) override;
    // A new key for the row, refused when another row has it; the cells follow by their id.
    HRESULT put_row(const String& row) override;
    HRESULT getCell(IQVRCatalogObject* column, Ref<IQVRTableCellObject>* cell) override;
};

} // namespace qvr
