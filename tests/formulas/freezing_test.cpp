// Freezing: every calculated column becomes a plain column of its values at each row, with its
// description and a new id, standing where it stood.
#include <regex>

#include "formulas/formula_fixture.h"

namespace qvr::testing {
namespace {

using Freezing = BoltTable;

std::string attributeOf(IQVRCatalogObject* object, const char* name) {
    Variant value;
    return object->getValue(String("@") + name, &value) == S_OK ? value.str().str() : "(none)";
}

// The column of the table called `name`.
Ref<IQVRCatalogObject> columnNamed(IQVRCatalogTable* table, const char* name) {
    Ref<IQVRCatalogObjectList> columns;
    table->get_childNodes(&columns);
    for (Ref<IQVRCatalogObject> column : *columns)
        if (nameOf(column) == name) return column;
    return nullptr;
}

TEST_F(Freezing, MakesPlainColumnsOfTheValues) {
    ASSERT_EQ(weight->put_expression("Length * Density"), S_OK);
    ASSERT_EQ(weight->put_desc("Mass"), S_OK);
    ASSERT_EQ(weight->put_unit("kg"), S_OK);
    ASSERT_EQ(weight->put_attrib("W"), S_OK);
    ASSERT_EQ(weight->put_visible(VARIANT_FALSE), S_OK);
    // Frozen in document order: a later formula sees the values of an earlier frozen column,
    // which as a calculated column it could not name.
    Ref<IQVRTableCalculatedColumn> twice = addCalculatedColumn(table, "Twice", "Weight * 2");
    Ref<IQVRTableCalculatedColumn> before = addCalculatedColumn(table, "Before", "Twice + 1");
    ASSERT_EQ(table->moveColumns(Variant(std::int32_t{7}), Variant(std::int32_t{5})), S_OK);
    ASSERT_EQ(columnNames(table), "Length Width Thread Density Before Weight Twice");
    const std::string oldId = keyOf(weight);

    // While a column freezes its twin already stands before it, filling cell by cell.
    std::vector<std::string> tagsWhileFilling;
    TableListener listener(table);
    listener.sink().whenCalled = [&] {
        if (listener.sink().heard.back() == "inserted Cell A-20")
            tagsWhileFilling.push_back(childTags(table));
    };
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(table->freezeCalculatedColumns(&ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    ASSERT_EQ(tagsWhileFilling.size(), 3u);
    EXPECT_EQ(tagsWhileFilling[1],
              "ColumnUnique Column Column Column ColumnConst Column Column ColumnCalc ColumnCalc");

    EXPECT_EQ(columnNames(table), "Length Width Thread Density Before Weight Twice");
    Ref<IQVRCatalogObject> frozen = columnNamed(table, "Weight");
    QVRObjectType type = qvrCatalog;
    ASSERT_EQ(frozen->get_objectType(&type), S_OK);
    EXPECT_EQ(type, qvrTableColumn);
    EXPECT_NE(keyOf(frozen), oldId);
    EXPECT_EQ(attributeOf(frozen, "dataType"), "float");
    EXPECT_EQ(attributeOf(frozen, "desc"), "Mass");
    EXPECT_EQ(attributeOf(frozen, "unit"), "kg");
    EXPECT_EQ(attributeOf(frozen, "attrib"), "W");
    EXPECT_EQ(attributeOf(frozen, "visible"), "0");
    EXPECT_EQ(attributeOf(frozen, "expression"), "(none)");
    // Values as the engine gave them, written as float text; a row without a length computes
    // Empty × 7.85.
    EXPECT_DOUBLE_EQ(valueAt(table, frozen, "A-10").r8(), 25.5 * 7.85);
    EXPECT_DOUBLE_EQ(valueAt(table, frozen, "A-20").r8(), 40 * 7.85);
    EXPECT_EQ(valueAt(table, frozen, "B-30").r8(), 0.0);
    EXPECT_DOUBLE_EQ(valueAt(table, columnNamed(table, "Twice"), "A-20").r8(), 40 * 7.85 * 2);
    // "Before" was frozen first, when "Twice" was still calculated: Empty + 1.
    EXPECT_EQ(valueAt(table, columnNamed(table, "Before"), "A-20").r8(), 1.0);

    // Nothing left to freeze.
    ASSERT_EQ(table->freezeCalculatedColumns(&ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    EXPECT_EQ(table->freezeCalculatedColumns(nullptr), E_POINTER);
}

TEST_F(Freezing, StopsAtTheFirstFailure) {
    // The third row divides by zero: the twin goes again, the column stays; a column frozen
    // before stays frozen.
    Ref<IQVRTableCalculatedColumn> first = addCalculatedColumn(table, "First", "Length + 1");
    ASSERT_EQ(table->moveColumns(Variant(std::int32_t{6}), Variant(std::int32_t{1})), S_OK);
    ASSERT_EQ(weight->put_expression("1 / Len(Width)"), S_OK);
    ClearErrorInfo();
    VARIANT_BOOL ok = VARIANT_TRUE;
    EXPECT_EQ(table->freezeCalculatedColumns(&ok), DISP_E_EXCEPTION);
    EXPECT_EQ(ok, VARIANT_FALSE);
    EXPECT_NE(lastError().find("Division by zero"), std::string::npos);
    EXPECT_EQ(columnNames(table), "First Length Width Thread Density Weight");
    QVRObjectType type = qvrCatalog;
    columnNamed(table, "First")->get_objectType(&type);
    EXPECT_EQ(type, qvrTableColumn);
    columnNamed(table, "Weight")->get_objectType(&type);
    EXPECT_EQ(type, qvrCalculatedColumn);
    EXPECT_EQ(rowKeys(table), "A-10 A-20 B-30");
    EXPECT_TRUE(tableIsWellFormed(table));
}

TEST(FreezingWithoutRows, AnswersFalseAndKeepsTheColumns) {
    Ref<IQVRCatalogTable> table = newTable();
    addColumn(table, "Length", qvrDataTypeFloat);
    VARIANT_BOOL ok = VARIANT_FALSE;
    // Nothing to freeze is success.
    EXPECT_EQ(table->freezeCalculatedColumns(&ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    Ref<IQVRTableCalculatedColumn> calc = addCalculatedColumn(table, "Weight", "Length * 2");
    EXPECT_EQ(table->freezeCalculatedColumns(&ok), S_FALSE);
    EXPECT_EQ(ok, VARIANT_FALSE);
    EXPECT_EQ(childTags(table), "ColumnUnique Column ColumnCalc");

    // A table without a document.
    Ref<IQVRCatalogTable> empty;
    ASSERT_EQ(CreateCatalogTable(&empty), S_OK);
    EXPECT_EQ(empty->freezeCalculatedColumns(&ok), E_FAIL);
    EXPECT_EQ(lastError(), "Internal error.\n\nObject not initialized.");
}

// With no one listening a freeze writes its cells itself, following the rows in step; it must
// leave exactly the table that making and appending each cell through the table leaves, which
// is what it does while someone listens.
TEST(FreezingUnheard, LeavesWhatTheTableWouldLeave) {
    // Column A lacks a cell for R2 (a second column A has it), holds R5's cell before R4's and a
    // non-cell with an idref; B has two cells for R3, one before R2's; the texts are words,
    // signed numbers and spaced text; V names its own column, which fills while it freezes.
    const std::string body =
        R"(<ColumnUnique id="C0"><RowUnique id="R1">K1</RowUnique><RowUnique id="R2">K2</RowUnique>)"
        R"(<RowUnique id="R3">K3</RowUnique><RowUnique id="R4">K4</RowUnique>)"
        R"(<RowUnique id="R5">K5</RowUnique></ColumnUnique>)"
        R"(<Column id="C1" name="A" dataType="float"><Note idref="R1">9</Note><Row idref="R1">2.5</Row>)"
        R"(<Row idref="R3">-3</Row><Row idref="R5">1e3</Row><Row idref="R4">abc</Row></Column>)"
        R"(<Column id="C2" name="S" dataType="string"><Row idref="R1">x y</Row><Row idref="R2">M8</Row>)"
        R"(<Row idref="R3"></Row><Row idref="R4">e3</Row><Row idref="R5">a,b</Row></Column>)"
        R"(<Column id="C3" name="A" dataType="int"><Row idref="R2">7</Row></Column>)"
        R"(<ColumnConst id="C4" name="K" dataType="float" constant="10"/>)"
        R"(<Column id="C7" name="B" dataType="int"><Row idref="R1">1</Row><Row idref="R3">30</Row>)"
        R"(<Row idref="R2">2</Row><Row idref="R3">31</Row></Column>)"
        R"(<ColumnCalc id="C5" name="W" dataType="float" expression="A * 2 + K + B"/>)"
        R"(<ColumnCalc id="C6" name="V" dataType="string" expression="A &amp; &quot;-&quot; &amp; S &amp; V &amp; W"/>)";
    const std::string duplicateKey =
        R"(<ColumnUnique id="C0"><RowUnique id="R1">K1</RowUnique><RowUnique id="R2">K1</RowUnique>)"
        R"(</ColumnUnique><Column id="C1" name="A" dataType="int"><Row idref="R1">1</Row>)"
        R"(<Row idref="R2">2</Row></Column><ColumnCalc id="C2" name="W" dataType="int" expression="A + 1"/>)";
    for (const std::string& xml : {body, duplicateKey}) {
        std::string answers[2];
        for (int listening = 0; listening < 2; ++listening) {
            Ref<IQVRCatalogTable> table;
            ASSERT_EQ(CreateCatalogTable(&table), S_OK);
            VARIANT_BOOL ok = VARIANT_FALSE;
            ASSERT_EQ(
                table->loadXML("<vCATTable version=\"1.2\">" + xml + "</vCATTable>", "", 0, &ok),
                S_OK);
            std::unique_ptr<TableListener> listener;
            if (listening) listener = std::make_unique<TableListener>(table);
            const HRESULT hr = table->freezeCalculatedColumns(&ok);
            String text;
            table->get_xml(&text);
            // The frozen columns' new ids differ from run to run.
            answers[listening] =
                std::to_string(hr) + " " + std::to_string(ok) + " " +
                std::regex_replace(text.str(), std::regex("id=\"C[0-9a-f]{3,}\""), "id=\"new\"");
        }
        EXPECT_EQ(answers[0], answers[1]);
    }
}

} // namespace
} // namespace qvr::testing
