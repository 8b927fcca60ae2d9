// A plain column: one text value for each row that has one, in a `Row` cell (CQVRTableCell).
// Its values are read typed by its `dataType`.
#pragma once

#include <qvr/table_cells.h>
#include <qvr/table_columns.h>

#include "tables/holds_cells.h"
#include "tables/table_column_object.h"

namespace qvr {

class CQVRTableColumn final
    : public HoldsCells<TableColumnObject<IQVRTableColumn, qvrTableColumn>, IQVRTableCell> {};

} // namespace qvr
