// A part's table through the public API: opening it by its reference, the catalog's cache behind
// it, moving and attaching tables, and the copy a deep clone takes along.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_in_folder.h"

namespace qvr::testing {
namespace {

TEST(PartTable, OpensByReference) {
    CatalogInFolder c;
    Ref<IQVRCatalogTable> table;

    // An empty reference: no table, no message, nothing in the cache.
    lastError();
    CreateCatalogTable(&table); // the out value is cleared
    EXPECT_EQ(c.part->getTable(0, &table), S_FALSE);
    EXPECT_FALSE(table);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(c.part->getTable(0, nullptr), E_POINTER);

    // A relative reference resolves against the catalog's base.
    c.writeTable("tables/m8.xml", "M8 bolts");
    ASSERT_EQ(c.part->put_tableRef("tables/m8.xml"), S_OK);
    table = c.openTable();
    EXPECT_EQ(descOf(table), "M8 bolts");
    EXPECT_EQ(urlOf(table), fileUrl(c.folder / "tables/m8.xml"));
    EXPECT_EQ(keyOf(table), keyOf(c.part) + "T");
    EXPECT_EQ(c.cachedKeys(), keyOf(c.part) + "T");
    // Attached: the catalog is its catalog, the part its parent.
    Ref<IQVRCatalogObject> catalog, parent;
    EXPECT_EQ(table->get_catalog(&catalog), S_OK);
    EXPECT_EQ(catalog.get(), static_cast<IQVRCatalogObject*>(c.catalog.get()));
    EXPECT_EQ(table->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(c.part));

    // An absolute path stands as it is.
    Ref<IQVRCatalogPart> other = newPart(c.catalog, "M10");
    c.chapter->appendChild(other, nullptr);
    c.writeTable("elsewhere/m10.xml", "M10 bolts");
    ASSERT_EQ(other->put_tableRef(String(c.folder / "elsewhere/m10.xml")), S_OK);
    EXPECT_EQ(descOf(c.openTable(other)), "M10 bolts");
    EXPECT_EQ(c.openCount(), 2);
}

TEST(PartTable, MissingFileIsTheLoadsFailure) {
    CatalogInFolder c;
    ASSERT_EQ(c.part->put_tableRef("missing.xml"), S_OK);
    Ref<IQVRCatalogTable> table;
    EXPECT_EQ(c.part->getTable(0, &table), S_FALSE); // the load's answer for a missing file
    EXPECT_FALSE(table);
    EXPECT_NE(lastError().find("missing.xml"), std::string::npos);
    EXPECT_EQ(c.openCount(), 0);
    String reference;
    EXPECT_EQ(c.part->get_tableRef(&reference), S_OK);
    EXPECT_EQ(reference, "missing.xml");

    // A file that is no table: the root check's status, no entry either.
    c.writeTable("m8.xml");
    Ref<IQVRCatalog> notTable;
    CreateCatalog(&notTable);
    VARIANT_BOOL done = VARIANT_FALSE;
    notTable->create(c.folder.base(), "Other", "en", &done);
    notTable->saveAs(Variant(c.folder / "catalog.xml"), &done);
    ASSERT_EQ(c.part->put_tableRef("catalog.xml"), S_OK);
    EXPECT_EQ(c.part->getTable(0, &table), QVR_E_NOTTABLE);
    EXPECT_EQ(c.openCount(), 0);
}

TEST(PartTable, TwoRequestsShareOneDocument) {
    CatalogInFolder c;
    c.writeTable("m8.xml");
    c.part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> first = c.openTable(), second = c.openTable();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first.get(), second.get());
    Ref<IXMLDOMElement> firstRoot, secondRoot;
    first->get_domNode(&firstRoot);
    second->get_domNode(&secondRoot);
    EXPECT_EQ(firstRoot.get(), secondRoot.get());

    // What one changes, the other sees: a property, a new column, a cell's value.
    EXPECT_EQ(first->put_desc("Changed"), S_OK);
    EXPECT_EQ(descOf(second), "Changed");
    addColumn(first, "Head");
    EXPECT_EQ(columnNames(second), "Length Head");
    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(rowOf(first, "A")->getCell(firstColumn(first), &cell), S_OK);
    EXPECT_EQ(query<IQVRTableCell>(cell)->put_value(Variant(25)), S_OK);
    EXPECT_EQ(valueAt(second, firstColumn(second), "A").i4(), 25);
    EXPECT_EQ(c.openCount(), 1);

    // A held table object outlives its entry; a new reference drops the entry, the same one
    // keeps it.
    EXPECT_EQ(c.part->put_tableRef("m8.xml"), S_OK);
    EXPECT_EQ(c.openCount(), 1);
    EXPECT_EQ(c.part->put_tableRef("other.xml"), S_OK);
    EXPECT_EQ(c.openCount(), 0);
    EXPECT_EQ(descOf(first), "Changed");
}

TEST(PartTable, EventsOfAnAttachedTableReachTheCatalog) {
    CatalogInFolder c;
    c.writeTable("m8.xml");
    c.part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> table = c.openTable();
    Listener atCatalog(c.catalog);
    TableListener atTable(table);
    atCatalog.sink().describeWith = describeTableObject;

    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(rowOf(table, "B")->getCell(firstColumn(table), &cell), S_OK);
    EXPECT_EQ(query<IQVRTableCell>(cell)->put_value(Variant(45)), S_OK);
    EXPECT_EQ(table->put_desc("New"), S_OK);
    EXPECT_EQ(atCatalog.take(), "changed Cell B | changed Table");
    EXPECT_EQ(atTable.take(), "");
}

TEST(PartTable, AttachTable) {
    CatalogInFolder c;
    Listener heard(c.catalog);

    // A table without an address can't be referred to.
    Ref<IQVRCatalogTable> unsaved = newTable();
    EXPECT_EQ(c.part->attachTable(unsaved), E_FAIL);
    EXPECT_EQ(lastError(), "You tried to attach a table with unknown URL.");
    EXPECT_EQ(c.openCount(), 0);
    EXPECT_EQ(c.part->attachTable(nullptr), E_INVALIDARG);
    EXPECT_EQ(heard.take(), "");

    // A saved one: the reference becomes its URL, the part its parent, and it is open.
    Ref<IQVRCatalogTable> first = c.writeTable("first.xml", "First");
    EXPECT_EQ(c.part->attachTable(first), S_OK);
    String reference;
    c.part->get_tableRef(&reference);
    EXPECT_EQ(reference.str(), c.folder / "first.xml");
    EXPECT_EQ(keyOf(first), keyOf(c.part) + "T");
    EXPECT_EQ(heard.take(), "changed M8");
    first->put_footNote("Attached"); // the table's changes now reach the catalog
    EXPECT_EQ(heard.take(), "changed #31");

    // A second table under the same key and URL is refused; the first stays.
    Ref<IQVRCatalogTable> second = c.writeTable("first.xml", "Second");
    EXPECT_EQ(c.part->attachTable(second), S_FALSE);
    EXPECT_EQ(c.openCount(), 1);
    EXPECT_EQ(descOf(c.openTable()), "First");
}

TEST(PartTable, SetTableLocation) {
    CatalogInFolder c;
    EXPECT_EQ(c.part->setTableLocation(nullptr, "", "x.xml"), E_INVALIDARG);
    c.writeTable("m8.xml");
    c.part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> table = c.openTable();
    Listener heard(c.catalog);

    // The reference becomes relative to the catalog; the open table takes the new base and URL.
    std::filesystem::create_directories(c.folder / "moved");
    EXPECT_EQ(c.part->setTableLocation(String(c.folder / ""), "moved/", "bolts.xml"), S_OK);
    EXPECT_EQ(heard.take(), "changed M8");
    String reference, base;
    c.part->get_tableRef(&reference);
    EXPECT_EQ(reference, "moved/bolts.xml");
    Ref<IQVRCatalogTable> again = c.openTable();
    EXPECT_EQ(urlOf(again), c.folder / "moved/bolts.xml");
    again->get_baseUrl(&base);
    EXPECT_EQ(base.str(), fileUrl(c.folder / "moved/"));
    EXPECT_EQ(c.openCount(), 1);

    // The next save writes it there.
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(c.catalog->saveAs(Variant(c.folder / "catalog.xml"), &done), S_OK);
    EXPECT_TRUE(c.folder.holds("moved/bolts.xml"));

    // A closed table: only the reference changes, and the event still comes.
    Ref<IQVRCatalogPart> closed = newPart(c.catalog, "M10");
    c.chapter->appendChild(closed, nullptr);
    closed->put_tableRef("m10.xml");
    heard.take();
    EXPECT_EQ(closed->setTableLocation("/nowhere", "t/", "m10.xml"), S_OK);
    closed->get_tableRef(&reference);
    EXPECT_EQ(reference, "t/m10.xml");
    EXPECT_EQ(heard.take(), "changed M10");
    EXPECT_EQ(c.openCount(), 1);
}

TEST(PartTable, DeepCloneCopiesTheTable) {
    CatalogInFolder c;
    c.writeTable("m8.xml", "Original");
    c.part->put_tableRef("m8.xml");
    Ref<IQVRCatalogTable> original = c.openTable();
    Listener heard(c.catalog);

    Ref<IQVRCatalogObject> copy;
    ASSERT_EQ(c.chapter->cloneNode(VARIANT_TRUE, &copy), S_OK) << lastError();
    EXPECT_EQ(heard.take(), ""); // nothing of the table steps is heard

    // New ids throughout.
    Ref<IQVRCatalogObjectList> children;
    Ref<IQVRCatalogObject> copiedItem;
    ASSERT_EQ(copy->get_childNodes(&children), S_OK);
    ASSERT_EQ(children->getItem(1, &copiedItem), S_OK);
    Ref<IQVRCatalogPart> copiedPart = query<IQVRCatalogPart>(copiedItem);
    ASSERT_TRUE(copiedPart);
    EXPECT_NE(keyOf(copy), keyOf(c.chapter));
    EXPECT_NE(keyOf(copiedPart), keyOf(c.part));
    EXPECT_EQ(keyOf(copiedPart).size(), 36u);

    // The copy refers to a new name and is open under its own key, over a document of its own.
    String reference;
    copiedPart->get_tableRef(&reference);
    ASSERT_EQ(reference.byteLength(), std::string("m8.xml").size() + 36);
    EXPECT_EQ(reference.str().substr(0, 2), "m8");
    EXPECT_EQ(reference.str().substr(38), ".xml");
    EXPECT_EQ(c.openCount(), 2);
    Ref<IQVRCatalogTable> copiedTable = c.openTable(copiedPart);
    EXPECT_EQ(keyOf(copiedTable), keyOf(copiedPart) + "T");
    EXPECT_EQ(descOf(copiedTable), "Original");
    copiedTable->put_desc("Copy");
    EXPECT_EQ(descOf(original), "Original");
    EXPECT_EQ(columnNames(copiedTable), "Length");

    // No file yet; the save writes the copy once its part stands in the catalog.
    EXPECT_FALSE(c.folder.holds(reference.str()));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(c.catalog->appendChild(copy, nullptr), S_OK);
    heard.take();
    ASSERT_EQ(c.catalog->saveAs(Variant(c.folder / "catalog.xml"), &done), S_OK);
    EXPECT_TRUE(c.folder.holds(reference.str()));
    EXPECT_NE(c.folder.read(reference.str()).find("desc=\"Copy\""), std::string::npos);

    // A closed table is loaded for the copy, and a shallow clone takes no table along.
    Ref<IQVRCatalogPart> closed = newPart(c.catalog, "Closed");
    c.chapter->appendChild(closed, nullptr);
    closed->put_tableRef("m8.xml");
    heard.take();
    Ref<IQVRCatalogObject> closedCopy, shallow;
    ASSERT_EQ(closed->cloneNode(VARIANT_TRUE, &closedCopy), S_OK);
    EXPECT_EQ(c.cachedKeys().find(keyOf(closed) + "T"), std::string::npos);
    EXPECT_NE(c.cachedKeys().find(keyOf(closedCopy) + "T"), std::string::npos);
    const std::int32_t open = c.openCount();
    ASSERT_EQ(closed->cloneNode(VARIANT_FALSE, &shallow), S_OK);
    EXPECT_EQ(query<IQVRCatalogPart>(shallow)->get_tableRef(&reference), S_FALSE);
    EXPECT_EQ(c.openCount(), open);
    EXPECT_EQ(heard.take(), "");
}

} // namespace
} // namespace qvr::testing
