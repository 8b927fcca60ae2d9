// A calculated column keeps what it made for one calculation (the columns as listed, the formula
// compiled) for the next: every change to the table between two calculations, with the formula
// left as it is, must still show in the value.
#include <functional>

#include "formulas/formula_fixture.h"

namespace qvr::testing {
namespace {

using CalculationAfterChanges = BoltTable;

TEST_F(CalculationAfterChanges, EachChangeShowsInTheNextValue) {
    ASSERT_EQ(weight->put_expression("Length * Width + Density & \" \" & TypeName(Length)"), S_OK);
    auto value = [&](const char* row = "A-10") {
        Variant result;
        EXPECT_EQ(weight->calculate(Variant(row), &result), S_OK) << row;
        return result.str().str();
    };
    EXPECT_EQ(value(), "109.85 Double");
    EXPECT_EQ(value("A-20"), "7.85 Integer"); // no width cell: Width stays, and is Empty
    auto widthCell = [&] {
        Ref<IQVRTableCellObject> cell;
        EXPECT_EQ(rowOf(table, "A-10")->getCell(width, &cell), S_OK);
        return query<IQVRTableCell>(cell);
    };

    struct Step {
        const char* change;
        std::function<HRESULT()> make;
        const char* expected;
    };
    Ref<IQVRTableColumn> extra;
    const Step steps[] = {
        {"a cell's value", [&] { return widthCell()->put_value(Variant(std::int32_t{2})); },
         "58.85 Double"},
        {"a constant", [&] { return density->put_constant("1"); }, "52 Double"},
        {"a column renamed away", [&] { return width->put_name("W"); }, "1 Double"},
        {"a column named into the formula",
         [&] {
             extra = addColumn(table, "Width", qvrDataTypeInt);
             return addCell(table, extra, "A-10", Variant(3));
         },
         "77.5 Double"},
        {"that column removed", [&] { return table->removeChild(extra, nullptr); }, "1 Double"},
        {"the first renamed back", [&] { return width->put_name("Width"); }, "52 Double"},
        // A "string" column's value goes in quoted.
        {"a type", [&] { return length->put_dataType(qvrDataTypeString); }, "52 String"},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.change);
        ASSERT_EQ(step.make(), S_OK);
        EXPECT_EQ(value(), step.expected);
    }
}

} // namespace
} // namespace qvr::testing
