// Cells and recipes: values written locale-neutrally and read typed by their column, the row
// object's view of a row's cells, and recipes made without a word to the sinks.
#include "common/user_locale.h"
#include "tables/table_fixture.h"

namespace qvr::testing {
namespace {

std::string storedText(IQVRCatalogTable* table, IQVRCatalogObject* column, const char* key) {
    Ref<IQVRTableCellObject> cell;
    Ref<IXMLDOMElement> node;
    String text;
    if (rowOf(table, key)->getCell(column, &cell) == S_OK && cell->get_domNode(&node) == S_OK)
        node->get_text(&text);
    return text.str();
}

TEST(TableCells, ValuesAreWrittenNeutrallyAndReadTypedByTheirColumn) {
    for (LCID lcid : {LCID_EN_US, LCID_DE_DE}) {
        SCOPED_TRACE(lcid);
        UserLocale locale(lcid);
        Ref<IQVRCatalogTable> table = newTable();
        Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeFloat);
        Ref<IQVRTableColumn> count = addColumn(table, "Count", qvrDataTypeInt);
        Ref<IQVRTableColumn> name = addColumn(table, "Name");

        // A float keeps its point under any locale, and reads back as that float.
        ASSERT_EQ(addCell(table, length, "A", Variant(25.5)), S_OK);
        EXPECT_EQ(storedText(table, length, "A"), "25.5");
        EXPECT_EQ(valueAt(table, length, "A"), Variant(25.5));
        // A float column reads its texts as en-US writes them.
        ASSERT_EQ(addCell(table, length, "B", Variant("1,250.5")), S_OK);
        EXPECT_EQ(valueAt(table, length, "B"), Variant(1250.5));

        // An int column reads under the user's locale: "1.234" is 1 in en-US, 1234 in de-DE.
        ASSERT_EQ(addCell(table, count, "A", Variant(std::int32_t(42))), S_OK);
        EXPECT_EQ(valueAt(table, count, "A"), Variant(std::int32_t(42)));
        ASSERT_EQ(addCell(table, count, "B", Variant("1.234")), S_OK);
        EXPECT_EQ(valueAt(table, count, "B"), Variant(std::int32_t(lcid == LCID_DE_DE ? 1234 : 1)));

        // A text an int column can't read: the conversion's failure, and the text.
        ASSERT_EQ(addCell(table, count, "C", Variant("many")), S_OK);
        Ref<IQVRTableCellObject> cell;
        ASSERT_EQ(rowOf(table, "C")->getCell(count, &cell), S_OK);
        Variant value;
        EXPECT_EQ(query<IQVRTableCell>(cell)->get_value(&value), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(value, Variant("many"));

        // A string column gives the text; so does a cell that stands in no column.
        ASSERT_EQ(addCell(table, name, "A", Variant(2.5)), S_OK);
        EXPECT_EQ(valueAt(table, name, "A"), Variant("2.5"));
        Ref<IQVRTableCell> loose;
        ASSERT_EQ(table->createCell("D", Variant(std::int32_t(5)), &loose), S_OK);
        ASSERT_EQ(loose->get_value(&value), S_OK);
        EXPECT_EQ(value, Variant("5"));
        EXPECT_EQ(keyOf(loose), "D");
    }
}

TEST(TableCells, TheRowObjectFindsTheCellOfItsRowInAColumn) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> length = addColumn(table, "Length");
    Ref<IQVRTableColumn> width = addColumn(table, "Width");
    ASSERT_EQ(addCell(table, length, "A", Variant("1")), S_OK);
    ASSERT_EQ(addCell(table, width, "B", Variant("2")), S_OK);
    Ref<IQVRTableInfoCell> row = rowOf(table, "A");

    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(row->getCell(length, &cell), S_OK);
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(cell->get_parentNode(&parent), S_OK);
    EXPECT_EQ(nameOf(parent), "Length");
    EXPECT_EQ(row->getCell(width, &cell), S_FALSE); // a gap
    EXPECT_FALSE(cell);
    EXPECT_EQ(row->getCell(uniqueColumnOf(table), &cell), E_UNEXPECTED);
    EXPECT_EQ(row->getCell(table, &cell), E_UNEXPECTED);
    EXPECT_EQ(row->getCell(nullptr, &cell), E_INVALIDARG);
    EXPECT_EQ(row->getCell(length, nullptr), E_POINTER);

    // Cells and rows are leaves without copies.
    Ref<IQVRCatalogObject> inserted, clone;
    EXPECT_EQ(row->appendChild(cell, &inserted), E_POINTER);
    ASSERT_EQ(row->getCell(length, &cell), S_OK);
    EXPECT_EQ(row->appendChild(cell, &inserted), S_FALSE);
    EXPECT_EQ(cell->cloneNode(VARIANT_TRUE, &clone), E_NOTIMPL);
    EXPECT_EQ(row->cloneNode(VARIANT_TRUE, &clone), E_NOTIMPL);
}

TEST(TableCells, RecipesAreMadeWithoutAWordToTheSinks) {
    Ref<IQVRCatalogTable> table = newTable();
    TableListener listener(table);
    Ref<IQVRTableRecipe> recipe;
    ASSERT_EQ(table->createRecipe("CAD", &recipe), S_OK);
    EXPECT_EQ(listener.take(), "");
    EXPECT_EQ(keyOf(recipe), "CAD");
    EXPECT_EQ(got(recipe, &IQVRTableRecipe::get_objectType), std::to_string(qvrRecipe));

    EXPECT_EQ(recipe->put_application(String()), E_POINTER);
    EXPECT_EQ(recipe->put_application(""), S_OK);
    EXPECT_EQ(got(recipe, &IQVRTableRecipe::get_application), "");
    // A URL path stays as it is (paths of files: with the const views).
    EXPECT_EQ(recipe->put_path("http://host/bolt.rcp"), S_OK);
    EXPECT_EQ(got(recipe, &IQVRTableRecipe::get_path), "http://host/bolt.rcp");
    EXPECT_EQ(listener.take(), "changed Recipe | changed Recipe");
}

} // namespace
} // namespace qvr::testing
