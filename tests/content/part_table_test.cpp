// A part's table through the public API: opening it by its reference, the catalog's cache behind
// it, moving and attaching tables, and the copy a deep clone takes along.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_in_folder.h"

namespace qvr::testing {
namespace {

using PartTable = CatalogInFolder;

TEST_F(PartTable, OpensByReference) {
    Ref<IQVRCatalogTable> table;

    // An empty reference: no table, no message, nothing in the cache.
    lastError();
    CreateCatalogTable(&table); // the out value is cleared
    EXPECT_EQ(part->getTable(0, &table), S_FALSE);
    EXPECT_FALSE(table);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(part->getTable(0, nullptr), E_POINTER);

    // A missing file: the answer of the load, and its message.
    ASSERT_EQ(part->put_tableRef("missing.xml"), S_OK);
    EXPECT_EQ(part->getTable(0, &table), S_FALSE);
    EXPECT_FALSE(table);
    EXPECT_NE(lastError().find("missing.xml"), std::string::npos);
    EXPECT_EQ(openCount(), 0);

    // A relative reference resolves against the catalog's base.
    writeTable("tables/m8.xml", "M8 bolts");
    ASSERT_EQ(part->put_tableRef("tables/m8.xml"), S_OK);
    table = openTable();
    EXPECT_EQ(descOf(table), "M8 bolts");
    EXPECT_EQ(urlOf(table), fileUrl(path("tables/m8.xml")));
    EXPECT_EQ(keyOf(table), keyOf(part) + "T");
    EXPECT_EQ(cachedKeys(), keyOf(part) + "T");
    // Attached: the catalog is its catalog, the part its parent.
    Ref<IQVRCatalogObject> linked, parent;
    EXPECT_EQ(table->get_catalog(&linked), S_OK);
    EXPECT_EQ(linked.get(), static_cast<IQVRCatalogObject*>(catalog.get()));
    EXPECT_EQ(table->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(part));

    // An absolute path stands as it is.
    Ref<IQVRCatalogPart> other = newPart(catalog, "M10");
    writeTable("elsewhere/m10.xml", "M10 bolts");
    ASSERT_EQ(other->put_tableRef(String(path("elsewhere/m10.xml"))), S_OK);
    EXPECT_EQ(descOf(openTable(other)), "M10 bolts");
    EXPECT_EQ(openCount(), 2);
}

TEST_F(PartTable, TwoRequestsShareOneDocument) {
    writeTable("m8.xml");
    part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> first = openTable(), second = openTable();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first.get(), second.get());

    // What one changes, the other sees: a property, a new column, a cell's value.
    EXPECT_EQ(first->put_desc("Changed"), S_OK);
    EXPECT_EQ(descOf(second), "Changed");
    addColumn(first, "Head");
    EXPECT_EQ(columnNames(second), "Length Head");
    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(rowOf(first, "A")->getCell(firstColumn(first), &cell), S_OK);
    EXPECT_EQ(query<IQVRTableCell>(cell)->put_value(Variant(25)), S_OK);
    EXPECT_EQ(valueAt(second, firstColumn(second), "A").i4(), 25);
    EXPECT_EQ(openCount(), 1);

    // A held table object outlives its entry; a new reference drops the entry, the same one
    // keeps it.
    EXPECT_EQ(part->put_tableRef("m8.xml"), S_OK);
    EXPECT_EQ(openCount(), 1);
    EXPECT_EQ(part->put_tableRef("other.xml"), S_OK);
    EXPECT_EQ(openCount(), 0);
    EXPECT_EQ(descOf(first), "Changed");
}

TEST_F(PartTable, AttachTable) {
    Listener heard(catalog);

    // A table without an address can't be referred to.
    Ref<IQVRCatalogTable> unsaved = newTable();
    EXPECT_EQ(part->attachTable(unsaved), E_FAIL);
    EXPECT_EQ(lastError(), "You tried to attach a table with unknown URL.");
    EXPECT_EQ(openCount(), 0);
    EXPECT_EQ(part->attachTable(nullptr), E_INVALIDARG);
    EXPECT_EQ(heard.take(), "");

    // A saved one: the reference becomes its URL, the part its parent, and it is open.
    Ref<IQVRCatalogTable> first = writeTable("first.xml", "First");
    EXPECT_EQ(part->attachTable(first), S_OK);
    String reference;
    part->get_tableRef(&reference);
    EXPECT_EQ(reference.str(), path("first.xml"));
    EXPECT_EQ(keyOf(first), keyOf(part) + "T");
    EXPECT_EQ(heard.take(), "changed M8");
    first->put_footNote("Attached"); // the table's changes now reach the catalog
    EXPECT_EQ(heard.take(), "changed #31");

    // A second table under the same key and URL is refused; the first stays.
    Ref<IQVRCatalogTable> second = writeTable("first.xml", "Second");
    EXPECT_EQ(part->attachTable(second), S_FALSE);
    EXPECT_EQ(openCount(), 1);
    EXPECT_EQ(descOf(openTable()), "First");
}

TEST_F(PartTable, SetTableLocation) {
    EXPECT_EQ(part->setTableLocation(nullptr, "", "x.xml"), E_INVALIDARG);
    writeTable("m8.xml");
    part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> table = openTable();
    Listener heard(catalog);

    // The reference becomes relative to the catalog; the open table takes the new base and URL.
    std::filesystem::create_directories(path("moved"));
    EXPECT_EQ(part->setTableLocation(String(path("")), "moved/", "bolts.xml"), S_OK);
    EXPECT_EQ(heard.take(), "changed M8");
    String reference, base;
    part->get_tableRef(&reference);
    EXPECT_EQ(reference, "moved/bolts.xml");
    Ref<IQVRCatalogTable> again = openTable();
    EXPECT_EQ(urlOf(again), path("moved/bolts.xml"));
    again->get_baseUrl(&base);
    EXPECT_EQ(base.str(), fileUrl(path("moved/")));
    EXPECT_EQ(openCount(), 1);

    // The next save writes it there.
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK);
    EXPECT_TRUE(holds("moved/bolts.xml"));

    // A closed table: only the reference changes, and the event still comes.
    Ref<IQVRCatalogPart> closed = newPart(catalog, "M10");
    chapter->appendChild(closed, nullptr);
    closed->put_tableRef("m10.xml");
    heard.take();
    EXPECT_EQ(closed->setTableLocation("/nowhere", "t/", "m10.xml"), S_OK);
    closed->get_tableRef(&reference);
    EXPECT_EQ(reference, "t/m10.xml");
    EXPECT_EQ(heard.take(), "changed M10");
    EXPECT_EQ(openCount(), 1);
}

TEST_F(PartTable, DeepCloneCopiesTheTable) {
    writeTable("m8.xml", "Original");
    part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> original = openTable();
    Listener heard(catalog);

    Ref<IQVRCatalogObject> copy;
    ASSERT_EQ(chapter->cloneNode(VARIANT_TRUE, &copy), S_OK) << lastError();
    EXPECT_EQ(heard.take(), ""); // nothing of the table steps is heard

    Ref<IQVRCatalogPart> copiedPart = query<IQVRCatalogPart>(childAt(copy, 1));
    ASSERT_TRUE(copiedPart);
    EXPECT_NE(keyOf(copiedPart), keyOf(part));

    // The copy refers to a new name and is open under its own key, over a document of its own.
    String reference;
    copiedPart->get_tableRef(&reference);
    ASSERT_EQ(reference.byteLength(), std::string("m8.xml").size() + 36);
    EXPECT_EQ(reference.str().substr(0, 2), "m8");
    EXPECT_EQ(reference.str().substr(38), ".xml");
    EXPECT_EQ(openCount(), 2);
    Ref<IQVRCatalogTable> copiedTable = openTable(copiedPart);
    EXPECT_EQ(keyOf(copiedTable), keyOf(copiedPart) + "T");
    EXPECT_EQ(descOf(copiedTable), "Original");
    copiedTable->put_desc("Copy");
    EXPECT_EQ(descOf(original), "Original");
    EXPECT_EQ(columnNames(copiedTable), "Length");

    // No file yet; the save writes the copy once its part stands in the catalog.
    EXPECT_FALSE(holds(reference.str()));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(catalog->appendChild(copy, nullptr), S_OK);
    heard.take();
    ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK);
    EXPECT_TRUE(holds(reference.str()));
    EXPECT_NE(readFile(reference.str()).find("desc=\"Copy\""), std::string::npos);

    // The new id goes ahead of the last "." of the whole reference, even inside a directory.
    writeTable("v1.2/m8", "Versioned");
    part->put_tableRef("v1.2/m8");
    ASSERT_EQ(part->cloneNode(VARIANT_TRUE, &copy), S_OK);
    query<IQVRCatalogPart>(copy)->get_tableRef(&reference);
    EXPECT_EQ(reference.str().substr(0, 2) + reference.str().substr(38), "v1.2/m8");

    // A closed table is loaded for the copy, and a shallow clone takes no table along.
    Ref<IQVRCatalogPart> closed = newPart(catalog, "Closed");
    chapter->appendChild(closed, nullptr);
    closed->put_tableRef("m8.xml");
    heard.take();
    Ref<IQVRCatalogObject> closedCopy, shallow;
    ASSERT_EQ(closed->cloneNode(VARIANT_TRUE, &closedCopy), S_OK);
    EXPECT_EQ(cachedKeys().find(keyOf(closed) + "T"), std::string::npos);
    EXPECT_NE(cachedKeys().find(keyOf(closedCopy) + "T"), std::string::npos);
    const std::int32_t open = openCount();
    ASSERT_EQ(closed->cloneNode(VARIANT_FALSE, &shallow), S_OK);
    EXPECT_EQ(query<IQVRCatalogPart>(shallow)->get_tableRef(&reference), S_FALSE);
    EXPECT_EQ(openCount(), open);
    EXPECT_EQ(heard.take(), "");

    // A copy of a table in a folder of its own is written where its part's reference points.
    writeTable("tables/m8.xml", "In a folder");
    part->put_tableRef("tables/m8.xml");
    Ref<IQVRCatalogObject> folderCopy;
    ASSERT_EQ(part->cloneNode(VARIANT_TRUE, &folderCopy), S_OK);
    ASSERT_EQ(chapter->appendChild(folderCopy, nullptr), S_OK);
    query<IQVRCatalogPart>(folderCopy)->get_tableRef(&reference);
    ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK);
    EXPECT_TRUE(holds(reference.str())) << reference;
    EXPECT_NE(readFile(reference.str()).find("desc=\"In a folder\""), std::string::npos);
}

} // namespace
} // namespace qvr::testing
