// A const view (`ColumnConstView`): a view with no drawing per row. It holds `Recipe` children
// instead (CQVRTableRecipe), keyed by their application, and never gives up its last one. Its
// recipes are no cells: the table leaves the rows alone when it comes and goes.
#pragma once

#include <qvr/table_columns.h>

#include "tables/table_view_object.h"

namespace qvr {

class CQVRTableConstView final : public TableViewObject<IQVRTableConstView, qvrConstView> {};

} // namespace qvr
