// The data both table benchmarks fill their tables with, so that their figures describe the same
// table: ten columns whose first holds text, the odd ones floating numbers and the even ones
// integers, and rows keyed "P-0", "P-1", ...
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <qvr/table.h>

namespace qvr::bench {

inline QVRColumnDataType typeOfColumn(int c) {
    return c == 0 ? qvrDataTypeString : c % 2 ? qvrDataTypeFloat : qvrDataTypeInt;
}

inline std::string keyOfRow(int r) {
    return "P-" + std::to_string(r);
}

inline Variant valueAt(int r, int c) {
    switch (typeOfColumn(c)) {
    case qvrDataTypeString: return Variant("M" + std::to_string(r % 97));
    case qvrDataTypeFloat: return Variant(r * 0.5 + c);
    default: return Variant(static_cast<std::int32_t>(r + c));
    }
}

// A new table holding `count` plain columns "Col0", "Col1", ... of the types above, appended in
// order (so that cells appended later find their rows through the table's indexes).
inline Ref<IQVRCatalogTable> tableWithColumns(int count,
                                              std::vector<Ref<IQVRTableColumn>>* columns) {
    Ref<IQVRCatalogTable> table;
    CreateCatalogTable(&table);
    VARIANT_BOOL ok = VARIANT_FALSE;
    table->create("/tmp/", "Bench", "en", &ok);
    for (int c = 0; c < count; ++c) {
        Ref<IQVRTableColumn> column;
        table->createColumn(typeOfColumn(c), "Col" + std::to_string(c), "", "", "", VARIANT_TRUE,
                            &column);
        table->appendChild(column, nullptr);
        columns->push_back(column);
    }
    return table;
}

} // namespace qvr::bench
