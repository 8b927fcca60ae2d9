// The value of one row in a plain column (`Row`). Values are written locale-neutrally and read
// typed by the column that holds the cell: "int" under the user's locale, "float" under en-US,
// "string" as it stands. A cell outside any column reads as its text.
#pragma once

#include <qvr/table_cells.h>

#include "tables/table_cell_object.h"

namespace qvr {

class CQVRTableCell final : public TableCellObject<IQVRTableCell, qvrCell> {
public:
    HRESULT get_value(Variant* value) override;
    HRESULT put_value(const Variant& value) override;
};

} // namespace qvr
