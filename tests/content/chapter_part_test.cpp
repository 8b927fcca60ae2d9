// Chapters and parts: their properties, the order of their children, and their copies.
#include <gtest/gtest.h>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"

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
    Ref<IXMLDOMElement> element = elementOf(part);
    Ref<IXMLDOMNode> url;
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
    EXPECT_EQ(got(part, &IQVRCatalogPart::get_tableRef), "tables/m8.xml");
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
    EXPECT_EQ(got(part, &IQVRCatalogPart::get_tableRef), "other.xml");
}

TEST(ChapterAndPart, NameVisibilityAndDescription) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    Listener listener(catalog);

    EXPECT_EQ(got(chapter, &IQVRCatalogChapter::get_visible), "-1");
    ASSERT_EQ(chapter->put_visible(1), S_OK); // only -1 is true
    EXPECT_EQ(got(chapter, &IQVRCatalogChapter::get_visible), "0");
    ASSERT_EQ(chapter->put_visible(VARIANT_TRUE), S_OK);
    EXPECT_EQ(got(chapter, &IQVRCatalogChapter::get_visible), "-1");

    ASSERT_EQ(chapter->put_name(nullptr), S_OK); // a null name is written as ""
    EXPECT_EQ(got(chapter, &IQVRCatalogChapter::get_name), "");
    ASSERT_EQ(chapter->put_desc("Hexagon"), S_OK);
    EXPECT_EQ(got(chapter, &IQVRCatalogChapter::get_desc), "Hexagon");
    EXPECT_EQ(listener.take(), "changed Bolts | changed Bolts | changed #1 | changed #1");

    // Without the attribute: S_FALSE, true, and the caller's name left as it was. Without Desc:
    // put_desc creates nothing and nobody hears.
    Ref<IXMLDOMElement> element = elementOf(chapter);
    Ref<IXMLDOMNode> desc;
    ASSERT_EQ(element->removeAttribute("visible"), S_OK);
    ASSERT_EQ(element->removeAttribute("name"), S_OK);
    VARIANT_BOOL visible = VARIANT_FALSE;
    EXPECT_EQ(chapter->get_visible(&visible), S_FALSE);
    EXPECT_EQ(visible, VARIANT_TRUE);
    String text("kept");
    EXPECT_EQ(chapter->get_name(&text), S_FALSE);
    EXPECT_EQ(text, "kept");
    ASSERT_EQ(element->selectSingleNode("Desc", &desc), S_OK);
    ASSERT_EQ(element->removeChild(desc, nullptr), S_OK);
    EXPECT_EQ(chapter->put_desc("again"), S_FALSE);
    EXPECT_EQ(chapter->get_desc(&text), S_FALSE);
    EXPECT_EQ(childTags(chapter), "");
    EXPECT_EQ(listener.take(), "");
}

TEST(ChapterAndPart, GroupsLandAtTheirPlaceInTheChildOrder) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    const Made groups[] = {classifications(catalog), orderInfo(catalog), extrinsics(catalog),
                           documents(catalog),       link(catalog),      images(catalog),
                           documents(catalog)};
    Listener listener(catalog);

    // Set from the last backwards, each lands right behind the groups ahead of it; a second
    // Documents replaces the first in its place.
    ASSERT_EQ(part->putref_classifications(groups[0]), S_OK);
    ASSERT_EQ(part->putref_orderInfo(groups[1]), S_OK);
    ASSERT_EQ(part->putref_extrinsics(groups[2]), S_OK);
    ASSERT_EQ(part->putref_documents(groups[3]), S_OK);
    ASSERT_EQ(part->putref_link(groups[4]), S_OK);
    ASSERT_EQ(part->putref_images(groups[5]), S_OK);
    ASSERT_EQ(part->putref_documents(groups[6]), S_OK);
    EXPECT_EQ(childTags(part),
              "Desc Images Link Documents Extrinsics OrderInfo Classifications TableRef");
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(groups[5]->get_parentNode(&parent), S_OK);
    EXPECT_EQ(keyOf(parent), keyOf(part));
    listener.take();

    // Removed by null, and null again on nothing: both heard.
    ASSERT_EQ(part->putref_images(nullptr), S_OK);
    ASSERT_EQ(part->putref_images(nullptr), S_OK);
    EXPECT_EQ(childTags(part), "Desc Link Documents Extrinsics OrderInfo Classifications TableRef");
    EXPECT_EQ(listener.take(), "changed M8 | changed M8");
    ASSERT_EQ(part->putref_link(nullptr), S_OK);

    // Any object lands at the place the operation names, whatever its kind.
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Stand-in");
    ASSERT_EQ(part->putref_link(chapter), S_OK);
    EXPECT_EQ(childTags(part),
              "Desc Chapter Documents Extrinsics OrderInfo Classifications TableRef");
    Ref<IQVRCatalogLink> read;
    EXPECT_EQ(part->get_link(&read), S_FALSE);
    EXPECT_FALSE(read);
    // A part removes like a container, without a guard, though it takes nothing in.
    Ref<IQVRCatalogObject> removed;
    ASSERT_EQ(part->removeChild(chapter, &removed), S_OK);
    EXPECT_EQ(nameOf(removed), "Stand-in");

    // A chapter with an ActiveXs keeps it, and a chapter without Desc takes the group first.
    ASSERT_EQ(loadXml(catalog, "<vCAT id='c'><Chapter id='a'><Desc/><ActiveXs/><Part id='p1'/>"
                               "<Part id='p2'/></Chapter><Chapter id='b'><Part id='p3'/>"
                               "</Chapter></vCAT>"),
              S_OK);
    Made first = childAt(catalog, 1), second = childAt(catalog, 2);
    ASSERT_EQ(query<IQVRCatalogChapter>(first)->putref_extrinsics(extrinsics(catalog)), S_OK);
    EXPECT_EQ(childTags(first), "Desc ActiveXs Extrinsics Part Part");
    ASSERT_EQ(query<IQVRCatalogChapter>(second)->putref_link(link(catalog)), S_OK);
    EXPECT_EQ(childTags(second), "Link Part");
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
    Ref<IQVRCatalogObject> innerCopy = childAt(clone, 1), partCopy = childAt(innerCopy, 1);
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
    EXPECT_NE(keyOf(clone), keyOf(top));
    EXPECT_EQ(keyOf(childAt(clone, 1)), keyOf(inner));

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
