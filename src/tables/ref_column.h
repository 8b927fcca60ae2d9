// A reference column (`ColumnRef`): links to outside resources, one `RowRef` cell
// (CQVRTableRefCell) per row that has one, bound to the rows as a plain column's cells are. The
// column tells in XLink words how its links are followed: `role`, and `show` and `actuate`, whose
// undefined values stand for no attribute. It has no data type and no unit.
#pragma once

#include <qvr/table_cells.h>
#include <qvr/table_columns.h>

#include "core/xlink_words.h"
#include "tables/holds_cells.h"
#include "tables/table_column_object.h"

namespace qvr {

inline constexpr const char* roleNames[] = {"br", "img"};

class CQVRTableRefColumn final
    : public HoldsCells<TableColumnObject<IQVRTableRefColumn, qvrRefColumn>, IQVRTableRefCell> {
public:
    HRESULT get_dataType(QVRColumnDataType* dataType) override {
        return dataType ? E_NOTIMPL : E_POINTER;
    }
    HRESULT put_dataType(QVRColumnDataType) override { return E_NOTIMPL; }
    HRESULT get_unit(String* unit) override {
        if (!unit) return E_POINTER;
        *unit = String();
        return E_NOTIMPL;
    }
    HRESULT put_unit(const String&) override { return E_NOTIMPL; }

    HRESULT get_role(std::int32_t* role) override {
        return accessors::getNumberedAttribute(*this, "role", roleNames, qvrRoleBr, role);
    }
    HRESULT put_role(std::int32_t role) override {
        return accessors::putNumberedAttribute(*this, "role", roleNames, role);
    }
    HRESULT get_show(std::int32_t* show) override {
        return accessors::getNumberedAttribute(*this, "show", xlinkShowWords, show);
    }
    HRESULT put_show(std::int32_t show) override {
        return accessors::putNumberedAttributeOrRemove(*this, "show", xlinkShowWords, show,
                                                       qvrShowUndefined);
    }
    HRESULT get_actuate(std::int32_t* actuate) override {
        return accessors::getNumberedAttribute(*this, "actuate", xlinkActuateWords, actuate);
    }
    HRESULT put_actuate(std::int32_t actuate) override {
        return accessors::putNumberedAttributeOrRemove(*this, "actuate", xlinkActuateWords, actuate,
                                                       qvrActuateUndefined);
    }

    // The description of a new reference column, in this order: a new `id`, `name`, `role`,
    // `desc` when not empty, `show` and `actuate` unless undefined, `visible` "0" for a hidden
    // one. Fires nothing; a number that names no word writes nothing.
    HRESULT describeNew(std::int32_t role, const String& name, const String& desc,
                        std::int32_t show, std::int32_t actuate, VARIANT_BOOL visible);
};

} // namespace qvr
