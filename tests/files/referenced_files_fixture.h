// A catalog in a folder that points at a file of every kind: a document and an image of the
// catalog, a link, an image of the part, the part's table with a calculated column, a view with
// drawings and further files, a const view with a recipe and a column of reference cells. Every
// file it points at exists, each with its own content.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <qvr/reference.h>

#include "common/catalog_in_folder.h"

namespace qvr::testing {

class ReferencedFiles : public CatalogInFolder {
protected:
    // The files the catalog points at, relative to its folder; the table is written by save.
    static inline const std::vector<std::string> pointedFiles = {"docs/manual.pdf",
                                                                 "img/m8.png",
                                                                 "tables/drawings/a.dxf",
                                                                 "tables/drawings/b.dxf",
                                                                 "tables/drawings/common.dwg",
                                                                 "tables/recipes/cut.rcp",
                                                                 "tables/sheets/a.pdf"};

    void SetUp() override {
        CatalogInFolder::SetUp();
        for (const std::string& file : pointedFiles) {
            std::filesystem::create_directories((dir / file).parent_path());
            std::ofstream(path(file), std::ios::binary) << "content of " << file;
        }
        Ref<IQVRCatalogDocument> document;
        Ref<IQVRCatalogDocuments> documents;
        ASSERT_EQ(catalog->createDocument(newURL(catalog, "docs/manual.pdf"), "Manual", &document),
                  S_OK);
        ASSERT_EQ(catalog->createDocuments(document, "Sheets", &documents), S_OK);
        ASSERT_EQ(catalog->putref_documents(documents), S_OK);
        ASSERT_EQ(catalog->putref_images(newImages("img/m8.png")), S_OK);
        Ref<IQVRCatalogLink> link;
        ASSERT_EQ(catalog->createLink(newURL(catalog, "https://acme.example/"), &link), S_OK);
        ASSERT_EQ(catalog->putref_link(link), S_OK);
        // The part's image is the catalog's: two pointers to one file.
        ASSERT_EQ(part->putref_images(newImages("img/m8.png")), S_OK);
        buildTable();
        ASSERT_EQ(part->put_tableRef("tables/m8.xml"), S_OK);
        VARIANT_BOOL ok = VARIANT_FALSE;
        ASSERT_EQ(catalog->saveAs(Variant(path("catalog.xml")), &ok), S_OK) << lastError();
    }

    Ref<IQVRCatalogImages> newImages(const char* href) {
        Ref<IQVRCatalogImages> images;
        EXPECT_EQ(catalog->createImages(newImage(catalog, href), &images), S_OK);
        return images;
    }

    // The table of the part, with pointers relative to its own folder, saved there.
    void buildTable() {
        Ref<IQVRCatalogTable> table = newTable();
        Ref<IQVRTableColumn> length = addColumn(table, "Length", qvrDataTypeInt);
        ASSERT_EQ(addCell(table, length, "A", Variant(20)), S_OK);
        ASSERT_EQ(addCell(table, length, "B", Variant(40)), S_OK);
        Ref<IQVRTableCalculatedColumn> twice;
        ASSERT_EQ(table->createCalculatedColumn(qvrDataTypeInt, "Twice", "Length * 2", "", "", "",
                                                VARIANT_TRUE, &twice),
                  S_OK);
        ASSERT_EQ(table->appendChild(twice, nullptr), S_OK);

        Ref<IQVRTableView> view;
        ASSERT_EQ(table->createView(qvrViewFront, "Front", "", VARIANT_TRUE, &view), S_OK);
        ASSERT_EQ(table->appendChild(view, nullptr), S_OK);
        for (const char* row : {"A", "B"}) {
            Ref<IQVRTableDrawing> drawing;
            const std::string file =
                std::string("drawings/") + (row[0] == 'A' ? "a" : "b") + ".dxf";
            ASSERT_EQ(table->createDrawing(row, file, &drawing), S_OK);
            ASSERT_EQ(view->appendChild(drawing, nullptr), S_OK);
        }
        Ref<IQVRCatalogURL> common;
        Ref<IQVRCatalogReferencedFiles> further;
        ASSERT_EQ(table->createURL("drawings/common.dwg", "Common", "", &common), S_OK);
        ASSERT_EQ(table->createReferencedFiles(common, &further), S_OK);
        ASSERT_EQ(view->putref_xRefFiles(further), S_OK);

        Ref<IQVRTableRecipe> recipe;
        ASSERT_EQ(table->createRecipe("Cutter", &recipe), S_OK);
        ASSERT_EQ(recipe->put_path("recipes/cut.rcp"), S_OK);
        Ref<IQVRTableConstView> constView;
        ASSERT_EQ(table->createConstView(qvrViewTop, recipe, "Top", "", VARIANT_TRUE, &constView),
                  S_OK);
        ASSERT_EQ(table->appendChild(constView, nullptr), S_OK);

        Ref<IQVRTableRefColumn> sheets;
        ASSERT_EQ(table->createRefColumn(qvrRoleBr, "Sheet", "", 3, 2, VARIANT_TRUE, &sheets),
                  S_OK);
        ASSERT_EQ(table->appendChild(sheets, nullptr), S_OK);
        Ref<IQVRTableRefCell> sheet;
        ASSERT_EQ(table->createRefCell("A", "sheets/a.pdf", "", "", &sheet), S_OK);
        ASSERT_EQ(sheets->appendChild(sheet, nullptr), S_OK);

        std::filesystem::create_directories(dir / "tables");
        VARIANT_BOOL ok = VARIANT_FALSE;
        ASSERT_EQ(table->saveAs(Variant(path("tables/m8.xml")), &ok), S_OK) << lastError();
    }

    // A catalog loaded afresh from `file`.
    static Ref<IQVRCatalog> loadCatalog(const std::string& file) {
        Ref<IQVRCatalog> loaded;
        EXPECT_EQ(CreateCatalog(&loaded), S_OK);
        VARIANT_BOOL done = VARIANT_FALSE;
        EXPECT_EQ(loaded->load(Variant(file), &done), S_OK) << lastError();
        return loaded;
    }

    static std::vector<Ref<IQVRCatalogReference>> referencesOf(IQVRCatalogObject* object,
                                                               VARIANT_BOOL deep) {
        Ref<IQVRCatalogObjectList> files;
        EXPECT_EQ(object->getReferencedFiles(deep, &files), S_OK) << lastError();
        std::vector<Ref<IQVRCatalogReference>> all;
        if (files)
            for (Ref<IQVRCatalogObject> item : *files)
                all.push_back(query<IQVRCatalogReference>(item));
        return all;
    }

    // Each reference as "kind pointer", joined by " | ".
    static std::string listed(const std::vector<Ref<IQVRCatalogReference>>& references) {
        std::string text;
        for (const auto& reference : references) {
            std::uint32_t kind = 0;
            String url;
            reference->get_kind(&kind);
            reference->get_url(&url);
            text += (text.empty() ? "" : " | ") + std::to_string(kind) + " " + url.str();
        }
        return text;
    }
};

} // namespace qvr::testing
