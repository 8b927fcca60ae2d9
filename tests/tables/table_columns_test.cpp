// Columns: their description, their place among the table's children, and the rows of the cells
// they bring along or take away.
#include "content/classification.h"
#include "core/object_factory.h"
#include "tables/table_fixture.h"

namespace qvr::testing {
namespace {

// Six columns A to F, with a row X that has a cell in each.
struct SixColumns {
    Ref<IQVRCatalogTable> table = newTable();
    SixColumns() {
        for (const char* name : {"A", "B", "C", "D", "E", "F"})
            EXPECT_EQ(addCell(table, addColumn(table, name), "X", Variant(name)), S_OK);
    }
};

// Columns and rows take their places alike (moving forward by an array with the rows); here the
// checks of the arguments, and an array moved backward.
TEST(TableColumns, MoveColumnsByPlaceAndByAnArrayOfPlaces) {
    {
        SixColumns six;
        TableListener listener(six.table);
        ASSERT_EQ(six.table->moveColumns(Variant(std::int32_t(2)), Variant(std::int32_t(5))), S_OK);
        EXPECT_EQ(columnNames(six.table), "A C D B E F");
        EXPECT_EQ(listener.take(), "removed B | inserted B @4");
        // The cells went with their column; the rows neither came nor went.
        EXPECT_EQ(rowKeys(six.table), "X");
    }
    {
        SixColumns six;
        Variant places = Variant::array({Variant(std::int32_t(5)), Variant(std::int32_t(6))});
        ASSERT_EQ(six.table->moveColumns(places, Variant(std::int32_t(2))), S_OK);
        EXPECT_EQ(columnNames(six.table), "A E F B C D");
    }
    {
        SixColumns six;
        // Behind the last column there is nothing to remove.
        EXPECT_EQ(six.table->moveColumns(Variant(std::int32_t(7)), Variant(std::int32_t(1))),
                  E_POINTER);
        EXPECT_EQ(six.table->moveColumns(Variant(std::int32_t(1)), Variant(std::int16_t(0))),
                  E_FAIL);
        EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
        EXPECT_EQ(six.table->moveColumns(Variant(2.0), Variant(std::int32_t(1))), E_INVALIDARG);
        EXPECT_EQ(six.table->moveColumns(Variant(std::int32_t(1)), Variant("B")), E_NOTIMPL);
        // An element that is no place moves nothing; the last element's answer stands.
        Variant places = Variant::array({Variant(std::int32_t(6)), Variant("x")});
        EXPECT_EQ(six.table->moveColumns(places, Variant(std::int32_t(1))), E_NOTIMPL);
        EXPECT_EQ(columnNames(six.table), "F A B C D E");
    }
}

TEST(TableColumns, DescriptionOfAColumn) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> column;
    ASSERT_EQ(table->createColumn(qvrDataTypeFloat, "Length", "L", "", "", VARIANT_TRUE, &column),
              S_OK);
    EXPECT_EQ(childTags(table), "ColumnUnique"); // made, not placed
    Variant id;
    ASSERT_EQ(column->getValue("@id", &id), S_OK);
    EXPECT_EQ(id.str().view().substr(0, 1), "C");
    // Empty texts are not written; without the attribute a column is visible.
    EXPECT_EQ(got(column, &IQVRTableColumn::get_desc), "S_FALSE");
    EXPECT_EQ(got(column, &IQVRTableColumn::get_unit), "S_FALSE");
    EXPECT_EQ(got(column, &IQVRTableColumn::get_attrib), "L");
    VARIANT_BOOL visible = VARIANT_FALSE;
    EXPECT_EQ(column->get_visible(&visible), S_FALSE);
    EXPECT_EQ(visible, VARIANT_TRUE);
    EXPECT_EQ(got(column, &IQVRTableColumn::get_dataType), std::to_string(qvrDataTypeFloat));

    ASSERT_EQ(table->appendChild(column, nullptr), S_OK);
    Ref<IQVRTableColumn> hidden;
    ASSERT_EQ(
        table->createColumn(qvrDataTypeInt, "Count", "", "Pieces", "pc", VARIANT_FALSE, &hidden),
        S_OK);
    ASSERT_EQ(table->appendChild(hidden, nullptr), S_OK);
    EXPECT_EQ(got(hidden, &IQVRTableColumn::get_visible), "0");
    TableListener listener(table);

    // Only -1 is true; a description is never removed; the own id passes, a sibling's doesn't.
    EXPECT_EQ(column->put_visible(1), S_OK);
    Variant flag;
    column->getValue("@visible", &flag);
    EXPECT_EQ(flag, Variant("0"));
    EXPECT_EQ(column->put_desc(""), S_OK);
    EXPECT_EQ(got(column, &IQVRTableColumn::get_desc), "");
    EXPECT_EQ(column->put_id(keyOf(column)), S_OK);
    EXPECT_EQ(listener.take(), "changed Length | changed Length | changed Length");
    EXPECT_EQ(column->put_id(keyOf(hidden)), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(column->put_id(""), E_INVALIDARG);
    EXPECT_EQ(listener.take(), "");

    // A type name that differs by case is no type, and reads as string; cells keep their text.
    ASSERT_EQ(addCell(table, hidden, "A", Variant(std::int32_t(7))), S_OK);
    Ref<IXMLDOMElement> node;
    ASSERT_EQ(hidden->get_domNode(&node), S_OK);
    ASSERT_EQ(node->setAttribute("dataType", "Int"), S_OK);
    EXPECT_EQ(got(hidden, &IQVRTableColumn::get_dataType), std::to_string(qvrDataTypeString));
    EXPECT_EQ(hidden->put_dataType(qvrDataTypeFloat), S_OK);
    EXPECT_EQ(valueAt(table, hidden, "A"), Variant(7.0));
    EXPECT_EQ(hidden->put_dataType(static_cast<QVRColumnDataType>(3)), E_INVALIDARG);

    // A copy has another id, the same name and the same cells, and stands nowhere.
    Ref<IQVRCatalogObject> copy;
    ASSERT_EQ(hidden->cloneNode(VARIANT_TRUE, &copy), S_OK);
    EXPECT_NE(keyOf(copy), keyOf(hidden));
    EXPECT_EQ(nameOf(copy), "Count");
    Ref<IQVRCatalogObjectList> cells;
    ASSERT_EQ(copy->get_childNodes(&cells), S_OK);
    EXPECT_EQ(keysIn(cells), "A");
    Ref<IQVRCatalogObject> parent;
    EXPECT_EQ(copy->get_parentNode(&parent), S_FALSE);

    Ref<IQVRCatalogExtrinsics> extrinsics;
    EXPECT_EQ(column->get_extrinsics(&extrinsics), S_FALSE);
    EXPECT_FALSE(extrinsics);
}

TEST(TableColumns, TheTableRegistersTheRowsOfTheCellsAColumnBringsAndTakes) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> placed = addColumn(table, "Placed");
    ASSERT_EQ(addCell(table, placed, "A", Variant("1")), S_OK);

    // Cells appended to a column that stands nowhere yet make their rows at once.
    Ref<IQVRTableColumn> loose;
    ASSERT_EQ(table->createColumn(qvrDataTypeString, "Loose", "", "", "", VARIANT_TRUE, &loose),
              S_OK);
    ASSERT_EQ(addCell(table, loose, "A", Variant("2")), S_OK);
    ASSERT_EQ(addCell(table, loose, "B", Variant("3")), S_OK);
    EXPECT_EQ(rowKeys(table), "A B");
    TableListener listener(table);
    ASSERT_EQ(table->insertBefore(loose, Variant(std::int32_t(1)), nullptr), S_OK);
    EXPECT_EQ(listener.take(), "inserted Loose @1");
    EXPECT_EQ(columnNames(table), "Loose Placed");
    EXPECT_EQ(valueAt(table, loose, "B"), Variant("3"));

    // A column that leaves takes the rows of which it held the last cell.
    Ref<IQVRCatalogObject> removed;
    ASSERT_EQ(table->removeChild(loose, &removed), S_OK);
    EXPECT_EQ(listener.take(), "removed Row B | removed Loose");
    EXPECT_EQ(rowKeys(table), "A");
    EXPECT_EQ(nameOf(removed), "Loose");

    // The table takes columns and views only, and an id once.
    EXPECT_EQ(table->appendChild(uniqueColumnOf(newTable()), nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can onyl append Columns or Views as a child of this object.");
    EXPECT_EQ(table->appendChild(placed, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(columnNames(table), "Placed");
}

// The Extrinsics of the table stand right behind the unique column; a column's stand first,
// ahead of its cells.
TEST(TableColumns, ExtrinsicsTakeTheirPlaces) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> length = addColumn(table, "Length");
    ASSERT_EQ(addCell(table, length, "A", Variant("1")), S_OK);
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMDocument> document;
    ASSERT_EQ(table->get_domNode(&root), S_OK);
    ASSERT_EQ(root->get_ownerDocument(&document), S_OK);
    Ref<CQVRCatalogExtrinsics> forTable, forColumn;
    ASSERT_EQ(createNewWrapper<CQVRCatalogExtrinsics>(document, table, &forTable), S_OK);
    ASSERT_EQ(createNewWrapper<CQVRCatalogExtrinsics>(document, table, &forColumn), S_OK);
    TableListener listener(table);

    ASSERT_EQ(table->putref_extrinsics(forTable), S_OK);
    EXPECT_EQ(childTags(table), "ColumnUnique Extrinsics Column");
    ASSERT_EQ(length->putref_extrinsics(forColumn), S_OK);
    EXPECT_EQ(childTags(length), "Extrinsics Row");
    EXPECT_EQ(listener.take(), "changed Table | changed Length");
    // Both hand their Extrinsics out as objects, whose changes reach the table's sinks.
    Ref<IQVRCatalogExtrinsics> fromTable, fromColumn;
    ASSERT_EQ(table->get_extrinsics(&fromTable), S_OK);
    ASSERT_EQ(length->get_extrinsics(&fromColumn), S_OK);
    Ref<CQVRCatalogExtrinsic> extra;
    ASSERT_EQ(createNewWrapper<CQVRCatalogExtrinsic>(document, table, &extra), S_OK);
    ASSERT_EQ(extra->put_name("origin"), S_OK);
    listener.take();
    ASSERT_EQ(fromTable->appendChild(extra, nullptr), S_OK);
    EXPECT_EQ(childTags(fromTable), "Extrinsic");
    EXPECT_EQ(listener.take(), "inserted origin");
    Ref<IQVRCatalogObjectList> cells;
    ASSERT_EQ(length->get_childNodes(&cells), S_OK);
    EXPECT_EQ(keysIn(cells), "A"); // the Extrinsics are no cell

    ASSERT_EQ(table->putref_extrinsics(nullptr), S_OK);
    ASSERT_EQ(table->putref_extrinsics(nullptr), S_OK); // nothing to remove, told all the same
    EXPECT_EQ(childTags(table), "ColumnUnique Column");
    EXPECT_EQ(listener.take(), "changed Table | changed Table");
}

} // namespace
} // namespace qvr::testing
