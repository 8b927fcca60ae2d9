// Builds a catalog with one chapter in FOLDER, saves it there as catalog.xml, loads it back as
// another program would and prints what it holds.
#include <cstdio>
#include <filesystem>
#include <string>

#include <qvr/qvr.h>

using namespace qvr;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: build_catalog FOLDER\n");
        return 2;
    }
    const std::string folder = std::filesystem::absolute(argv[1]).string() + "/";
    std::filesystem::create_directories(folder);

    // docs-begin: build
    Ref<IQVRCatalog> cat;
    CreateCatalog(&cat);
    VARIANT_BOOL ok;
    cat->create(folder, "Fasteners", "en", &ok);
    Ref<IQVRCatalogChapter> chapter;
    cat->createChapter("Bolts", &chapter);
    cat->appendChild(chapter, nullptr);
    cat->saveAs(Variant(folder + "catalog.xml"), &ok);
    // docs-end: build
    if (ok != VARIANT_TRUE) return 1;

    Ref<IQVRCatalog> loaded;
    CreateCatalog(&loaded);
    if (loaded->load(Variant(folder + "catalog.xml"), &ok) != S_OK) return 1;
    String name;
    loaded->get_name(&name);
    std::printf("%s\n", name.c_str());
    Ref<IQVRCatalogObjectList> children;
    loaded->get_childNodes(&children);
    for (Ref<IQVRCatalogObject> child : *children) {
        if (Ref<IQVRCatalogChapter> loadedChapter = query<IQVRCatalogChapter>(child)) {
            loadedChapter->get_name(&name);
            std::printf("  %s\n", name.c_str());
        }
    }
    return 0;
}
