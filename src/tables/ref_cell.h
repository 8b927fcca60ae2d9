// A link of a reference column (`RowRef`): the path or URL it leads to, with a description and a
// title that are written only when not empty.
#pragma once

#include <qvr/table_cells.h>

#include "core/accessors.h"
#include "tables/table_cell_object.h"

namespace qvr {

class CQVRTableRefCell final : public ReferenceCellObject<IQVRTableRefCell, qvrRefCell> {
public:
    HRESULT get_desc(String* desc) override { return accessors::getAttribute(*this, "desc", desc); }
    HRESULT put_desc(const String& desc) override {
        return accessors::putClearableAttribute(*this, "desc", desc);
    }
    HRESULT get_title(String* title) override {
        return accessors::getAttribute(*this, "title", title);
    }
    HRESULT put_title(const String& title) override {
        return accessors::putClearableAttribute(*this, "title", title);
    }
};

} // namespace qvr
