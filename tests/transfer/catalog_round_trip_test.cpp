// A catalog with a table per part, saved with its tables and loaded back as a new client would:
// the computed values come out the same, and a change made after the reload is saved too.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/catalog_in_folder.h"
#include "formulas/formula_fixture.h"

namespace qvr::testing {
namespace {

using CatalogRoundTrip = CatalogInFolder;

const char* const massFormula =
    "Round(3.14159265 * (Diameter / 2) ^ 2 * Length * Density / 1000, 3)";

// A table with Length and Diameter per row, the const Density and the calculated Mass, saved as
// `file` next to the catalog and attached to `part` by a reference relative to the catalog.
void giveTable(IQVRCatalogPart* part, const std::string& base, const std::string& file,
               double diameter) {
    Ref<IQVRCatalogTable> table = newTable(file.c_str());
    Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeFloat);
    Ref<IQVRTableColumn> diameterColumn = addColumn(table, "Diameter", qvrDataTypeFloat);
    addConstColumn(table, "Density", qvrDataTypeFloat, "7.85");
    addCalculatedColumn(table, "Mass", massFormula);
    for (const double l : {20.0, 40.0, 60.0}) {
        const std::string key = "L" + std::to_string(static_cast<int>(l));
        EXPECT_EQ(addCell(table, length, key.c_str(), Variant(l)), S_OK);
        EXPECT_EQ(addCell(table, diameterColumn, key.c_str(), Variant(diameter)), S_OK);
    }
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(table->saveAs(Variant(base + file), &ok), S_OK);
    ASSERT_EQ(part->attachTable(table), S_OK);
    ASSERT_EQ(part->setTableLocation(base, "", file), S_OK);
}

Ref<IQVRCatalogObject> columnNamed(IQVRCatalogTable* table, const std::string& name) {
    Ref<IQVRCatalogObjectList> columns;
    EXPECT_EQ(table->get_childNodes(&columns), S_OK);
    for (Ref<IQVRCatalogObject> column : *columns)
        if (nameOf(column) == name) return column;
    return nullptr;
}

// "L20=<type>:<value> ..." for every row, computed by the Mass column.
std::string masses(IQVRCatalogTable* table) {
    Ref<IQVRTableCalculatedColumn> mass =
        query<IQVRTableCalculatedColumn>(columnNamed(table, "Mass"));
    if (!mass) return "(no Mass column)";
    std::string shown;
    for (const char* row : {"L20", "L40", "L60"}) {
        Variant value, text;
        EXPECT_EQ(mass->calculate(Variant(row), &value), S_OK) << lastError();
        changeType(&text, value, LCID_EN_US, 0, VT_BSTR);
        shown += std::string(shown.empty() ? "" : " ") + row + "=" + std::to_string(value.vt()) +
                 ":" + text.str().str();
    }
    return shown;
}

std::string massesOfPart(IQVRCatalog* catalog, const std::string& id) {
    Ref<IQVRCatalogObject> found;
    EXPECT_EQ(catalog->findById(String(id), &found), S_OK);
    Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(found);
    Ref<IQVRCatalogTable> table;
    if (!part || part->getTable(0, &table) != S_OK) return "(no table) " + lastError();
    return masses(table);
}

Ref<IQVRCatalog> loaded(const std::string& file) {
    Ref<IQVRCatalog> catalog;
    EXPECT_EQ(CreateCatalog(&catalog), S_OK);
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(catalog->load(Variant(file), &done), S_OK) << lastError();
    return catalog;
}

TEST_F(CatalogRoundTrip, ComputedValuesSurviveSaveAndLoad) {
    Ref<IQVRCatalogPart> m10 = newPart(catalog, "M10");
    chapter->appendChild(m10, nullptr);
    giveTable(part, base(), "m8.xml", 8.0);
    giveTable(m10, base(), "m10.xml", 10.0);
    const std::string m8Id = keyOf(part), m10Id = keyOf(m10);
    const std::string m8Masses = massesOfPart(catalog, m8Id);
    const std::string m10Masses = massesOfPart(catalog, m10Id);
    EXPECT_EQ(m8Masses, "L20=5:7.892 L40=5:15.783 L60=5:23.675");
    EXPECT_NE(m10Masses, m8Masses);

    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &done), S_OK) << lastError();
    String reference;
    part->get_tableRef(&reference);
    EXPECT_EQ(reference, "m8.xml"); // the catalog can move with its tables

    // A new client: the same values from the files.
    Ref<IQVRCatalog> reader = loaded(path("catalog.xml"));
    EXPECT_EQ(massesOfPart(reader, m8Id), m8Masses);
    EXPECT_EQ(massesOfPart(reader, m10Id), m10Masses);

    // A cell changed after the reload is saved with the catalog and computed again.
    Ref<IQVRCatalogObject> found;
    ASSERT_EQ(reader->findById(String(m8Id), &found), S_OK);
    Ref<IQVRCatalogTable> table;
    ASSERT_EQ(query<IQVRCatalogPart>(found)->getTable(0, &table), S_OK);
    Ref<IQVRTableCellObject> cell;
    ASSERT_EQ(rowOf(table, "L40")->getCell(columnNamed(table, "Diameter"), &cell), S_OK);
    ASSERT_EQ(query<IQVRTableCell>(cell)->put_value(Variant(16.0)), S_OK);
    ASSERT_EQ(reader->save(&done), S_OK) << lastError();
    EXPECT_EQ(massesOfPart(loaded(path("catalog.xml")), m8Id),
              "L20=5:7.892 L40=5:63.133 L60=5:23.675");
}

} // namespace
} // namespace qvr::testing
