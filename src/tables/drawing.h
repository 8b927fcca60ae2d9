// A drawing of a view (`Drawing`): the path or URL of a drawing file of the row's part, stored as
// documents store file references.
#pragma once

#include <qvr/table_cells.h>

#include "core/accessors.h"
#include "tables/table_cell_object.h"

namespace qvr {

class CQVRTableDrawing final : public TableCellObject<IQVRTableDrawing, qvrDrawing> {
public:
    HRESULT get_value(String* value) override { return accessors::getReferenceText(*this, value); }
    HRESULT put_value(const String& value) override {
        return accessors::putReferenceText(*this, value);
    }
};

} // namespace qvr
