// Rows: born with the first cell of a key, shared by the cells of that key in every column, gone
// with the last cell; made and removed explicitly through the unique column; moved with their
// cells.
#include "tables/table_fixture.h"

namespace qvr::testing {
namespace {

TEST(TableRows, ComeWithTheirFirstCellAndGoWithTheirLast) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> length = addColumn(table, "Length");
    Ref<IQVRTableColumn> width = addColumn(table, "Width");
    TableListener listener(table);

    // Making a cell tells of its value, before it has its key; a new key makes a row, heard
    // before the cell's own insertion.
    Ref<IQVRTableCell> cell;
    ASSERT_EQ(table->createCell("A-10", Variant(25.5), &cell), S_OK);
    EXPECT_EQ(listener.take(), "changed Cell");
    ASSERT_EQ(length->appendChild(cell, nullptr), S_OK);
    EXPECT_EQ(listener.take(), "inserted Row A-10 | inserted Cell A-10");
    EXPECT_EQ(rowKeys(table), "A-10");

    // The same key in another column is the same row: both cells name one id.
    ASSERT_EQ(addCell(table, width, "A-10", Variant(4.0)), S_OK);
    ASSERT_EQ(addCell(table, width, "A-20", Variant(5.0)), S_OK);
    EXPECT_EQ(rowKeys(table), "A-10 A-20");
    Variant lengthIdref, widthIdref;
    ASSERT_EQ(length->getValue("Row/@idref", &lengthIdref), S_OK);
    ASSERT_EQ(width->getValue("Row[1]/@idref", &widthIdref), S_OK);
    EXPECT_EQ(lengthIdref, widthIdref);
    EXPECT_TRUE(tableIsWellFormed(table));
    listener.take();

    // The row survives the removal of one of its cells, and goes with the last.
    ASSERT_EQ(length->removeChild(cell, nullptr), S_OK);
    EXPECT_EQ(listener.take(), "removed Cell A-10");
    EXPECT_EQ(rowKeys(table), "A-10 A-20");
    Ref<IQVRTableCellObject> last;
    ASSERT_EQ(rowOf(table, "A-10")->getCell(width, &last), S_OK);
    ASSERT_EQ(width->removeChild(last, nullptr), S_OK);
    // The row is gone when the removal of its last cell is told: that cell has no key to show.
    EXPECT_EQ(listener.take(), "removed Row A-10 | removed Cell");
    EXPECT_EQ(rowKeys(table), "A-20");

    // A removed cell still names its row while the row stands, and its key otherwise.
    EXPECT_EQ(keyOf(cell), "A-10");
}

TEST(TableRows, ASecondCellForARowInOneColumnIsRefusedAndTakenOut) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> length = addColumn(table, "Length");
    ASSERT_EQ(addCell(table, length, "A-10", Variant("1")), S_OK);
    TableListener listener(table);
    Ref<IQVRTableCell> second;
    ASSERT_EQ(table->createCell("A-10", Variant("2"), &second), S_OK);
    listener.take();
    Ref<IQVRCatalogObject> inserted;
    EXPECT_EQ(length->appendChild(second, &inserted), QVR_E_DUPLICATE);
    EXPECT_EQ(lastError(), "The cell is already attached to this object.");
    EXPECT_FALSE(inserted);
    EXPECT_EQ(listener.take(), ""); // nothing was told of the cell that came and went
    EXPECT_TRUE(tableIsWellFormed(table));
    EXPECT_EQ(valueAt(table, length, "A-10"), Variant("1"));
    Ref<IXMLDOMElement> node;
    Ref<IXMLDOMNode> parent;
    ASSERT_EQ(second->get_domNode(&node), S_OK);
    EXPECT_EQ(node->get_parentNode(&parent), S_FALSE);

    // A key that would break the selection is refused by the DOM layer, and the cell taken out.
    Ref<IQVRTableCell> quoted;
    ASSERT_EQ(table->createCell("O'Brien", Variant("3"), &quoted), S_OK);
    EXPECT_EQ(length->appendChild(quoted, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "The value \"O'Brien\" cannot be looked up: it holds an apostrophe, "
                           "which would end the quoted text of the selection.");
    EXPECT_EQ(childTags(length), "Row");
    EXPECT_EQ(rowKeys(table), "A-10");

    // A column takes only cells, and removes only cells.
    EXPECT_EQ(length->appendChild(uniqueColumnOf(table), nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append a Cell as a child of this object.");
    EXPECT_EQ(length->removeChild(uniqueColumnOf(table), nullptr), E_FAIL);
}

TEST(TableRows, TheUniqueColumnMakesRowsWithoutCellsAndRowsChangeTheirKey) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> length = addColumn(table, "Length");
    ASSERT_EQ(addCell(table, length, "A", Variant("1")), S_OK);
    Ref<IQVRTableUniqueColumn> unique = uniqueColumnOf(table);
    TableListener listener(table);

    // A row object for a key that is taken can't even be made.
    Ref<IQVRTableInfoCell> row;
    EXPECT_EQ(table->createInfoCell("A", &row), QVR_E_DUPLICATE);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_FALSE(row);
    ASSERT_EQ(table->createInfoCell("B", &row), S_OK);
    listener.take();
    ASSERT_EQ(unique->insertBefore(row, Variant(std::int32_t(1)), nullptr), S_OK);
    EXPECT_EQ(listener.take(), "inserted Row B @1");
    EXPECT_EQ(rowKeys(table), "B A");
    Variant id;
    ASSERT_EQ(row->getValue("@id", &id), S_OK);
    EXPECT_EQ(id.str().view().substr(0, 1), "R");

    // Only rows go into the unique column, and it has no copies nor extrinsics.
    EXPECT_EQ(unique->appendChild(length, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append a TableInfoCell as child of this object.");
    Ref<IQVRCatalogObject> clone;
    EXPECT_EQ(unique->cloneNode(VARIANT_TRUE, &clone), E_NOTIMPL);
    Ref<IQVRCatalogExtrinsics> extrinsics;
    EXPECT_EQ(unique->get_extrinsics(&extrinsics), E_NOTIMPL);

    // A new key for a row: the same key is no change, another row's key is refused, and the
    // cells of the row follow a new one.
    Ref<IQVRTableInfoCell> a = rowOf(table, "A");
    EXPECT_EQ(a->put_row("A"), S_OK);
    EXPECT_EQ(a->put_row("B"), QVR_E_DUPLICATE);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(listener.take(), "");
    EXPECT_EQ(a->put_row("A-1"), S_OK);
    EXPECT_EQ(listener.take(), "changed Row A-1");
    Ref<IQVRCatalogObjectList> cells;
    ASSERT_EQ(length->get_childNodes(&cells), S_OK);
    EXPECT_EQ(keysIn(cells), "A-1");

    // A cell moves to another row by its key; an unknown key is told.
    Ref<IQVRCatalogObject> cell;
    ASSERT_EQ(cells->getItem(1, &cell), S_OK);
    Ref<IQVRTableCell> value = query<IQVRTableCell>(cell);
    EXPECT_EQ(value->put_row("Z"), S_FALSE);
    EXPECT_EQ(lastError(), "The Row id does not exist. ");
    EXPECT_EQ(value->put_row(""), E_INVALIDARG);
    EXPECT_EQ(value->put_row("B"), S_OK);
    EXPECT_EQ(keyOf(value), "B");
    EXPECT_EQ(listener.take(), "");
    EXPECT_TRUE(tableIsWellFormed(table));
}

// Six rows A to F, with cells in a full column and in one with gaps.
struct SixRows {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableColumn> full = addColumn(table, "Full");
    Ref<IQVRTableColumn> gaps = addColumn(table, "Gaps");
    SixRows() {
        for (const char* key : {"A", "B", "C", "D", "E", "F"})
            EXPECT_EQ(addCell(table, full, key, Variant(key)), S_OK);
        for (const char* key : {"B", "E"}) EXPECT_EQ(addCell(table, gaps, key, Variant(key)), S_OK);
    }
    std::string cellsOf(IQVRCatalogObject* column) {
        Ref<IQVRCatalogObjectList> cells;
        column->get_childNodes(&cells);
        return keysIn(cells);
    }
};

TEST(TableRows, MoveRowsByPlaceAndByAnArrayOfPlaces) {
    {
        SixRows rows;
        TableListener listener(rows.table);
        ASSERT_EQ(uniqueColumnOf(rows.table)
                      ->moveRows(Variant(std::int32_t(2)), Variant(std::int32_t(5))),
                  S_OK);
        EXPECT_EQ(rowKeys(rows.table), "A C D B E F");
        EXPECT_EQ(rows.cellsOf(rows.full), "A C D B E F");
        // In a column with gaps the cell goes to the same place among its own cells: the end.
        EXPECT_EQ(rows.cellsOf(rows.gaps), "E B");
        EXPECT_EQ(listener.take(), "removed Row B | inserted Row B @4 | removed Cell B | "
                                   "inserted Cell B @4 | removed Cell B | inserted Cell B @4");
    }
    {
        SixRows rows;
        Variant places = Variant::array({Variant(std::int32_t(1)), Variant(std::int16_t(2))});
        ASSERT_EQ(uniqueColumnOf(rows.table)->moveRows(places, Variant(std::int32_t(5))), S_OK);
        EXPECT_EQ(rowKeys(rows.table), "C D A B E F");
        EXPECT_EQ(rows.cellsOf(rows.full), "C D A B E F");
        EXPECT_TRUE(tableIsWellFormed(rows.table));
    }
    {
        SixRows rows;
        Ref<IQVRTableUniqueColumn> unique = uniqueColumnOf(rows.table);
        TableListener listener(rows.table);
        // A place behind the last row finds nothing and moves nothing.
        EXPECT_EQ(unique->moveRows(Variant(std::int32_t(7)), Variant(std::int32_t(1))), S_FALSE);
        EXPECT_EQ(listener.take(), "");
        // The arguments are checked as the columns' are (see there).
        EXPECT_EQ(unique->moveRows(Variant(std::int32_t(1)), Variant(std::int32_t(0))), E_FAIL);
        EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
        EXPECT_EQ(unique->moveRows(Variant("A"), Variant(std::int32_t(2))), E_NOTIMPL);
        Variant extremes = Variant::array({Variant(std::int32_t(INT32_MIN)),
                                           Variant(std::int32_t(INT32_MIN)), Variant(INT32_MAX)});
        EXPECT_EQ(unique->moveRows(extremes, Variant(std::int32_t(INT32_MAX))), S_FALSE);
        EXPECT_EQ(unique->moveRows(Variant(std::int32_t(0)), Variant(std::int32_t(1))), S_FALSE);
        EXPECT_EQ(rowKeys(rows.table), "A B C D E F");
    }
}

} // namespace
} // namespace qvr::testing
