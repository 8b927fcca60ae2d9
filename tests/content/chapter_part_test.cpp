// Chapters and parts: their properties, the order of their children, and their copies.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"
#include "common/stand_in_classes.h"

namespace qvr::testing {
namespace {

std::string attributeOf(IXMLDOMNode* node, const char* name) {
    String value;
    Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node);
    return element && element->getAttribute(name, &value) == S_OK ? value.str() : "(absent)";
}

TEST(Part, ANewPartHasADescAndAnEmptyTableReference) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    EXPECT_EQ(childTags(part), "Desc TableRef");
    Ref<IXMLDOMElement> element;
    Ref<IXMLDOMNode> url;
    ASSERT_EQ(part->get_domNode(&element), S_OK);
    ASSERT_EQ(element->selectSingleNode("TableRef/URL", &url), S_OK);
    EXPECT_EQ(attributeOf(url, "xlink:actuate"), "onRequest");
    EXPECT_EQ(attributeOf(url, "xlink:href"), "");
    EXPECT_EQ(attributeOf(url, "xlink:show"), "embed");
    EXPECT_EQ(attributeOf(url, "xlink:type"), "simple");
    EXPECT_EQ(attributeOf(element, "visible"), "1");

    String ref("stale");
    EXPECT_EQ(part->get_tableRef(&ref), S_FALSE);
    EXPECT_EQ(ref, "");

    Listener listener(catalog);
    ASSERT_EQ(part->put_tableRef("tables/m8.xml"), S_OK);
    ASSERT_EQ(part->put_tableRef("tables/m8.xml"), S_OK); // unchanged: not heard
    EXPECT_EQ(listener.take(), "changed M8");
    ASSERT_EQ(part->get_tableRef(&ref), S_OK);
    EXPECT_EQ(ref, "tables/m8.xml");
    EXPECT_EQ(part->put_tableRef(nullptr), E_POINTER);

    // A TableRef without URL gets one; a URL without href is left alone.
    ASSERT_EQ(element->selectSingleNode("TableRef/URL", &url), S_OK);
    ASSERT_EQ(query<IXMLDOMElement>(url)->removeAttribute("xlink:href"), S_OK);
    EXPECT_EQ(part->put_tableRef("other.xml"), S_FALSE);
    EXPECT_EQ(part->get_tableRef(&ref), S_FALSE);
    Ref<IXMLDOMNode> holder;
    ASSERT_EQ(element->selectSingleNode("TableRef", &holder), S_OK);
    ASSERT_EQ(holder->removeChild(url, nullptr), S_OK);
    ASSERT_EQ(part->put_tableRef("other.xml"), S_OK);
    EXPECT_EQ(childTags(part), "Desc TableRef");
    ASSERT_EQ(part->get_tableRef(&ref), S_OK);
    EXPECT_EQ(ref, "other.xml");
}

TEST(ChapterAndPart, NameVisibilityAndDescription) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    Listener listener(catalog);

    VARIANT_BOOL visible = VARIANT_FALSE;
    ASSERT_EQ(chapter->get_visible(&visible), S_OK);
    EXPECT_EQ(visible, VARIANT_TRUE);
    ASSERT_EQ(chapter->put_visible(1), S_OK); // only -1 is true
    ASSERT_EQ(chapter->get_visible(&visible), S_OK);
    EXPECT_EQ(visible, VARIANT_FALSE);
    ASSERT_EQ(chapter->put_visible(VARIANT_TRUE), S_OK);
    ASSERT_EQ(chapter->get_visible(&visible), S_OK);
    EXPECT_EQ(visible, VARIANT_TRUE);

    ASSERT_EQ(chapter->put_name(nullptr), S_OK); // a null name is written as ""
    String text("kept");
    ASSERT_EQ(chapter->get_name(&text), S_OK);
    EXPECT_EQ(text, "");
    ASSERT_EQ(chapter->put_desc("Hexagon"), S_OK);
    ASSERT_EQ(chapter->get_desc(&text), S_OK);
    EXPECT_EQ(text, "Hexagon");
    EXPECT_EQ(listener.take(), "changed Bolts | changed Bolts | changed #1 | changed #1");

    // Without the attribute: S_FALSE, true, and the name left as it was. Without Desc: put_desc
    // creates nothing and nobody hears.
    Ref<IXMLDOMElement> element;
    Ref<IXMLDOMNode> desc;
    ASSERT_EQ(chapter->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("visible"), S_OK);
    ASSERT_EQ(element->removeAttribute("name"), S_OK);
    visible = VARIANT_FALSE;
    EXPECT_EQ(chapter->get_visible(&visible), S_FALSE);
    EXPECT_EQ(visible, VARIANT_TRUE);
    EXPECT_EQ(chapter->get_name(&text), S_FALSE);
    EXPECT_EQ(text, "Hexagon");
    ASSERT_EQ(element->selectSingleNode("Desc", &desc), S_OK);
    ASSERT_EQ(element->removeChild(desc, nullptr), S_OK);
    EXPECT_EQ(chapter->put_desc("again"), S_FALSE);
    EXPECT_EQ(chapter->get_desc(&text), S_FALSE);
    EXPECT_EQ(childTags(chapter), "");
    EXPECT_EQ(listener.take(), "");
}

TEST(ChapterAndPart, GroupsLandAtTheirPlaceInTheChildOrder) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    Ref<IQVRCatalogClass> etim;
    Ref<IQVRCatalogClassifications> classes;
    ASSERT_EQ(catalog->createClass("ETIM", "EC000123", &etim), S_OK);
    ASSERT_EQ(catalog->createClassifications(etim, &classes), S_OK);
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(newImage(catalog, "m8.png"), &images), S_OK);
    Listener listener(catalog);

    ASSERT_EQ(part->putref_orderInfo(makeStandIn<StandInOrderInfo>(catalog)->self()), S_OK);
    ASSERT_EQ(part->putref_classifications(classes), S_OK);
    ASSERT_EQ(part->putref_images(images), S_OK);
    EXPECT_EQ(childTags(part), "Desc Images OrderInfo Classifications TableRef");
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(images->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(part));

    // Removed by null, and null again on nothing: both heard.
    ASSERT_EQ(part->putref_images(nullptr), S_OK);
    ASSERT_EQ(part->putref_images(nullptr), S_OK);
    EXPECT_EQ(childTags(part), "Desc OrderInfo Classifications TableRef");
    EXPECT_EQ(listener.take(), "changed M8 | changed M8 | changed M8 | changed M8 | changed M8");

    // Any object lands at the place the operation names, whatever its kind.
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Stand-in");
    ASSERT_EQ(part->putref_link(chapter), S_OK);
    EXPECT_EQ(childTags(part), "Desc Chapter OrderInfo Classifications TableRef");
    Ref<IQVRCatalogLink> link;
    EXPECT_EQ(part->get_link(&link), S_FALSE);
    EXPECT_FALSE(link);

    // A chapter with an ActiveXs keeps it, and a chapter without Desc takes the group first.
    VARIANT_BOOL done;
    ASSERT_EQ(catalog->loadXML("<vCAT id='c'><Chapter id='a'><Desc/><ActiveXs/><Part id='p1'/>"
                               "<Part id='p2'/></Chapter><Chapter id='b'><Part id='p3'/>"
                               "</Chapter></vCAT>",
                               &done),
              S_OK);
    Ref<IQVRCatalogObjectList> chapters;
    Ref<IQVRCatalogObject> first, second;
    ASSERT_EQ(catalog->get_childNodes(&chapters), S_OK);
    ASSERT_EQ(chapters->getItem(1, &first), S_OK);
    ASSERT_EQ(chapters->getItem(2, &second), S_OK);
    Ref<IQVRCatalogExtrinsics> extrinsics;
    ASSERT_EQ(catalog->createExtrinsics(&extrinsics), S_OK);
    ASSERT_EQ(query<IQVRCatalogChapter>(first)->putref_extrinsics(extrinsics), S_OK);
    EXPECT_EQ(childTags(first), "Desc ActiveXs Extrinsics Part Part");
    Ref<IQVRCatalogLink> chapterLink;
    ASSERT_EQ(catalog->createLink(newURL(catalog, "http://example.com/"), &chapterLink), S_OK);
    ASSERT_EQ(query<IQVRCatalogChapter>(second)->putref_link(chapterLink), S_OK);
    EXPECT_EQ(childTags(second), "Link Part");
}

TEST(ChapterAndPart, ChildrenOfChaptersAndParts) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");

    EXPECT_EQ(chapter->appendChild(newImage(catalog, "m8.png"), nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append Chapters or Parts as a child of this object.");
    Ref<IQVRCatalogObject> result = chapter.get();
    EXPECT_EQ(part->appendChild(chapter, &result), S_FALSE);
    EXPECT_FALSE(result);
    EXPECT_EQ(lastError(), "");

    // A part removes like a container, without a guard, though it takes nothing in.
    Ref<IQVRCatalogChapter> stray = newChapter(catalog, "Stray");
    ASSERT_EQ(part->putref_link(stray), S_OK);
    ASSERT_EQ(part->removeChild(stray, &result), S_OK);
    EXPECT_EQ(childTags(part), "Desc TableRef");
    EXPECT_EQ(nameOf(result), "Stray");
}

TEST(ChapterAndPart, ClonesGetNewIds) {
    NestedTree t;
    Ref<IQVRCatalog>& catalog = t.catalog;
    Ref<IQVRCatalogChapter>&top = t.top, &inner = t.inner;
    Ref<IQVRCatalogPart>& part = t.part;
    ASSERT_EQ(part->put_desc("zinc"), S_OK);
    Listener listener(catalog);

    // Deep (exactly -1): every chapter and part of the copy has a new id.
    Ref<IQVRCatalogObject> clone;
    ASSERT_EQ(top->cloneNode(VARIANT_TRUE, &clone), S_OK);
    EXPECT_NE(keyOf(clone), keyOf(top));
    Ref<IQVRCatalogObject> parent, catalogOfClone;
    EXPECT_EQ(clone->get_parentNode(&parent), S_FALSE);
    ASSERT_EQ(clone->get_catalog(&catalogOfClone), S_OK);
    Ref<IQVRCatalogObjectList> level1, level2;
    Ref<IQVRCatalogObject> innerCopy, partCopy;
    ASSERT_EQ(clone->get_childNodes(&level1), S_OK);
    ASSERT_EQ(level1->getItem(1, &innerCopy), S_OK);
    ASSERT_EQ(innerCopy->get_childNodes(&level2), S_OK);
    ASSERT_EQ(level2->getItem(1, &partCopy), S_OK);
    EXPECT_EQ(nameOf(partCopy), "M8");
    EXPECT_NE(keyOf(innerCopy), keyOf(inner));
    EXPECT_NE(keyOf(partCopy), keyOf(part));
    EXPECT_EQ(keyOf(partCopy).size(), 36u);
    // The copy stands in no tree; once inserted beside its source nothing clashes.
    ASSERT_EQ(catalog->appendChild(clone, nullptr), S_OK);
    Ref<IQVRCatalogObject> found;
    ASSERT_EQ(catalog->findById(keyOf(partCopy), &found), S_OK);

    // Deep but not exactly -1: only the top gets a new id.
    ASSERT_EQ(top->cloneNode(1, &clone), S_OK);
    ASSERT_EQ(clone->get_childNodes(&level1), S_OK);
    ASSERT_EQ(level1->getItem(1, &innerCopy), S_OK);
    EXPECT_NE(keyOf(clone), keyOf(top));
    EXPECT_EQ(keyOf(innerCopy), keyOf(inner));

    // A shallow part copy: a new id, a fresh empty table reference, and no Desc.
    ASSERT_EQ(part->put_tableRef("tables/m8.xml"), S_OK);
    listener.take();
    ASSERT_EQ(part->cloneNode(VARIANT_FALSE, &clone), S_OK);
    EXPECT_EQ(childTags(clone), "TableRef");
    String ref;
    EXPECT_EQ(query<IQVRCatalogPart>(clone)->get_tableRef(&ref), S_FALSE);
    EXPECT_NE(keyOf(clone), keyOf(part));
    EXPECT_EQ(listener.take(), ""); // the table steps of a copy are not heard
    EXPECT_EQ(part->cloneNode(VARIANT_FALSE, nullptr), E_POINTER);
}

} // namespace
} // namespace qvr::testing
