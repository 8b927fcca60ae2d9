// Which files a catalog needs, and copying or moving them with their pointers.
#include <cerrno>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

#include "files/referenced_files_fixture.h"
#include "platform/file/file_calls.h"

namespace qvr::testing {
namespace {

// The system's calls, with any opening for writing inside `folder` refused as a folder that
// nobody may write would refuse it, and `failing` ("fsync", "write") failing everywhere.
class RefusingCalls : public file::FileCalls {
public:
    std::string folder;
    std::string failing;
    int open(const char* path, int flags, mode_t mode) override {
        if (!folder.empty() && (flags & O_CREAT) && std::string(path).rfind(folder, 0) == 0) {
            errno = EACCES;
            return -1;
        }
        return FileCalls::open(path, flags, mode);
    }
    ssize_t write(int fd, const void* data, std::size_t size) override {
        return failing == "write" ? FileCalls::write(fd, data, size / 2)
                                  : FileCalls::write(fd, data, size);
    }
    int fsync(int fd) override {
        if (failing != "fsync") return FileCalls::fsync(fd);
        errno = EIO;
        return -1;
    }
};

std::string pointerOf(IQVRCatalogReference* reference) {
    String url;
    reference->get_url(&url);
    return url.str();
}

TEST_F(ReferencedFiles, ListsEveryPointerInWalkOrderDeepOrShallow) {
    Ref<IQVRCatalog> loaded = loadCatalog(path("catalog.xml"));
    // Deep, from the catalog: its own documents, images and link, then down the chapters into
    // the part and its table, whose pointers come ahead of the table's own.
    EXPECT_EQ(listed(referencesOf(loaded, VARIANT_TRUE)),
              "28 docs/manual.pdf | 3 img/m8.png | 4 https://acme.example/ | 3 img/m8.png | "
              "33 drawings/common.dwg | 39 drawings/a.dxf | 39 drawings/b.dxf | "
              "40 recipes/cut.rcp | 35 sheets/a.pdf | 2 tables/m8.xml");
    // Shallow: the catalog's own singletons only; a part its media and its table, not inside.
    EXPECT_EQ(listed(referencesOf(loaded, VARIANT_FALSE)),
              "28 docs/manual.pdf | 3 img/m8.png | 4 https://acme.example/");
    Ref<IQVRCatalogObject> m8;
    ASSERT_EQ(loaded->findById(keyOf(part), &m8), S_OK);
    EXPECT_EQ(listed(referencesOf(m8, VARIANT_FALSE)), "3 img/m8.png | 2 tables/m8.xml");
    // Only -1 is true.
    EXPECT_EQ(listed(referencesOf(m8, 1)), "3 img/m8.png | 2 tables/m8.xml");

    // Every reference knows its owner, its object and both forms of its pointer, the table's
    // relative to the catalog, the drawings' to the table's own folder.
    const auto all = referencesOf(loaded, VARIANT_TRUE);
    String absolute, name, extension, folder;
    ASSERT_EQ(all[5]->get_absoluteUrl(&absolute), S_OK);
    EXPECT_EQ(absolute.str(), fileUrl(path("tables/drawings/a.dxf")));
    EXPECT_EQ(keyOf(all[5]), absolute.str());
    ASSERT_EQ(all[9]->get_absoluteUrl(&absolute), S_OK);
    EXPECT_EQ(absolute.str(), fileUrl(path("tables/m8.xml")));
    Ref<IQVRCatalogObject> owner, object;
    ASSERT_EQ(all[9]->get_owner(&owner), S_OK);
    ASSERT_EQ(all[9]->get_object(&object), S_OK);
    EXPECT_EQ(keyOf(owner), keyOf(part));
    EXPECT_EQ(keyOf(object), keyOf(part));
    ASSERT_EQ(all[0]->get_object(&object), S_OK);
    QVRObjectType type = qvrCatalog;
    object->get_objectType(&type);
    EXPECT_EQ(type, qvrURL);
    all[0]->get_objectType(&type);
    EXPECT_EQ(type, qvrReference);
    EXPECT_EQ(all[0]->get_fileName(&name), S_OK);
    EXPECT_EQ(all[0]->get_extension(&extension), S_OK);
    EXPECT_EQ(all[0]->get_directory(&folder), S_OK);
    EXPECT_EQ(name.str() + " " + extension.str() + " " + folder.str(), "manual.pdf .pdf docs/");
    // A link has no file name, and no file to copy: nothing happens to it.
    EXPECT_EQ(all[2]->get_fileName(&name), S_OK);
    EXPECT_EQ(name.str(), "");
    EXPECT_EQ(all[2]->copyTo(fileUrl(path("out/")), "", "x", VARIANT_TRUE, VARIANT_TRUE), S_FALSE);
    EXPECT_EQ(all[2]->moveTo(fileUrl(path("out/")), "", "x", VARIANT_TRUE), S_FALSE);
    EXPECT_EQ(pointerOf(all[2]), "https://acme.example/");
    EXPECT_FALSE(holds("out"));
    // put_url rewrites the pointer through its holder and the key follows; a table's refuses.
    ASSERT_EQ(all[1]->put_url("img/other.png"), S_OK);
    EXPECT_EQ(keyOf(all[1]), fileUrl(path("img/other.png")));
    EXPECT_EQ(textAt(loaded, "Images/Image/URL/@xlink:href"), "img/other.png");
    EXPECT_EQ(all[9]->put_url("elsewhere.xml"), E_NOTIMPL);
    EXPECT_EQ(pointerOf(all[9]), "tables/m8.xml");
    // The reference itself holds nothing.
    Ref<IQVRCatalogObjectList> none;
    EXPECT_EQ(all[0]->getReferencedFiles(VARIANT_TRUE, &none), S_FALSE);
    EXPECT_EQ(none, nullptr);
}

TEST_F(ReferencedFiles, CopiedCatalogLoadsFromItsNewFolderWithEqualValues) {
    const std::string target = path("copy") + "/";
    Ref<IQVRCatalog> loaded = loadCatalog(path("catalog.xml"));
    for (const auto& reference : referencesOf(loaded, VARIANT_TRUE)) {
        String base, folder, name;
        Ref<IQVRCatalogObject> owner, root;
        reference->get_owner(&owner);
        owner->get_catalog(&root);
        // A table's pointers are relative to the table's folder, which moves along with it.
        QVRObjectType rootType = qvrCatalog;
        root->get_objectType(&rootType);
        base = fileUrl(rootType == qvrTable ? target + "tables/" : target);
        reference->get_directory(&folder);
        reference->get_fileName(&name);
        const HRESULT hr = reference->copyTo(base, folder, name, VARIANT_FALSE, VARIANT_TRUE);
        EXPECT_TRUE(hr == S_OK || hr == S_FALSE) << pointerOf(reference) << " " << lastError();
    }
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(loaded->saveAs(Variant(target + "catalog.xml"), &ok), S_OK) << lastError();

    Ref<IQVRCatalog> copy = loadCatalog(target + "catalog.xml");
    Ref<IQVRCatalogObject> copiedPart, originalPart;
    ASSERT_EQ(copy->findById(keyOf(part), &copiedPart), S_OK);
    Ref<IQVRCatalogTable> table = openTable(query<IQVRCatalogPart>(copiedPart));
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(urlOf(table), fileUrl(target + "tables/m8.xml"));
    Ref<IQVRCatalog> original = loadCatalog(path("catalog.xml"));
    ASSERT_EQ(original->findById(keyOf(part), &originalPart), S_OK);
    Ref<IQVRCatalogTable> originalTable = openTable(query<IQVRCatalogPart>(originalPart));
    auto twice = [](IQVRCatalogTable* of, const char* row) {
        Variant twiceColumn, value;
        Ref<IQVRCatalogObjectList> columns;
        Ref<IQVRCatalogObject> column;
        of->get_childNodes(&columns);
        columns->get_item(Variant(2), &column);
        EXPECT_EQ(query<IQVRTableCalculatedColumn>(column)->calculate(Variant(row), &value), S_OK);
        return value.i4();
    };
    for (const char* row : {"A", "B"}) EXPECT_EQ(twice(table, row), twice(originalTable, row));
    EXPECT_EQ(twice(table, "B"), 80);
    // Every file came along with its content, and the originals stayed where they were.
    for (const std::string& file : pointedFiles) {
        EXPECT_EQ(readFile("copy/" + file), "content of " + file) << file;
        EXPECT_EQ(readFile(file), "content of " + file) << file;
    }
    EXPECT_EQ(listed(referencesOf(copy, VARIANT_TRUE)),
              listed(referencesOf(original, VARIANT_TRUE)));
    EXPECT_EQ(textAt(original, "Images/Image/URL/@xlink:href"), "img/m8.png");
}

TEST_F(ReferencedFiles, MoveDeletesItsSourceOnlyOnceTheCopyIsWhole) {
    Ref<IQVRCatalog> loaded = loadCatalog(path("catalog.xml"));
    const auto all = referencesOf(loaded, VARIANT_TRUE);
    IQVRCatalogReference* manual = all[0];
    const String outside = fileUrl(path("locked") + "/");

    // A folder nobody may write: the system's reason, the pointer and the file as they were.
    std::filesystem::create_directories(path("locked"));
    std::filesystem::permissions(path("locked"), std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::owner_exec);
    RefusingCalls calls;
    calls.folder = path("locked");
    {
        file::FileCalls::Scope scope(calls);
        EXPECT_EQ(manual->moveTo(outside, "", "manual.pdf", VARIANT_TRUE),
                  HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    }
    EXPECT_EQ(lastError(), "Unable to copy file manual.pdf from " +
                               fileUrl(path("docs/manual.pdf")) + " to " +
                               fileUrl(path("locked/")) + ". Permission denied.");
    EXPECT_EQ(pointerOf(manual), "docs/manual.pdf");
    EXPECT_TRUE(holds("docs/manual.pdf"));
    EXPECT_TRUE(std::filesystem::is_empty(path("locked")));
    std::filesystem::permissions(path("locked"), std::filesystem::perms::owner_all);

    // A copy cut short by the device, or never flushed, leaves no destination and the source.
    calls.folder.clear();
    for (const char* failing : {"write", "fsync"}) {
        calls.failing = failing;
        file::FileCalls::Scope scope(calls);
        EXPECT_NE(manual->moveTo(outside, "", "manual.pdf", VARIANT_TRUE), S_OK) << failing;
        EXPECT_TRUE(holds("docs/manual.pdf")) << failing;
        EXPECT_TRUE(std::filesystem::is_empty(path("locked"))) << failing;
        EXPECT_EQ(pointerOf(manual), "docs/manual.pdf");
    }

    // Onto itself, by another spelling: nothing is copied or deleted, and the caller hears so.
    EXPECT_EQ(manual->moveTo(fileUrl(path("img/../")), "docs/", "manual.pdf", VARIANT_TRUE),
              S_FALSE);
    EXPECT_NE(lastError().find("is already at its destination"), std::string::npos);
    EXPECT_EQ(readFile("docs/manual.pdf"), "content of docs/manual.pdf");

    // A whole move: folders made, the copy readable and writable though the source was not,
    // the source gone, the pointer relative to the new base.
    std::filesystem::permissions(path("docs/manual.pdf"), std::filesystem::perms::owner_read);
    EXPECT_EQ(manual->moveTo(outside, "new/deep/", "guide.pdf", VARIANT_FALSE), S_OK)
        << lastError();
    EXPECT_FALSE(holds("docs/manual.pdf"));
    EXPECT_EQ(readFile("locked/new/deep/guide.pdf"), "content of docs/manual.pdf");
    EXPECT_TRUE((std::filesystem::status(path("locked/new/deep/guide.pdf")).permissions() &
                 std::filesystem::perms::owner_write) != std::filesystem::perms::none);
    EXPECT_EQ(pointerOf(manual), "new/deep/guide.pdf");
    EXPECT_EQ(keyOf(manual), fileUrl(path("locked/new/deep/guide.pdf")));

    // Copying onto an existing file without overwrite keeps that file, and points at it.
    IQVRCatalogReference* image = all[1];
    std::ofstream(path("locked/kept.png")) << "kept";
    EXPECT_EQ(image->copyTo(outside, "", "kept.png", VARIANT_FALSE, VARIANT_FALSE), S_OK);
    EXPECT_EQ(readFile("locked/kept.png"), "kept");
    EXPECT_EQ(pointerOf(image), "kept.png");
    EXPECT_TRUE(holds("img/m8.png"));
    // A base that is no local folder is refused before anything is touched.
    EXPECT_EQ(image->copyTo("https://acme.example/", "", "m8.png", VARIANT_TRUE, VARIANT_TRUE),
              E_NOTIMPL);
    EXPECT_EQ(lastError(), "Uploading file to internet is not yet supported.");
}

TEST_F(ReferencedFiles, CatalogMovesWholeOrNotAtAll) {
    Ref<IQVRCatalog> loaded = loadCatalog(path("catalog.xml"));
    const std::string before = listed(referencesOf(loaded, VARIANT_TRUE));
    const String moved(path("moved"));

    // A part whose table does not open would leave its file behind: nothing is done.
    Ref<IQVRCatalogPart> broken = newPart(loaded, "M10");
    std::ofstream(path("tables/m10.xml")) << "not a table";
    ASSERT_EQ(broken->put_tableRef("tables/m10.xml"), S_OK);
    Ref<IQVRCatalogObject> bolts;
    ASSERT_EQ(loaded->findById(keyOf(chapter), &bolts), S_OK);
    ASSERT_EQ(bolts->appendChild(broken, nullptr), S_OK);
    EXPECT_EQ(RelocateCatalog(loaded, moved, "catalog.xml", VARIANT_TRUE), E_FAIL);
    EXPECT_NE(lastError().find("cannot be carried whole"), std::string::npos);
    EXPECT_FALSE(holds("moved"));
    ASSERT_EQ(bolts->removeChild(broken, nullptr), S_OK);

    // The copy of the reference cell's file fails after the others were made: every copy goes,
    // every pointer comes back, every old file stays, and the failure is the copy's.
    RefusingCalls calls;
    calls.folder = path("moved/tables/sheets");
    {
        file::FileCalls::Scope scope(calls);
        EXPECT_EQ(RelocateCatalog(loaded, moved, "catalog.xml", VARIANT_TRUE),
                  HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    }
    EXPECT_EQ(lastError().rfind("Unable to copy file a.pdf from ", 0), 0u);
    EXPECT_EQ(listed(referencesOf(loaded, VARIANT_TRUE)), before);
    for (const std::string& file : pointedFiles) {
        EXPECT_EQ(readFile(file), "content of " + file) << file;
        EXPECT_FALSE(holds("moved/" + file)) << file;
    }
    EXPECT_FALSE(holds("moved/catalog.xml"));
    EXPECT_EQ(listed(referencesOf(loadCatalog(path("catalog.xml")), VARIANT_TRUE)), before);

    // Then whole: the two pointers to the image follow its one copy, and nothing stays behind.
    ASSERT_EQ(RelocateCatalog(loaded, moved, "catalog.xml", VARIANT_TRUE), S_OK) << lastError();
    for (const std::string& file : pointedFiles) {
        EXPECT_EQ(readFile("moved/" + file), "content of " + file) << file;
        EXPECT_FALSE(holds(file)) << file;
    }
    EXPECT_FALSE(holds("catalog.xml"));
    EXPECT_FALSE(holds("tables/m8.xml"));
    Ref<IQVRCatalog> reloaded = loadCatalog(path("moved/catalog.xml"));
    const auto all = referencesOf(reloaded, VARIANT_TRUE);
    EXPECT_EQ(listed(all), before);
    EXPECT_EQ(keyOf(all[1]), fileUrl(path("moved/img/m8.png")));
    EXPECT_EQ(keyOf(all[3]), keyOf(all[1]));
    EXPECT_EQ(keyOf(all[5]), fileUrl(path("moved/tables/drawings/a.dxf")));
}

} // namespace
} // namespace qvr::testing
