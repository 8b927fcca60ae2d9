// Calculated columns through the public API: names of plain and const columns replaced by their
// values at a row, rows named by key or by index, the engine's refusals reported with the whole
// story, and the column's own operations.
#include <regex>

#include <qvr/content.h>

#include "formulas/formula_fixture.h"
#include "vbscript/script_engine.h"

namespace qvr::testing {
namespace {

using CalculatedColumn = BoltTable;

TEST_F(CalculatedColumn, NamesStandForTheirValuesAtTheRow) {
    EXPECT_EQ(shown("Length * 2"), "5 51");
    EXPECT_EQ(shown("Length * Width + Density", "A-10"), "5 109.85");
    // Inside a string a name stays; a "string" column's value is quoted, others go in bare.
    EXPECT_EQ(shown("Thread & \" Thread \" & Width"), "8 M8 Thread 4");
    // Names match with case ignored; the lookup uses the name as the column has it.
    EXPECT_EQ(shown("length + WIDTH & thread"), "8 29.5M8");
    // A longer token is not the name.
    EXPECT_EQ(shown("Length2 + Length"), "5 25.5");
    // The column's type does not convert the result, and a formula without names goes as is.
    EXPECT_EQ(shown("(3 + 4) * 2 & \"\""), "8 14");
    // The column itself is a named item.
    EXPECT_EQ(shown("QVRTableCalculatedColumn.Name & \"/\" & QVRTableCalculatedColumn.DataType"),
              "8 Weight/2");
    EXPECT_EQ(status, S_OK);
}

TEST_F(CalculatedColumn, WhatStaysForTheEngine) {
    // No cell for the row, an empty cell and an empty constant leave the name: an unknown word
    // of the engine is Empty.
    EXPECT_EQ(addCell(table, width, "B-30", Variant("")), S_OK);
    addConstColumn(table, "Rate", qvrDataTypeFloat, "");
    EXPECT_EQ(shown("IsEmpty(Width) And IsEmpty(Length)", "A-20"), "11 0");
    EXPECT_EQ(shown("IsEmpty(Width) And IsEmpty(Length) And IsEmpty(Rate)", "B-30"), "11 -1");
    // A name with an apostrophe cannot be looked up: it stays, and the engine reads a comment.
    Ref<IQVRTableColumn> odd = addColumn(table, "O'Brien", qvrDataTypeInt);
    EXPECT_EQ(addCell(table, odd, "A-10", Variant(std::int32_t{5})), S_OK);
    EXPECT_EQ(shown("\"x\" & O'Brien"), "8 x");

    // A value that names a later column is replaced again; a quoted one keeps its quotes.
    Ref<IQVRTableColumn> alias = addColumn(table, "Alias", qvrDataTypeInt);
    Ref<IQVRTableColumn> label = addColumn(table, "Label", qvrDataTypeString);
    Ref<IQVRTableColumn> factor = addColumn(table, "Factor", qvrDataTypeInt);
    EXPECT_EQ(addCell(table, alias, "A-10", Variant("Factor")), S_OK);
    EXPECT_EQ(addCell(table, label, "A-10", Variant("Factor")), S_OK);
    EXPECT_EQ(addCell(table, factor, "A-10", Variant(std::int32_t{3})), S_OK);
    EXPECT_EQ(shown("Alias * 2 & Label"), "8 6Factor");

    // A const column named in the formula without any `constant` ends with S_FALSE and no
    // value; one that is not named is passed over.
    Ref<IXMLDOMElement> element;
    ASSERT_EQ(density->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("constant"), S_OK);
    EXPECT_TRUE(at("Density * 2", Variant("A-10")).isEmpty());
    EXPECT_EQ(status, S_FALSE);
    EXPECT_EQ(shown("Length"), "5 25.5");
    // A column without a name ends every evaluation that reaches it.
    ASSERT_EQ(length->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("name"), S_OK);
    EXPECT_TRUE(at("1", Variant("A-10")).isEmpty());
    EXPECT_EQ(status, S_FALSE);
}

TEST_F(CalculatedColumn, RowsByKeyAndByIndex) {
    ASSERT_EQ(weight->put_expression("Thread"), S_OK);
    Variant result(std::int32_t{9});
    EXPECT_EQ(weight->calculate(Variant(std::int32_t{2}), &result), S_OK);
    EXPECT_EQ(result.str(), "M10");
    EXPECT_EQ(weight->calculate(Variant(3.0), &result), S_OK);
    EXPECT_EQ(result.str(), "M12");

    // The text "0" is a key, the number 0 an index.
    EXPECT_EQ(weight->calculate(Variant("0"), &result), E_INVALIDARG);
    EXPECT_TRUE(result.isEmpty());
    EXPECT_EQ(lastError(), "No object with given id found.");
    EXPECT_EQ(weight->calculate(Variant(std::int32_t{0}), &result), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
    EXPECT_EQ(weight->calculate(Variant(std::int16_t{4}), &result), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index is out of range.");
    EXPECT_EQ(addCell(table, thread, "0", Variant("M0")), S_OK);
    EXPECT_EQ(weight->calculate(Variant("0"), &result), S_OK);
    EXPECT_EQ(result.str(), "M0");
    // A failed conversion comes back without a message; a left-out row is its error number.
    EXPECT_EQ(weight->calculate(Variant::null(), &result), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(weight->calculate(Variant::missing(), &result), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
    EXPECT_EQ(weight->calculate(Variant("A-10"), nullptr), E_POINTER);

    // An empty formula gives nothing, also for a row that only the unique column knows.
    Ref<IQVRTableInfoCell> bare;
    ASSERT_EQ(table->createInfoCell("Z-1", &bare), S_OK);
    ASSERT_EQ(uniqueColumnOf(table)->appendChild(bare, nullptr), S_OK);
    ASSERT_EQ(weight->put_expression(""), S_OK);
    EXPECT_EQ(weight->calculate(Variant("Z-1"), &result), S_OK);
    EXPECT_TRUE(result.isEmpty());
    // No formula at all: S_FALSE.
    Ref<IXMLDOMElement> element;
    ASSERT_EQ(weight->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("expression"), S_OK);
    EXPECT_EQ(weight->calculate(Variant("A-10"), &result), S_FALSE);
}

TEST_F(CalculatedColumn, RefusedFormulasTellTheWholeStory) {
    // The table hangs under a part: its description and the part's name are named.
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPart> part;
    ASSERT_EQ(catalog->createPart("Hexagon bolt", &part), S_OK);
    ASSERT_EQ(table->putref_parentNode(part), S_OK);

    EXPECT_TRUE(at("Length + * Thread", Variant("A-10")).isEmpty());
    EXPECT_EQ(status, vbscript::OLESCRIPT_E_SYNTAX);
    ErrorInfo info;
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(info.description.str(),
              "Expected expression while interpreting Formula in calulated column.\n\n"
              "Formula: Length + * Thread\n"
              "Evaluated :25.5 + * \"M8\"\n"
              "Column Name: Weight\n"
              "Table : Bolts DIN 933\n"
              "Part: Hexagon bolt\n");
    EXPECT_EQ(info.source, "QVRCatalog.CalculatedColumn");
    EXPECT_EQ(info.interface, "IQVRTableCalculatedColumn");

    // A fault at run time, in a table without a parent: nothing behind the last two labels. A
    // quote in a "string" value is pasted as it is and unbalances the text.
    ASSERT_EQ(table->putref_parentNode(nullptr), S_OK);
    at("Length / (Width - 4)", Variant("A-10"));
    EXPECT_EQ(status, DISP_E_EXCEPTION);
    EXPECT_EQ(lastError(), "Division by zero while interpreting Formula in calulated column.\n\n"
                           "Formula: Length / (Width - 4)\nEvaluated :25.5 / (4 - 4)\n"
                           "Column Name: Weight\nTable : Bolts DIN 933\nPart: \n");
    EXPECT_EQ(addCell(table, thread, "Q-1", Variant("1/2\"")), S_OK);
    at("Thread", Variant("Q-1"));
    EXPECT_EQ(status, vbscript::OLESCRIPT_E_SYNTAX);
    EXPECT_NE(lastError().find("Evaluated :\"1/2\"\"\n"), std::string::npos);
}

TEST_F(CalculatedColumn, ItsOwnOperations) {
    // Made in the order formula, id, type, name, attrib; desc, unit and a hidden flag only when
    // they are given.
    Ref<IQVRTableCalculatedColumn> made;
    ASSERT_EQ(table->createCalculatedColumn(qvrDataTypeInt, "Count", "1 + 1", "A", "", "pcs",
                                            VARIANT_FALSE, &made),
              S_OK);
    Ref<IXMLDOMElement> element;
    ASSERT_EQ(made->get_domNode(&element), S_OK);
    String xml;
    ASSERT_EQ(element->get_xml(&xml), S_OK);
    EXPECT_TRUE(std::regex_match(xml.str(),
                                 std::regex("<ColumnCalc expression=\"1 \\+ 1\" id=\"C[0-9a-f]+\" "
                                            "dataType=\"int\" name=\"Count\" attrib=\"A\" "
                                            "unit=\"pcs\" visible=\"0\"/>")))
        << xml;

    // A change of the formula is told, and nothing is checked.
    TableListener listener(table);
    EXPECT_EQ(weight->put_expression("1 +"), S_OK);
    EXPECT_EQ(listener.take(), "changed Weight");
}

} // namespace
} // namespace qvr::testing
