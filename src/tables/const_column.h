// A const column (`ColumnConst`): one value for all rows of the table, in `constant`. It holds no
// cells. A "float" constant is stored under en-US, with a decimal point, and shown to the user in
// the notation of the user's locale; any other is stored as text.
#pragma once

#include <qvr/table_columns.h>

#include "tables/table_column_object.h"

namespace qvr {

class CQVRTableConstColumn final : public TableColumnObject<IQVRTableConstColumn, qvrConstColumn> {
public:
    HRESULT get_constant(String* constant) override;
    HRESULT put_constant(const String& constant) override;
};

} // namespace qvr
