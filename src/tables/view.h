// A view (`ColumnView`): a column of drawings, one `Drawing` cell (CQVRTableDrawing) per row
// that has one, all showing the row's part from the side of the view. Its drawings are bound to
// the rows as the cells of a plain column are, so a row can come into being through a drawing
// alone, and goes with its last cell whatever its kind.
#pragma once

#include <qvr/table_cells.h>
#include <qvr/table_columns.h>

#include "tables/holds_cells.h"
#include "tables/table_view_object.h"

namespace qvr {

class CQVRTableView final
    : public HoldsCells<TableViewObject<IQVRTableView, qvrView>, IQVRTableDrawing> {};

} // namespace qvr
