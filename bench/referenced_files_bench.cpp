// Figures for the files of a catalog of 1,000 parts, each with a table and two images: listing
// them (deep, which opens every table), copying each with its pointer rewritten, and carrying
// the whole catalog with RelocateCatalog, per reference. Side by side, the same files copied by
// the standard library (no temporary file, no flush to the disk) and the tables opened alone,
// so that the ratios show what the walk and the safe copy cost.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <qvr/qvr.h>

using namespace qvr;
namespace fs = std::filesystem;

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Ref<IQVRCatalogImage> image(IQVRCatalog* catalog, const std::string& href) {
    Ref<IQVRCatalogURL> url;
    Ref<IQVRCatalogImage> made;
    catalog->createURL(href, "", "", &url);
    catalog->createImage(url, &made);
    return made;
}

// The catalog in `folder`: part i has tables/p<i>.xml (two columns, three rows) and the images
// img/p<i>-front.png and img/p<i>-side.png, 4 KiB each.
void makeCatalog(const std::string& folder, int parts) {
    fs::create_directories(folder + "tables");
    fs::create_directories(folder + "img");
    const std::string pixels(4096, 'x');
    Ref<IQVRCatalog> catalog;
    CreateCatalog(&catalog);
    VARIANT_BOOL ok;
    catalog->create(folder, "Bench", "en", &ok);
    Ref<IQVRCatalogChapter> chapter;
    catalog->createChapter("All", &chapter);
    catalog->appendChild(chapter, nullptr);
    for (int i = 0; i < parts; ++i) {
        const std::string name = "p" + std::to_string(i);
        Ref<IQVRCatalogTable> table;
        CreateCatalogTable(&table);
        table->create(folder + "tables/", "Bolts", "en", &ok);
        Ref<IQVRTableColumn> length, mass;
        table->createColumn(qvrDataTypeInt, "Length", "", "", "mm", VARIANT_TRUE, &length);
        table->createColumn(qvrDataTypeFloat, "Mass", "", "", "g", VARIANT_TRUE, &mass);
        table->appendChild(length, nullptr);
        table->appendChild(mass, nullptr);
        for (int row = 0; row < 3; ++row) {
            Ref<IQVRTableCell> cell;
            const std::string key = "R" + std::to_string(row);
            table->createCell(key, Variant(20 * (row + 1)), &cell);
            length->appendChild(cell, nullptr);
            table->createCell(key, Variant(1.5 * (row + 1)), &cell);
            mass->appendChild(cell, nullptr);
        }
        table->saveAs(Variant(folder + "tables/" + name + ".xml"), &ok);

        Ref<IQVRCatalogPart> part;
        catalog->createPart(name, &part);
        chapter->appendChild(part, nullptr);
        Ref<IQVRCatalogImages> images;
        catalog->createImages(image(catalog, "img/" + name + "-front.png"), &images);
        images->appendChild(image(catalog, "img/" + name + "-side.png"), nullptr);
        part->putref_images(images);
        part->put_tableRef("tables/" + name + ".xml");
        for (const char* side : {"-front.png", "-side.png"})
            std::ofstream(folder + "img/" + name + side) << pixels;
    }
    catalog->saveAs(Variant(folder + "catalog.xml"), &ok);
}

Ref<IQVRCatalog> load(const std::string& file) {
    Ref<IQVRCatalog> catalog;
    CreateCatalog(&catalog);
    VARIANT_BOOL done;
    catalog->load(Variant(file), &done);
    return catalog;
}

} // namespace

int main() {
    const int parts = 1000;
    const std::string root = (fs::temp_directory_path() / "qvr-files-bench").string() + "/";
    fs::remove_all(root);
    makeCatalog(root + "original/", parts);

    // The tables opened alone, and the same walk that lists their files.
    Ref<IQVRCatalog> catalog = load(root + "original/catalog.xml");
    auto start = std::chrono::steady_clock::now();
    Ref<IQVRCatalogObjectList> chapters, partList;
    catalog->get_childNodes(&chapters);
    Ref<IQVRCatalogObject> chapter;
    chapters->getItem(1, &chapter);
    chapter->get_childNodes(&partList);
    for (Ref<IQVRCatalogObject> part : *partList) {
        Ref<IQVRCatalogTable> table;
        query<IQVRCatalogPart>(part)->getTable(0, &table);
    }
    const double open = secondsSince(start);

    catalog = load(root + "original/catalog.xml");
    start = std::chrono::steady_clock::now();
    Ref<IQVRCatalogObjectList> files;
    catalog->getReferencedFiles(VARIANT_TRUE, &files);
    const double listing = secondsSince(start);
    std::int32_t count = 0;
    files->get_count(&count);

    // Each reference copied with its pointer rewritten.
    const String copyBase(root + "copy/");
    start = std::chrono::steady_clock::now();
    int failed = 0;
    for (Ref<IQVRCatalogObject> item : *files) {
        Ref<IQVRCatalogReference> reference = query<IQVRCatalogReference>(item);
        String folder, name;
        reference->get_directory(&folder);
        reference->get_fileName(&name);
        if (FAILED(reference->copyTo(copyBase, folder, name, VARIANT_TRUE, VARIANT_TRUE))) ++failed;
    }
    const double copying = secondsSince(start);

    // The same files copied by the standard library.
    start = std::chrono::steady_clock::now();
    fs::create_directories(root + "plain/img");
    fs::create_directories(root + "plain/tables");
    for (const auto& entry : fs::recursive_directory_iterator(root + "original/"))
        if (entry.is_regular_file() && entry.path().filename() != "catalog.xml")
            fs::copy_file(entry.path(),
                          root + "plain/" + fs::relative(entry.path(), root + "original").string());
    const double plain = secondsSince(start);

    // The save that carrying includes: the catalog with every table open, in place.
    catalog = load(root + "original/catalog.xml");
    catalog->getReferencedFiles(VARIANT_TRUE, &files);
    start = std::chrono::steady_clock::now();
    VARIANT_BOOL saved;
    catalog->save(&saved);
    const double save = secondsSince(start);

    // The whole catalog carried: copies, pointers, the save of the catalog and its tables.
    catalog = load(root + "original/catalog.xml");
    start = std::chrono::steady_clock::now();
    const HRESULT relocated =
        RelocateCatalog(catalog, root + "carried", "catalog.xml", VARIANT_FALSE);
    const double carrying = secondsSince(start);

    const double n = count;
    std::printf("%d parts, %d references (%d failed copies, relocation %s)\n", parts, count, failed,
                relocated == S_OK ? "whole" : "FAILED");
    std::printf("list (deep, opens every table) %.3f s, %.1f us per reference; "
                "opening the tables alone %.3f s: ratio %.2f\n",
                listing, listing / n * 1e6, open, listing / open);
    std::printf("copyTo each reference          %.3f s, %.1f us per reference; "
                "plain copies %.3f s: ratio %.1f\n",
                copying, copying / n * 1e6, plain, copying / plain);
    std::printf("RelocateCatalog (copy)         %.3f s, %.1f us per reference; "
                "of which saving the catalog and its tables in place alone %.3f s: ratio %.2f\n",
                carrying, carrying / n * 1e6, save, carrying / save);
    fs::remove_all(root);
    return 0;
}
