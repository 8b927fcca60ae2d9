// Events: what fires, where it arrives, and when nothing is heard.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

TEST(Events, EveryChangeReachesEverySinkOfTheRoot) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Listener first(catalog), second(catalog);

    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    EXPECT_EQ(first.take(), ""); // a new chapter is written without its setters

    ASSERT_EQ(catalog->appendChild(chapter, nullptr), S_OK);
    ASSERT_EQ(chapter->put_name("Nuts"), S_OK);
    EXPECT_EQ(first.take(), "inserted Bolts | changed Nuts");

    // A new part is filled through its own setters, and each of them is heard.
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    EXPECT_EQ(first.take(), "changed #2 | changed M8 | changed M8");

    ASSERT_EQ(chapter->insertBefore(part, Variant(std::int32_t{1}), nullptr), S_OK);
    ASSERT_EQ(chapter->removeChild(part, nullptr), S_OK);
    ASSERT_EQ(catalog->put_name("Fasteners"), S_OK);
    ASSERT_EQ(catalog->put_language("de"), S_OK);
    ASSERT_EQ(catalog->put_desc("All of them"), S_OK);
    EXPECT_EQ(first.take(), "inserted M8 @1 | removed M8 | changed Fasteners | changed Fasteners | "
                            "changed Fasteners");

    // Refused changes are not heard.
    EXPECT_EQ(catalog->put_language("EN"), E_FAIL);
    EXPECT_EQ(catalog->appendChild(part, nullptr), E_FAIL);
    EXPECT_EQ(first.take(), "");
    EXPECT_EQ(second.take(), "inserted Bolts | changed Nuts | changed #2 | changed M8 | changed M8 "
                             "| inserted M8 @1 | removed M8 | changed Fasteners | changed "
                             "Fasteners | changed Fasteners");
}

TEST(Events, FireEventDispatchesByNumberAndAnUnknownNumberIsAnInsertion) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Listener listener(catalog);
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(catalog->fireEvent(qvrEventObjectQuery, chapter, Variant(), &result), S_OK);
    EXPECT_EQ(result, VARIANT_TRUE);
    catalog->fireEvent(12345, chapter, Variant("here"), &result);
    catalog->fireEvent(qvrEventObjectChanged, chapter, Variant(), &result);
    catalog->fireEvent(qvrEventObjectRemoved, chapter, Variant(), &result);
    catalog->fireEvent(qvrEventObjectInserted, chapter, Variant(std::int32_t{3}), &result);
    EXPECT_EQ(listener.take(), "query Bolts -1 | inserted Bolts @here | changed Bolts | "
                               "removed Bolts | inserted Bolts @3");
    EXPECT_EQ(catalog->fireEvent(qvrEventObjectChanged, chapter, Variant(), nullptr), E_POINTER);
}

TEST(Events, NothingIsHeardWithoutARootOrWhileWrappersAreMade) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    Ref<IQVRCatalogChapter> other = newChapter(catalog, "Other");
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    ASSERT_EQ(catalog->appendChild(chapter, nullptr), S_OK);
    ASSERT_EQ(chapter->appendChild(part, nullptr), S_OK);
    Listener listener(catalog);

    // Wrappers made by lookups and lists, and a clone whose table reference is reset.
    Ref<IQVRCatalogObject> found, clone;
    ASSERT_EQ(catalog->findById(keyOf(part), &found), S_OK);
    Ref<IQVRCatalogObjectList> list;
    ASSERT_EQ(chapter->get_childNodes(&list), S_OK);
    ASSERT_EQ(part->cloneNode(VARIANT_FALSE, &clone), S_OK);
    EXPECT_EQ(listener.take(), "");

    // A catalog link to a non-root, or none: the change stands and nobody hears it.
    ASSERT_EQ(other->putref_catalog(chapter), S_OK);
    EXPECT_EQ(other->put_name("Renamed"), S_OK);
    ASSERT_EQ(other->putref_catalog(nullptr), S_OK);
    EXPECT_EQ(other->put_name("Again"), S_OK);
    EXPECT_EQ(nameOf(other), "Again");
    EXPECT_EQ(listener.take(), "");
}

TEST(Events, ASinkThatFailsThrowsOrLeavesDoesNotStopTheNext) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Listener failing(catalog), throwing(catalog), leaving(catalog), last(catalog);
    failing.sink().answer = E_FAIL;
    throwing.sink().throws = true;
    // The third sink unadvises itself on its first event: cookie 3.
    leaving.sink().whenCalled = [&] { EXPECT_EQ(catalog->unadvise(3), S_OK); };

    ASSERT_EQ(catalog->put_name("One"), S_OK);
    ASSERT_EQ(catalog->put_name("Two"), S_OK);
    EXPECT_EQ(failing.take(), "changed One | changed Two");
    EXPECT_EQ(throwing.take(), "changed One | changed Two");
    EXPECT_EQ(leaving.take(), "changed One");
    EXPECT_EQ(last.take(), "changed One | changed Two");

    std::uint32_t cookie = 7;
    EXPECT_EQ(catalog->advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(catalog->unadvise(3), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(catalog->unadvise(99), CONNECT_E_NOCONNECTION);
}

} // namespace
} // namespace qvr::testing
