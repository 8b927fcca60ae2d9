// The common operations of the frame, seen through chapters, parts and the catalog.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

TEST(Frame, ChecksComeInOrderAndOutValuesAreClearedFirst) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");

    // A null out pointer comes before a null argument.
    EXPECT_EQ(chapter->contains(nullptr, nullptr), E_POINTER);
    VARIANT_BOOL contained = VARIANT_TRUE;
    EXPECT_EQ(chapter->contains(nullptr, &contained), E_INVALIDARG);
    EXPECT_EQ(chapter->get_key(nullptr), E_POINTER);
    EXPECT_EQ(chapter->get_objectType(nullptr), E_POINTER);

    // Out values are cleared: a part has no children and no parent yet.
    Ref<IQVRCatalogObjectList> list;
    Ref<IQVRCatalogObject> object = chapter.get();
    ASSERT_EQ(catalog->get_childNodes(&list), S_OK);
    EXPECT_EQ(part->get_childNodes(&list), S_FALSE);
    EXPECT_FALSE(list);
    EXPECT_EQ(part->get_parentNode(&object), S_FALSE);
    EXPECT_FALSE(object);
    EXPECT_EQ(part->get_catalog(&object), S_OK);
    EXPECT_EQ(keyOf(object), keyOf(catalog));

    // A part takes no children: S_FALSE, a null result and no message.
    lastError();
    object = chapter.get();
    EXPECT_EQ(part->appendChild(chapter, &object), S_FALSE);
    EXPECT_FALSE(object);
    EXPECT_EQ(part->insertBefore(chapter, Variant(), nullptr), E_POINTER);
    EXPECT_EQ(lastError(), "");

    // getValue: an attribute's value, an element's text; nothing selected leaves the value.
    Variant value;
    EXPECT_EQ(chapter->getValue("@name", &value), S_OK);
    EXPECT_EQ(value, Variant("Bolts"));
    EXPECT_EQ(catalog->put_desc("Screws and bolts"), S_OK);
    EXPECT_EQ(catalog->getValue("Desc", &value), S_OK);
    EXPECT_EQ(value, Variant("Screws and bolts"));
    EXPECT_EQ(chapter->getValue("@missing", &value), S_FALSE);
    EXPECT_EQ(value, Variant("Screws and bolts"));
    EXPECT_EQ(chapter->getValue(nullptr, nullptr), E_POINTER);
    // A selection that cannot select tells why.
    EXPECT_EQ(chapter->getValue("@name[", &value), E_FAIL);
    EXPECT_EQ(lastError(), "The selection \"@name[\" is malformed.");
    EXPECT_EQ(chapter->getValue("count(*)", &value), E_FAIL);
    EXPECT_EQ(lastError(), "The selection \"count(*)\" gives a value, not nodes.");
}

TEST(Frame, ErrorInformationIsOfferedForTheClassInterfaceAndTheCommonOne) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<ISupportErrorInfo> chapter = query<ISupportErrorInfo>(newChapter(catalog, "Bolts"));
    ASSERT_TRUE(chapter);
    EXPECT_EQ(chapter->InterfaceSupportsErrorInfo(IQVRCatalogChapter::iid), S_OK);
    EXPECT_EQ(chapter->InterfaceSupportsErrorInfo(IQVRCatalogObject::iid), S_OK);
    EXPECT_EQ(chapter->InterfaceSupportsErrorInfo(IQVRCatalogPart::iid), S_FALSE);
    EXPECT_EQ(query<ISupportErrorInfo>(catalog)->InterfaceSupportsErrorInfo(IQVRCatalog::iid),
              S_OK);

    // A report names the class and the interface.
    Ref<IQVRCatalogChapter> bolts = newChapter(catalog, "Bolts");
    EXPECT_EQ(bolts->appendChild(catalog, nullptr), E_FAIL);
    ErrorInfo info;
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(info.source, "QVRCatalog.Chapter");
    EXPECT_EQ(info.interface, "IQVRCatalogChapter");
    EXPECT_EQ(info.description, "You can only append Chapters or Parts as a child of this object.");
}

TEST(Frame, ContainerInsertionFollowsItsSteps) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> box = newChapter(catalog, "Box");
    Ref<IQVRCatalogChapter> a = newChapter(catalog, "A");
    Ref<IQVRCatalogPart> b = newPart(catalog, "B");
    Ref<IQVRCatalogChapter> c = newChapter(catalog, "C");
    ASSERT_EQ(catalog->appendChild(box, nullptr), S_OK);

    // Wrong type: the class's message, before anything else is looked at.
    EXPECT_EQ(catalog->appendChild(b, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append Chapters as a child of this object.");

    // The inserted object is the caller's own, now linked to its parent.
    Ref<IQVRCatalogObject> inserted;
    ASSERT_EQ(box->appendChild(a, &inserted), S_OK);
    EXPECT_EQ(inserted.get(), static_cast<IQVRCatalogObject*>(a.get()));
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(a->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(box));

    // By one-based index; 0 and past the end append.
    ASSERT_EQ(box->insertBefore(b, Variant(std::int32_t{1}), nullptr), S_OK);
    EXPECT_EQ(childTags(box), "Desc Part Chapter");
    ASSERT_EQ(box->insertBefore(c, Variant(std::int16_t{0}), nullptr), S_OK);
    EXPECT_EQ(childTags(box), "Desc Part Chapter Chapter");

    // By key and by object; a key that names nothing inserts nothing and answers S_FALSE.
    Ref<IQVRCatalogChapter> d = newChapter(catalog, "D");
    Ref<IQVRCatalogChapter> e = newChapter(catalog, "E");
    ASSERT_EQ(box->insertBefore(d, Variant(String(keyOf(a))), nullptr), S_OK);
    ASSERT_EQ(box->insertBefore(e, Variant(static_cast<IUnknown*>(b.get())), nullptr), S_OK);
    Ref<IQVRCatalogObjectList> children;
    ASSERT_EQ(box->get_childNodes(&children), S_OK);
    EXPECT_EQ(namesIn(children), "E B D A C");
    Ref<IQVRCatalogChapter> f = newChapter(catalog, "F");
    EXPECT_EQ(box->insertBefore(f, Variant("no such key"), nullptr), S_FALSE);
    EXPECT_EQ(box->insertBefore(f, Variant(1.5), nullptr), E_UNEXPECTED);
    EXPECT_TRUE(FAILED(box->insertBefore(f, Variant("it's"), nullptr))); // breaks the selection
    EXPECT_EQ(namesIn(children), "E B D A C");

    // A key already among the siblings: message 134. A child moved within its own parent
    // meets itself.
    EXPECT_EQ(box->appendChild(a, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(namesIn(children), "E B D A C");

    // A child that stands elsewhere is moved. Nothing was removed from the box, so its list,
    // which follows events, still names it.
    ASSERT_EQ(catalog->appendChild(a, nullptr), S_OK);
    EXPECT_EQ(childTags(box), "Desc Chapter Part Chapter Chapter");
    EXPECT_EQ(childTags(catalog), "Desc Chapter Chapter");
    EXPECT_EQ(namesIn(children), "E B D A C");
}

TEST(Frame, RemovalKeepsTheOldParentLink) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> box = newChapter(catalog, "Box");
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    ASSERT_EQ(box->appendChild(part, nullptr), S_OK);

    Ref<IQVRCatalogObject> removed;
    ASSERT_EQ(box->removeChild(part, &removed), S_OK);
    ASSERT_TRUE(removed);
    EXPECT_NE(removed.get(), static_cast<IQVRCatalogObject*>(part.get())); // a new wrapper
    EXPECT_EQ(keyOf(removed), keyOf(part));
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(removed->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(box));
    // The DOM refuses what is not a child.
    EXPECT_EQ(box->removeChild(part, nullptr), E_INVALIDARG);
    EXPECT_EQ(box->removeChild(nullptr, nullptr), E_POINTER);
}

TEST(Frame, KeysAndContainment) {
    NestedTree t;
    Ref<IQVRCatalog>& catalog = t.catalog;
    Ref<IQVRCatalogChapter>&box = t.top, &inner = t.inner;
    Ref<IQVRCatalogPart>& part = t.part;

    EXPECT_EQ(keyOf(part).size(), 36u);
    VARIANT_BOOL contained = VARIANT_FALSE;
    ASSERT_EQ(catalog->contains(part, &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_TRUE);
    ASSERT_EQ(inner->contains(box, &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_FALSE);

    // Keys of a GUID family are made with each wrapper: stable on one, different on two.
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(newImage(catalog, "a.png"), &images), S_OK);
    EXPECT_EQ(keyOf(images), keyOf(images));
    EXPECT_EQ(keyOf(images).size(), 36u);
    Ref<IQVRCatalogObject> clone;
    ASSERT_EQ(images->cloneNode(VARIANT_FALSE, &clone), S_OK);
    EXPECT_NE(keyOf(clone), keyOf(images));
    // ... and such a key is found by chance only: not here.
    ASSERT_EQ(box->putref_images(images), S_OK);
    ASSERT_EQ(box->contains(images, &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_FALSE);

    // A key absent from the element: S_FALSE and no text.
    ASSERT_EQ(elementOf(part)->removeAttribute("id"), S_OK);
    String key;
    EXPECT_EQ(part->get_key(&key), S_FALSE);
    EXPECT_TRUE(key.isNull());
}

} // namespace
} // namespace qvr::testing
