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
    Variant lengthIdref, widthIdref, rowId;
    ASSERT_EQ(length->getValue("Row/@idref", &lengthIdref), S_OK);
    ASSERT_EQ(width->getValue("Row[1]/@idref", &widthIdref), S_OK);
    ASSERT_EQ(uniqueColumnOf(table)->getValue("RowUnique[1]/@id", &rowId), S_OK);
    EXPECT_EQ(lengthIdref, rowId);
    EXPECT_EQ(widthIdref, rowId);
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

} // namespace
} // namespace qvr::testing
