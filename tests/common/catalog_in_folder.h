// What the tests of parts' tables share: a catalog whose base is a fresh temporary folder, with a
// chapter and a part, table files written into that folder, and readers of tables.
#pragma once

#include <filesystem>
#include <string>

#include "common/temp_files.h"
#include "tables/table_fixture.h"

namespace qvr::testing {

// A catalog whose base is the test's folder, holding the chapter "Bolts" with the part "M8".
class CatalogInFolder : public TempFiles {
protected:
    Ref<IQVRCatalog> catalog;
    Ref<IQVRCatalogChapter> chapter;
    Ref<IQVRCatalogPart> part;

    void SetUp() override {
        TempFiles::SetUp();
        EXPECT_EQ(CreateCatalog(&catalog), S_OK);
        VARIANT_BOOL done = VARIANT_FALSE;
        EXPECT_EQ(catalog->create(base(), "Fasteners", "en", &done), S_OK);
        chapter = newChapter(catalog, "Bolts");
        part = newPart(catalog, "M8");
        EXPECT_EQ(catalog->appendChild(chapter, nullptr), S_OK);
        EXPECT_EQ(chapter->appendChild(part, nullptr), S_OK);
    }

    // The folder with a trailing "/", as a catalog takes its base.
    std::string base() const { return dir.string() + "/"; }
    // A file or folder in the test's folder.
    std::string path(const std::string& relative) const { return (dir / relative).string(); }
    bool holds(const std::string& relative) const {
        return std::filesystem::exists(dir / relative);
    }
    std::string readFile(const std::string& relative) const { return read(path(relative)); }

    // A table file with the column "Length" and the rows A and B, written to `file` (relative to
    // the folder), and the table that wrote it.
    Ref<IQVRCatalogTable> writeTable(const std::string& file, const char* desc = "Bolts") {
        Ref<IQVRCatalogTable> table = newTable(desc);
        Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeInt);
        EXPECT_EQ(addCell(table, length, "A", Variant(20)), S_OK);
        EXPECT_EQ(addCell(table, length, "B", Variant(40)), S_OK);
        std::filesystem::create_directories((dir / file).parent_path());
        VARIANT_BOOL ok = VARIANT_FALSE;
        EXPECT_EQ(table->saveAs(Variant(path(file)), &ok), S_OK);
        return table;
    }

    Ref<IQVRCatalogTable> openTable(IQVRCatalogPart* of = nullptr) {
        Ref<IQVRCatalogTable> table;
        EXPECT_EQ((of ? of : part.get())->getTable(0, &table), S_OK) << lastError();
        return table;
    }

    std::int32_t openCount() {
        Ref<IQVRCatalogObjectList> tables;
        EXPECT_EQ(catalog->get_tables(&tables), S_OK);
        std::int32_t count = -1;
        tables->get_count(&count);
        return count;
    }

    std::string cachedKeys() {
        Ref<IQVRCatalogObjectList> tables;
        catalog->get_tables(&tables);
        return keysIn(tables);
    }
};

inline std::string descOf(IQVRCatalogTable* table) {
    String desc;
    if (table) table->get_desc(&desc);
    return desc.str();
}

inline std::string urlOf(IQVRCatalogTable* table) {
    Variant url;
    table->get_url(&url);
    return url.vt() == VT_BSTR ? url.str().str() : std::string("(none)");
}

inline std::string fileUrl(const std::string& path) {
    return "file://" + path;
}

inline Ref<IQVRCatalogObject> firstColumn(IQVRCatalogTable* table) {
    return childAt(table, 1);
}

} // namespace qvr::testing
