// The catalog's table cache as a list, and what the catalog's save and load do with it.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_in_folder.h"

namespace qvr::testing {
namespace {

using CatalogTables = CatalogInFolder;

// A table standing alone whose key is `key` and whose description is `desc`.
Ref<IQVRCatalogTable> keyedTable(const char* key, const char* desc) {
    Ref<IQVRCatalogTable> table;
    EXPECT_EQ(CreateCatalogTable(&table), S_OK);
    VARIANT_BOOL ok = VARIANT_FALSE;
    const std::string xml =
        std::string("<vCATTable desc='") + desc + "'><ColumnUnique id='C0'/></vCATTable>";
    EXPECT_EQ(table->loadXML(xml, key, 0, &ok), S_OK);
    return table;
}

struct Cache {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogObjectList> tables;
    Cache() { EXPECT_EQ(catalog->get_tables(&tables), S_OK); }

    HRESULT add(IQVRCatalogObject* table, VARIANT_BOOL* done = nullptr) {
        VARIANT_BOOL ignored = VARIANT_FALSE;
        return tables->appendChild(table, done ? done : &ignored);
    }
    std::string descAt(const Variant& indexOrKey) {
        Ref<IQVRCatalogObject> item;
        if (tables->get_item(indexOrKey, &item) != S_OK) return "(none)";
        return descOf(query<IQVRCatalogTable>(item));
    }
};

TEST(TableCache, KeyedMapWithOneBasedIndex) {
    Cache c;
    Ref<IQVRCatalogTable> k2 = keyedTable("K2", "two");
    ASSERT_EQ(c.add(k2), S_OK);
    ASSERT_EQ(c.add(keyedTable("K3", "three")), S_OK);
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(c.add(keyedTable("K1", "one"), &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);

    // Index order is key order, not the order of addition.
    EXPECT_EQ(keysIn(c.tables), "K1 K2 K3");
    EXPECT_EQ(c.descAt(Variant(2.0)), "two");
    EXPECT_EQ(c.descAt("K3"), "three");

    // Out of range reports; an unknown key is a plain E_FAIL.
    Ref<IQVRCatalogObject> item;
    EXPECT_EQ(c.tables->get_item(Variant(0), &item), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
    EXPECT_EQ(c.tables->get_item(Variant(4), &item), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index is out of range.");
    EXPECT_EQ(c.tables->get_item("K4", &item), E_FAIL);
    EXPECT_EQ(c.tables->get_item("k1", &item), E_FAIL); // case counts
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(c.tables->getItem(0, &item), E_INVALIDARG);
    EXPECT_EQ(c.tables->getItem(4, &item), E_FAIL);
    EXPECT_EQ(lastError(), "");

    // A key in use keeps its first table.
    EXPECT_EQ(c.add(keyedTable("K2", "other two"), &done), S_FALSE);
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(c.descAt("K2"), "two");
    EXPECT_EQ(c.tables->insertBefore(k2, Variant(1), &done), E_NOTIMPL);

    // Removal by key only.
    EXPECT_EQ(c.tables->removeChild(Variant(1), &done), E_INVALIDARG);
    EXPECT_EQ(c.tables->removeChild("K4", &done), S_FALSE);
    EXPECT_EQ(c.tables->removeChild("K2", &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(keysIn(c.tables), "K1 K3");

    EXPECT_EQ(c.tables->clear(), S_OK);
    std::int32_t count = -1;
    EXPECT_EQ(c.tables->get_count(&count), S_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(descOf(k2), "two"); // the table itself lives on
}

TEST(TableCache, EachRequestWrapsTheCachedDocument) {
    Cache c;
    {
        Ref<IQVRCatalogTable> table = keyedTable("K1", "kept");
        addColumn(table, "Length");
        ASSERT_EQ(c.add(table), S_OK);
    } // no table object is left; the document stays in the cache

    Ref<IQVRCatalogObject> first, second;
    ASSERT_EQ(c.tables->get_item("K1", &first), S_OK);
    ASSERT_EQ(c.tables->get_item(Variant(1), &second), S_OK);
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(elementOf(first).get(), elementOf(second).get());
    EXPECT_EQ(columnNames(query<IQVRCatalogTable>(second)), "Length");
    // An item has no parent: the part that asks for its table links it.
    Ref<IQVRCatalogObject> parent;
    EXPECT_EQ(first->get_parentNode(&parent), S_FALSE);

    // getTableAs: the cached document under another key; the cache stays as it was.
    Ref<IQVRCatalogObjectTableCache> cache = query<IQVRCatalogObjectTableCache>(c.tables);
    ASSERT_TRUE(cache);
    Ref<IQVRCatalogTable> renamed;
    ASSERT_EQ(cache->getTableAs("K1", "NEWT", &renamed), S_OK);
    EXPECT_EQ(keyOf(renamed), "NEWT");
    EXPECT_EQ(elementOf(renamed).get(), elementOf(first).get());
    EXPECT_EQ(keysIn(c.tables), "K1");
    EXPECT_EQ(cache->getTableAs(Variant(1), "X", &renamed), E_INVALIDARG);
    EXPECT_FALSE(renamed);
    EXPECT_EQ(cache->getTableAs("K9", "X", &renamed), E_FAIL);
    EXPECT_EQ(cache->getTableAs("K1", "X", nullptr), E_POINTER);
}

TEST(TableCache, EnumeratorCannotHandOutItems) {
    Cache c;
    auto enumeratorOf = [&] {
        Ref<IUnknown> unknown;
        EXPECT_EQ(c.tables->get__NewEnum(&unknown), S_OK);
        return query<IEnumVARIANT>(unknown);
    };
    Variant items[2];
    std::uint32_t fetched = 9;

    Ref<IEnumVARIANT> empty = enumeratorOf();
    EXPECT_EQ(empty->Next(1, items, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);

    c.add(keyedTable("K1", "one"));
    c.add(keyedTable("K2", "two"));
    Ref<IEnumVARIANT> walk = enumeratorOf();
    fetched = 9;
    EXPECT_EQ(walk->Next(1, items, &fetched), E_NOTIMPL);
    EXPECT_EQ(fetched, 0u);
    EXPECT_TRUE(items[0].isEmpty());
    EXPECT_EQ(walk->Next(0, items, &fetched), S_OK);

    // Skip, Clone and Reset move the position as in any list.
    EXPECT_EQ(walk->Skip(1), S_OK);
    Ref<IEnumVARIANT> copy;
    ASSERT_EQ(walk->Clone(&copy), S_OK);
    EXPECT_EQ(walk->Skip(2), S_FALSE);
    EXPECT_EQ(walk->Next(1, items, &fetched), S_FALSE);
    EXPECT_EQ(copy->Next(1, items, &fetched), E_NOTIMPL); // one entry left
    EXPECT_EQ(walk->Reset(), S_OK);
    EXPECT_EQ(walk->Next(1, items, &fetched), E_NOTIMPL);
}

TEST_F(CatalogTables, SaveWritesTheTablesOfPartsInTheCatalog) {
    writeTable("m8.xml", "M8");
    writeTable("m10.xml", "M10");
    part->put_tableRef("m8.xml");
    Ref<IQVRCatalogPart> removed = newPart(catalog, "M10");
    chapter->appendChild(removed, nullptr);
    removed->put_tableRef("m10.xml");
    openTable()->put_desc("M8 saved");
    openTable(removed)->put_desc("M10 saved");
    ASSERT_EQ(chapter->removeChild(removed, nullptr), S_OK);
    EXPECT_EQ(openCount(), 2);

    // The table of the removed part is passed over; the other table and the catalog are written.
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK) << lastError();
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_NE(readFile("m8.xml").find("M8 saved"), std::string::npos);
    EXPECT_EQ(readFile("m10.xml").find("M10 saved"), std::string::npos);
    EXPECT_TRUE(holds("catalog.xml"));

    // A table that can't be written stops the save before the catalog: message 145 and its path.
    std::filesystem::remove(path("m8.xml"));
    std::filesystem::create_directory(path("m8.xml")); // no file can be written there
    catalog->put_name("Not written");
    const HRESULT hr = catalog->saveAs(Variant(path("catalog.xml")), &done);
    EXPECT_TRUE(FAILED(hr));
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(lastError(), "Error while saving table " + fileUrl(path("m8.xml")));
    EXPECT_EQ(readFile("catalog.xml").find("Not written"), std::string::npos);
}

TEST_F(CatalogTables, ANewDocumentEmptiesTheCache) {
    writeTable("m8.xml");
    part->put_tableRef("m8.xml");
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK);
    Ref<IQVRCatalogTable> held = openTable();
    Ref<IQVRCatalogObjectList> tables;
    catalog->get_tables(&tables);

    // load empties the cache before it looks at the file, so a failed load has lost the tables.
    EXPECT_EQ(catalog->load(Variant(path("missing.xml")), &done), S_FALSE);
    EXPECT_EQ(openCount(), 0);
    Ref<IQVRCatalogObjectList> same;
    catalog->get_tables(&same);
    EXPECT_EQ(same.get(), tables.get()); // one cache for the catalog's life
    EXPECT_EQ(descOf(held), "Bolts");    // a held table lives on

    // A loaded catalog opens its parts' tables again; loadXML and create forget them as well.
    ASSERT_EQ(catalog->load(Variant(path("catalog.xml")), &done), S_OK);
    Ref<IQVRCatalogObject> found;
    ASSERT_EQ(catalog->findById(String(keyOf(part)), &found), S_OK);
    Ref<IQVRCatalogTable> reopened = openTable(query<IQVRCatalogPart>(found));
    EXPECT_EQ(rowKeys(reopened), "A B");
    String xml;
    catalog->get_xml(&xml);
    EXPECT_EQ(openCount(), 1);
    ASSERT_EQ(catalog->loadXML(xml, &done), S_OK);
    EXPECT_EQ(openCount(), 0);
    ASSERT_EQ(catalog->findById(String(keyOf(part)), &found), S_OK);
    openTable(query<IQVRCatalogPart>(found));
    EXPECT_EQ(openCount(), 1);
    ASSERT_EQ(catalog->create(base(), "New", "en", &done), S_OK);
    EXPECT_EQ(openCount(), 0);
}

} // namespace
} // namespace qvr::testing
