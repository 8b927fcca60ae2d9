// Lists the files a catalog points at and carries the catalog with all of them to a new folder:
//   copy_catalog FOLDER   makes FOLDER/original (a catalog with an image and a part's table),
//                         lists its files, and copies it all to FOLDER/copy
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <qvr/qvr.h>

using namespace qvr;

namespace {

bool worked(HRESULT hr, const char* what) {
    if (SUCCEEDED(hr)) return true;
    ErrorInfo info;
    std::printf("%s failed: %s\n", what, GetErrorInfo(&info) ? info.description.c_str() : "");
    return false;
}

// A catalog in `folder` whose part "M8" shows the image img/m8.png and has the table
// tables/m8.xml.
bool makeCatalog(const std::string& folder) {
    std::filesystem::create_directories(folder + "img");
    std::filesystem::create_directories(folder + "tables");
    std::ofstream(folder + "img/m8.png") << "an image";
    Ref<IQVRCatalogTable> table;
    Ref<IQVRCatalog> catalog;
    Ref<IQVRCatalogChapter> chapter;
    Ref<IQVRCatalogPart> part;
    Ref<IQVRCatalogURL> url;
    Ref<IQVRCatalogImage> image;
    Ref<IQVRCatalogImages> images;
    VARIANT_BOOL ok = VARIANT_FALSE;
    return worked(CreateCatalogTable(&table), "CreateCatalogTable") &&
           worked(table->create(folder + "tables/", "Bolts", "en", &ok), "create") &&
           worked(table->saveAs(Variant(folder + "tables/m8.xml"), &ok), "saveAs") &&
           worked(CreateCatalog(&catalog), "CreateCatalog") &&
           worked(catalog->create(folder, "Fasteners", "en", &ok), "create") &&
           worked(catalog->createChapter("Bolts", &chapter), "createChapter") &&
           worked(catalog->appendChild(chapter, nullptr), "appendChild") &&
           worked(catalog->createPart("M8", &part), "createPart") &&
           worked(chapter->appendChild(part, nullptr), "appendChild") &&
           worked(catalog->createURL("img/m8.png", "M8", "en", &url), "createURL") &&
           worked(catalog->createImage(url, &image), "createImage") &&
           worked(catalog->createImages(image, &images), "createImages") &&
           worked(part->putref_images(images), "putref_images") &&
           worked(part->put_tableRef("tables/m8.xml"), "put_tableRef") &&
           worked(catalog->saveAs(Variant(folder + "catalog.xml"), &ok), "saveAs");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::printf("usage: copy_catalog FOLDER\n");
        return 2;
    }
    const std::string folder = std::filesystem::absolute(argv[1]).string() + "/";
    if (!makeCatalog(folder + "original/")) return 1;
    Ref<IQVRCatalog> catalog;
    VARIANT_BOOL done = VARIANT_FALSE;
    if (!worked(CreateCatalog(&catalog), "CreateCatalog") ||
        !worked(catalog->load(Variant(folder + "original/catalog.xml"), &done), "load"))
        return 1;
    // docs-begin: list
    Ref<IQVRCatalogObjectList> files;
    if (!worked(catalog->getReferencedFiles(VARIANT_TRUE, &files), "getReferencedFiles")) return 1;
    for (Ref<IQVRCatalogObject> item : *files) {
        Ref<IQVRCatalogReference> reference = query<IQVRCatalogReference>(item);
        std::uint32_t kind = 0;
        String pointer, fileName;
        reference->get_kind(&kind);
        reference->get_url(&pointer);
        reference->get_fileName(&fileName);
        std::printf("%-6s %-16s %s\n", kind == qvrPart ? "table" : "image", pointer.c_str(),
                    fileName.c_str());
    }
    // docs-end: list
    // docs-begin: relocate
    if (!worked(RelocateCatalog(catalog, folder + "copy", "catalog.xml", VARIANT_FALSE),
                "RelocateCatalog"))
        return 1;
    // docs-end: relocate
    for (const char* file : {"catalog.xml", "img/m8.png", "tables/m8.xml"})
        std::printf("copy/%s %s\n", file,
                    std::filesystem::exists(folder + "copy/" + file) ? "written" : "missing");
    return 0;
}
