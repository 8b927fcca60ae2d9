// Lists of objects: live lists of children, plain lists, and their enumerators.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"
#include "core/object_vector.h"

namespace qvr::testing {
namespace {

struct Tree {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> box = newChapter(catalog, "Box");
    Ref<IQVRCatalogChapter> a = newChapter(catalog, "A");
    Ref<IQVRCatalogPart> b = newPart(catalog, "B");
    Ref<IQVRCatalogChapter> c = newChapter(catalog, "C");
    Tree() {
        EXPECT_EQ(catalog->appendChild(box, nullptr), S_OK);
        EXPECT_EQ(box->appendChild(a, nullptr), S_OK);
        EXPECT_EQ(box->appendChild(b, nullptr), S_OK);
    }
};

TEST(ObjectList, ALiveListFollowsChangesMadeElsewhere) {
    Tree t;
    Ref<IQVRCatalogObjectList> list;
    ASSERT_EQ(t.box->get_childNodes(&list), S_OK);
    EXPECT_EQ(namesIn(list), "A B");

    // Through the owner, by index, by key; a second list of the same owner follows too.
    Ref<IQVRCatalogObjectList> again;
    ASSERT_EQ(t.box->get_childNodes(&again), S_OK);
    ASSERT_EQ(t.box->insertBefore(t.c, Variant(String(keyOf(t.b))), nullptr), S_OK);
    EXPECT_EQ(namesIn(list), "A C B");
    ASSERT_EQ(t.box->removeChild(t.a, nullptr), S_OK);
    EXPECT_EQ(namesIn(list), "C B");
    EXPECT_EQ(namesIn(again), "C B");

    // Additions to another object of the document do not enter.
    ASSERT_EQ(t.c->appendChild(t.a, nullptr), S_OK);
    ASSERT_EQ(t.catalog->appendChild(newChapter(t.catalog, "D"), nullptr), S_OK);
    EXPECT_EQ(namesIn(list), "C B");

    // Through the list itself: the owner inserts, the event fills the list, exactly once.
    VARIANT_BOOL done = VARIANT_FALSE;
    Ref<IQVRCatalogChapter> e = newChapter(t.catalog, "E");
    ASSERT_EQ(list->appendChild(e, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(namesIn(list), "C B E");
    EXPECT_EQ(childTags(t.box), "Desc Chapter Part Chapter");

    // Removal through the list by index and by key (in another case) goes to the owner.
    ASSERT_EQ(list->removeChild(Variant(std::int32_t{1}), &done), S_OK);
    std::string key = keyOf(e);
    for (char& ch : key) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    ASSERT_EQ(list->removeChild(Variant(String(key)), &done), S_OK);
    EXPECT_EQ(namesIn(list), "B");
    EXPECT_EQ(childTags(t.box), "Desc Part");

    // A cleared list fills again by new events only.
    ASSERT_EQ(list->clear(), S_OK);
    ASSERT_EQ(t.box->appendChild(t.c, nullptr), S_OK);
    EXPECT_EQ(namesIn(list), "C");
    EXPECT_EQ(namesIn(again), "B C");
}

TEST(ObjectList, ItemsByIndexAndByKeyWithTheirMessages) {
    Tree t;
    Ref<IQVRCatalogObjectList> list;
    ASSERT_EQ(t.box->get_childNodes(&list), S_OK);
    Ref<IQVRCatalogObject> item;
    std::int32_t count = 0;
    ASSERT_EQ(list->get_count(&count), S_OK);
    EXPECT_EQ(count, 2);

    ASSERT_EQ(list->get_item(Variant(std::int32_t{2}), &item), S_OK);
    EXPECT_EQ(nameOf(item), "B");
    ASSERT_EQ(list->get_item(Variant("2.0"), &item), S_FALSE); // a text is a key
    ASSERT_EQ(list->get_item(Variant(2.0), &item), S_OK);      // a number is an index
    EXPECT_EQ(nameOf(item), "B");
    ASSERT_EQ(list->get_item(Variant(String(keyOf(t.a))), &item), S_OK);
    EXPECT_EQ(nameOf(item), "A");

    lastError();
    EXPECT_EQ(list->get_item(Variant(std::int32_t{0}), &item), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index must not be 0 (one - based index).");
    EXPECT_FALSE(item);
    EXPECT_EQ(list->get_item(Variant(std::int32_t{3}), &item), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index is out of range.");
    // A missing key is reported with E_INVALIDARG and answered as a mere miss.
    EXPECT_EQ(list->get_item(Variant("nothing"), &item), S_FALSE);
    ErrorInfo info;
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(info.description, "No object with given id found.");
    EXPECT_EQ(list->insertBefore(t.c, Variant(std::int32_t{0}), nullptr), E_POINTER);

    // getItem: plain statuses, no messages.
    EXPECT_EQ(list->getItem(0, &item), E_INVALIDARG);
    EXPECT_EQ(list->getItem(3, &item), E_FAIL);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(list->getItem(1, nullptr), E_POINTER);
}

// Lookups by key stay those of a walk through the list while the list and the keys its items read
// from the document change between them: first match, case ignored.
TEST(ObjectList, KeysFollowChangesOfTheListAndOfTheDocument) {
    Tree t;
    Ref<IQVRCatalogObjectList> list;
    ASSERT_EQ(t.box->get_childNodes(&list), S_OK);
    auto found = [&](const std::string& key) {
        Ref<IQVRCatalogObject> item;
        // Twice: the second lookup after a change answers from what the list remembers.
        list->get_item(Variant(String(key)), &item);
        return list->get_item(Variant(String(key)), &item) == S_OK ? nameOf(item) : "-";
    };
    EXPECT_EQ(found(keyOf(t.b)), "B");
    Ref<IXMLDOMElement> a = elementOf(t.a), b = elementOf(t.b);
    const std::string oldKey = keyOf(t.a);
    ASSERT_EQ(a->setAttribute("id", "Key-1"), S_OK); // straight through the document
    EXPECT_EQ(found("KEY-1"), "A");
    EXPECT_EQ(found(oldKey), "-");
    ASSERT_EQ(b->setAttribute("id", "key-1"), S_OK);
    EXPECT_EQ(found("key-1"), "A");
    ASSERT_EQ(t.box->insertBefore(t.c, Variant(String("key-1")), nullptr), S_OK);
    ASSERT_EQ(t.box->removeChild(t.a, nullptr), S_OK);
    EXPECT_EQ(found("Key-1"), "B");
    EXPECT_EQ(found(keyOf(t.c)), "C");
}

TEST(ObjectList, AListWithoutOwnerRefusesRemovalByIndexButRemovesByKey) {
    Tree t;
    Ref<CQVRCatalogObjectVector> plain = makeObject<CQVRCatalogObjectVector>();
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(plain->appendChild(t.a, &done), S_OK);
    ASSERT_EQ(plain->appendChild(t.b, &done), S_OK);
    ASSERT_EQ(plain->insertBefore(t.c, Variant(std::int32_t{1}), &done), S_OK);
    EXPECT_EQ(namesIn(plain), "C A B");
    EXPECT_EQ(plain->insertBefore(t.c, Variant(std::int32_t{4}), &done), E_INVALIDARG);
    EXPECT_EQ(lastError(), "Index is out of range.");
    EXPECT_EQ(plain->insertBefore(t.c, Variant(static_cast<IUnknown*>(t.b.get())), &done), S_OK);
    EXPECT_EQ(namesIn(plain), "C A C B");

    EXPECT_EQ(plain->removeChild(Variant(std::int32_t{1}), &done), S_FALSE);
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(plain->removeChild(Variant(String(keyOf(t.a))), &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(namesIn(plain), "C C B");
    EXPECT_EQ(plain->removeChild(Variant("nothing"), &done), S_FALSE);
    EXPECT_EQ(lastError(), "No object with given id found.");
    EXPECT_EQ(childTags(t.box), "Desc Chapter Part"); // the document is not touched
}

TEST(ObjectList, EnumeratorsWalkByPosition) {
    Tree t;
    Ref<IQVRCatalogObjectList> list;
    ASSERT_EQ(t.box->get_childNodes(&list), S_OK);
    Ref<IUnknown> unknown;
    ASSERT_EQ(list->get__NewEnum(&unknown), S_OK);
    Ref<IEnumVARIANT> walk = query<IEnumVARIANT>(unknown);
    ASSERT_TRUE(walk);

    Variant items[3];
    std::uint32_t fetched = 9;
    EXPECT_EQ(walk->Next(2, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(walk->Next(2, items, nullptr), E_POINTER);
    ASSERT_EQ(walk->Next(1, items, nullptr), S_OK);
    EXPECT_EQ(nameOf(query<IQVRCatalogObject>(items[0].object())), "A");
    Ref<IEnumVARIANT> copy;
    ASSERT_EQ(walk->Clone(&copy), S_OK);
    EXPECT_EQ(walk->Next(3, items, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(nameOf(query<IQVRCatalogObject>(items[0].object())), "B");
    EXPECT_EQ(items[0].vt(), VT_DISPATCH);

    // The clone stands where its source stood; Skip past the end says so.
    EXPECT_EQ(copy->Skip(0), S_OK);
    EXPECT_EQ(copy->Skip(2), S_FALSE);
    EXPECT_EQ(copy->Next(1, items, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    ASSERT_EQ(copy->Reset(), S_OK);
    EXPECT_EQ(copy->Next(3, items, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2u);
}

TEST(ObjectList, ListsKeepTheirRootAliveAndLeaveNothingBehind) {
    {
        Ref<IQVRCatalogObjectList> list;
        {
            Tree t;
            Listener listener(t.catalog);
            ASSERT_EQ(t.catalog->get_childNodes(&list), S_OK);
        }
        // The list still hears its catalog, which it keeps alive through its owner.
        Ref<IQVRCatalogObject> box;
        ASSERT_EQ(list->getItem(1, &box), S_OK);
        Ref<IQVRCatalogObject> catalog;
        ASSERT_EQ(box->get_catalog(&catalog), S_OK);
        Ref<IQVRCatalog> root = query<IQVRCatalog>(catalog);
        ASSERT_EQ(root->appendChild(newChapter(root, "Late"), nullptr), S_OK);
        EXPECT_EQ(namesIn(list), "Box Late");
        EXPECT_EQ(CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

} // namespace
} // namespace qvr::testing
