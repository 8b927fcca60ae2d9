// The DOM tools' own roads: single children, key checks, positions and the factory.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"
#include "core/child_tool.h"
#include "core/object_factory.h"
#include "core/object_frame.h"
#include "core/singleton_tool.h"

namespace qvr::testing {
namespace {

Ref<IQVRCatalogObject> catalogOf(IQVRCatalogObject* object) {
    return dynamic_cast<ObjectFrame&>(*object).catalogRef();
}

TEST(DomTool, SingleChildrenAreReplacedAndPlaced) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> box = newChapter(catalog, "Box");
    Ref<IQVRCatalogPart> old = newPart(catalog, "Old");
    Ref<IQVRCatalogPart> young = newPart(catalog, "New");
    Ref<IQVRCatalogChapter> first = newChapter(catalog, "First");
    ASSERT_EQ(box->appendChild(old, nullptr), S_OK);
    SingletonTool tool(elementOf(box));
    const Ref<IQVRCatalogObject> inCatalog = catalogOf(box);

    // The newcomer takes the old child's place and parent link; the old one leaves without.
    Ref<IQVRCatalogObject> gone;
    ASSERT_EQ(tool.replaceSingleton(inCatalog, box, "Part", young, &gone), S_OK);
    EXPECT_EQ(nameOf(gone), "Old");
    Ref<IQVRCatalogObject> parent;
    EXPECT_EQ(gone->get_parentNode(&parent), S_FALSE);
    ASSERT_EQ(young->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(box));
    EXPECT_EQ(tool.replaceSingleton(inCatalog, box, "Link", old, &gone), S_FALSE);
    EXPECT_EQ(childTags(box), "Desc Part");
    EXPECT_EQ(tool.replaceSingleton(inCatalog, box, "Part", old, nullptr), E_POINTER);
    EXPECT_EQ(tool.replaceSingleton(nullptr, box, "Part", old, &gone), E_INVALIDARG);

    Ref<IQVRCatalogObject> placed;
    ASSERT_EQ(tool.insertSingletonFirst(inCatalog, box, first, &placed), S_OK);
    ASSERT_EQ(tool.insertSingletonAfter(inCatalog, box, "Desc", old, &placed), S_OK);
    EXPECT_EQ(childTags(box), "Chapter Desc Part Part");
    EXPECT_EQ(placed.get(), static_cast<IQVRCatalogObject*>(old.get()));
    EXPECT_EQ(SingletonTool().insertSingletonFirst(inCatalog, box, first, &placed), E_FAIL);
}

TEST(DomTool, KeyChecksAndPositions) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> box = newChapter(catalog, "Box");
    Ref<IQVRCatalogChapter> a = newChapter(catalog, "A");
    Ref<IQVRCatalogChapter> b = newChapter(catalog, "B");
    ASSERT_EQ(box->appendChild(a, nullptr), S_OK);
    ASSERT_EQ(box->appendChild(b, nullptr), S_OK);
    ChildTool tool(elementOf(box));

    // A wanted value equal to the present one is no change, even where a sibling shares it.
    const String keyOfA(keyOf(a));
    EXPECT_EQ(tool.checkUniqueAttribute(elementOf(a), "id", keyOfA), S_OK);
    EXPECT_EQ(tool.checkUniqueAttribute(elementOf(b), "id", keyOfA), QVR_E_DUPLICATE);
    EXPECT_EQ(tool.checkUniqueAttribute(elementOf(b), "id", String()), QVR_E_DUPLICATE);
    EXPECT_EQ(tool.checkUniqueAttribute(elementOf(b), "NA", String()), S_OK);
    EXPECT_EQ(ChildTool().checkUniqueAttribute(elementOf(b), "id", keyOfA), S_OK);

    Ref<IXMLDOMNode> reference;
    ASSERT_EQ(
        tool.resolveInsertPosition(Variant(std::int32_t{0}), "id", "(Chapter | Part)", &reference),
        S_OK);
    EXPECT_FALSE(reference);
    ASSERT_EQ(
        tool.resolveInsertPosition(Variant(std::int16_t{2}), "id", "(Chapter | Part)", &reference),
        S_OK);
    ASSERT_TRUE(reference);
    String id;
    query<IXMLDOMElement>(reference)->getAttribute("id", &id);
    EXPECT_EQ(id.str(), keyOf(b));
    EXPECT_EQ(tool.resolveInsertPosition(Variant::missing(), "id", "Chapter", &reference), S_OK);
    EXPECT_FALSE(reference);
    // No element has the attribute NA: a key never names a child there.
    EXPECT_EQ(tool.resolveInsertPosition(Variant(keyOfA), "NA", "Chapter", &reference), S_FALSE);
    EXPECT_EQ(tool.resolveInsertPosition(Variant(true), "id", "Chapter", &reference), E_UNEXPECTED);
    // An apostrophe breaks the selection, and its failure comes back as it is.
    EXPECT_TRUE(FAILED(tool.resolveInsertPosition(Variant("it's"), "id", "Chapter", &reference)));

    VARIANT_BOOL contained = VARIANT_FALSE;
    ASSERT_EQ(tool.containsId(b, &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_TRUE);
}

TEST(DomTool, TheFactoryChoosesTheClassByTheExactTag) {
    Ref<IQVRCatalog> catalog = newCatalog();
    VARIANT_BOOL done;
    ASSERT_EQ(catalog->loadXML("<vCAT id='c'><Chapter id='a'/><chapter id='b'/><Part id='p'/>"
                               "<ColumnConstView id='v'/>text</vCAT>",
                               &done),
              S_OK);
    Ref<IXMLDOMElement> root = elementOf(catalog);
    Ref<IXMLDOMNode> node;
    Ref<IQVRCatalogObject> object;
    QVRObjectType type;

    ASSERT_EQ(root->selectSingleNode("Part", &node), S_OK);
    ASSERT_EQ(createObjectOf(node, catalog, nullptr, &object), S_OK);
    ASSERT_EQ(object->get_objectType(&type), S_OK);
    EXPECT_EQ(type, qvrPart);
    Ref<IQVRCatalogObject> parent;
    EXPECT_EQ(object->get_parentNode(&parent), S_FALSE);

    // The case counts; the tag alone chooses, wherever the element stands.
    ASSERT_EQ(root->selectSingleNode("chapter", &node), S_OK);
    EXPECT_EQ(createObjectOf(node, catalog, nullptr, &object), E_FAIL);
    EXPECT_FALSE(object);
    ASSERT_EQ(root->selectSingleNode("ColumnConstView", &node), S_OK);
    ASSERT_EQ(createObjectOf(node, catalog, catalog, &object), S_OK);
    ASSERT_EQ(object->get_objectType(&type), S_OK);
    EXPECT_EQ(type, qvrConstView);

    // A null node fails before the out pointer is looked at; a node without a tag fails at the
    // tag.
    EXPECT_EQ(createObjectOf(nullptr, catalog, nullptr, nullptr), E_FAIL);
    EXPECT_EQ(createObjectOf(node, catalog, nullptr, nullptr), E_POINTER);
    ASSERT_EQ(root->get_lastChild(&node), S_OK);
    EXPECT_TRUE(FAILED(createObjectOf(node, catalog, nullptr, &object)));

    EXPECT_EQ(CXMLDOMTool().parseErrorText(), "");
}

} // namespace
} // namespace qvr::testing
