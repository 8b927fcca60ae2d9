// What the formula tests share: a table of bolts with plain, const and calculated columns, made
// through the public API, and a short road from a formula to its value at a row.
#pragma once

#include <string>

#include <qvr/table.h>

#include "tables/table_fixture.h"

namespace qvr::testing {

// A const column, appended to the table.
inline Ref<IQVRTableConstColumn> addConstColumn(IQVRCatalogTable* table, const char* name,
                                                QVRColumnDataType type, const String& constant) {
    Ref<IQVRTableConstColumn> column;
    EXPECT_EQ(table->createConstColumn(type, name, constant, "", "", "", VARIANT_TRUE, &column),
              S_OK);
    EXPECT_EQ(table->appendChild(column, nullptr), S_OK);
    return column;
}

// A calculated column, appended to the table.
inline Ref<IQVRTableCalculatedColumn>
addCalculatedColumn(IQVRCatalogTable* table, const char* name, const String& formula,
                    QVRColumnDataType type = qvrDataTypeFloat) {
    Ref<IQVRTableCalculatedColumn> column;
    EXPECT_EQ(table->createCalculatedColumn(type, name, formula, "", "", "", VARIANT_TRUE, &column),
              S_OK);
    EXPECT_EQ(table->appendChild(column, nullptr), S_OK);
    return column;
}

// Rows A-10 and A-20 (and B-30, which has only a thread), with
//   Length (float)  25.5   40
//   Width (int)     4      (no cell)
//   Thread (string) M8     M10     M12
//   Density (const float) 7.85, and a calculated column "Weight" whose formula each test sets.
class BoltTable : public ::testing::Test {
protected:
    BoltTable() {
        table = newTable("Bolts DIN 933");
        length = addColumn(table, "Length", qvrDataTypeFloat);
        width = addColumn(table, "Width", qvrDataTypeInt);
        thread = addColumn(table, "Thread", qvrDataTypeString);
        density = addConstColumn(table, "Density", qvrDataTypeFloat, "7.85");
        EXPECT_EQ(addCell(table, length, "A-10", Variant(25.5)), S_OK);
        EXPECT_EQ(addCell(table, length, "A-20", Variant(40.0)), S_OK);
        EXPECT_EQ(addCell(table, width, "A-10", Variant(std::int32_t{4})), S_OK);
        EXPECT_EQ(addCell(table, thread, "A-10", Variant("M8")), S_OK);
        EXPECT_EQ(addCell(table, thread, "A-20", Variant("M10")), S_OK);
        EXPECT_EQ(addCell(table, thread, "B-30", Variant("M12")), S_OK);
        weight = addCalculatedColumn(table, "Weight", "");
    }

    // The value of `formula` at `row` (a key text or an index); `status` holds the status.
    Variant at(const String& formula, const Variant& row) {
        EXPECT_EQ(weight->put_expression(formula), S_OK);
        Variant result;
        status = weight->calculate(row, &result);
        return result;
    }
    // The value as text, its type in front: "5 102" for the Double 102.
    std::string shown(const String& formula, const char* row = "A-10") {
        Variant value = at(formula, Variant(row));
        Variant text;
        if (changeType(&text, value, LCID_EN_US, 0, VT_BSTR) != S_OK) text = Variant("?");
        return std::to_string(value.vt()) + " " + text.str().str();
    }

    Ref<IQVRCatalogTable> table;
    Ref<IQVRTableColumn> length, width, thread;
    Ref<IQVRTableConstColumn> density;
    Ref<IQVRTableCalculatedColumn> weight;
    HRESULT status = E_UNEXPECTED;
};

} // namespace qvr::testing
