// A drawing of a view (`Drawing`): the path or URL of a drawing file of the row's part.
#pragma once

#include <qvr/table_cells.h>

#include "tables/table_cell_object.h"

namespace qvr {

class CQVRTableDrawing final : public ReferenceCellObject<IQVRTableDrawing, qvrDrawing> {};

} // namespace qvr
