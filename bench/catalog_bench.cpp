// Figures for building a catalog through the model: parts appended to one chapter (each append
// checks the key among the siblings), a live list of them, lookups by id, and a save.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <vector>

#include <qvr/catalog.h>

using namespace qvr;

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void run(int count) {
    Ref<IQVRCatalog> catalog;
    CreateCatalog(&catalog);
    VARIANT_BOOL ok;
    catalog->create("/tmp/", "Bench", "en", &ok);
    Ref<IQVRCatalogChapter> chapter;
    catalog->createChapter("All", &chapter);
    catalog->appendChild(chapter, nullptr);

    auto start = std::chrono::steady_clock::now();
    std::vector<String> ids;
    for (int i = 0; i < count; ++i) {
        Ref<IQVRCatalogPart> part;
        catalog->createPart("Part", &part);
        chapter->appendChild(part, nullptr);
        String id;
        part->get_key(&id);
        ids.push_back(id);
    }
    const double build = secondsSince(start);

    start = std::chrono::steady_clock::now();
    Ref<IQVRCatalogObjectList> list;
    chapter->get_childNodes(&list);
    const double listing = secondsSince(start);

    start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; i += 10) {
        Ref<IQVRCatalogObject> found;
        catalog->findById(ids[i], &found);
    }
    const double lookups = secondsSince(start);

    const std::string path =
        (std::filesystem::temp_directory_path() / "qvr-catalog-bench.xml").string();
    start = std::chrono::steady_clock::now();
    catalog->saveAs(Variant(path), &ok);
    const double save = secondsSince(start);
    std::filesystem::remove(path);

    std::printf("%7d parts: append %.3f s (%.1f us each), list %.3f s, findById %.1f us each, "
                "save %.3f s\n",
                count, build, build / count * 1e6, listing, lookups / (count / 10) * 1e6, save);
}

} // namespace

int main() {
    for (int count : {1000, 2000, 4000}) run(count);
    return 0;
}
