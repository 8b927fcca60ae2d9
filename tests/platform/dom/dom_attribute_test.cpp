#include <gtest/gtest.h>

#include "dom_test_support.h"

namespace qvr {
namespace {

using namespace qvr::testing;

constexpr const char* kXlink = "http://www.w3.org/1999/xlink";

TEST(DomAttributes, QualifiedNamesFromAFile) {
    auto doc = parseXml("<vCAT xmlns:xlink='http://www.w3.org/1999/xlink' id='c' xml:lang='de'>"
                        "<Link xlink:href='a.pdf' href='plain'/></vCAT>");
    auto root = elementAt(doc, "/vCAT");
    auto link = elementAt(root, "Link");
    EXPECT_EQ(attributeOf(root, "xmlns:xlink"), kXlink);
    EXPECT_EQ(attributeOf(root, "xml:lang"), "de");
    EXPECT_EQ(attributeOf(root, "id"), "c");
    EXPECT_EQ(attributeOf(link, "xlink:href"), "a.pdf");
    EXPECT_EQ(attributeOf(link, "href"), "plain");
    EXPECT_EQ(attributeOf(link, "xlink:type"), "(absent)");
    String value = "left alone";
    EXPECT_EQ(link->getAttribute("missing", &value), S_FALSE);
    EXPECT_TRUE(value.isNull());
    Variant v;
    EXPECT_EQ(link->getAttribute("missing", &v), S_FALSE);
    EXPECT_EQ(v.vt(), VT_NULL);
    EXPECT_EQ(link->getAttribute("xlink:href", &v), S_OK);
    EXPECT_EQ(v.str(), "a.pdf");

    // Changing and removing keep the namespace.
    EXPECT_EQ(link->setAttribute("xlink:href", "b.pdf"), S_OK);
    EXPECT_EQ(attributeOf(link, "href"), "plain");
    EXPECT_EQ(root->setAttribute("xml:lang", "en"), S_OK);
    EXPECT_EQ(xmlOf(root), "<vCAT xmlns:xlink=\"http://www.w3.org/1999/xlink\" id=\"c\" "
                           "xml:lang=\"en\"><Link xlink:href=\"b.pdf\" href=\"plain\"/></vCAT>");
    EXPECT_EQ(link->removeAttribute("xlink:href"), S_OK);
    EXPECT_EQ(link->removeAttribute("xlink:href"), S_FALSE);
    EXPECT_EQ(attributeOf(link, "href"), "plain");
    EXPECT_EQ(root->removeAttribute("xmlns:xlink"), S_OK); // no longer used
    EXPECT_EQ(xmlOf(root), "<vCAT id=\"c\" xml:lang=\"en\"><Link href=\"plain\"/></vCAT>");
}

TEST(DomAttributes, QualifiedNamesSetInMemory) {
    Ref<IXMLDOMDocument> doc;
    ASSERT_EQ(CreateDOMDocument(&doc), S_OK);
    // The order of a new catalog: the declaration first, the root, then the rest.
    auto root = newElement(doc, "vCAT");
    EXPECT_EQ(root->setAttribute("xmlns:xlink", kXlink), S_OK);
    EXPECT_EQ(doc->appendChild(root, nullptr), S_OK);
    EXPECT_EQ(root->setAttribute("id", "G"), S_OK);
    EXPECT_EQ(root->setAttribute("xml:lang", "de"), S_OK);

    // A detached element declares xlink on itself; the declaration goes when it is inserted
    // below one that declares it already.
    auto link = newElement(doc, "Link");
    EXPECT_EQ(link->setAttribute("xlink:href", "x.pdf"), S_OK);
    EXPECT_EQ(link->setAttribute("xml:lang", "de"), S_OK);
    EXPECT_EQ(attributeOf(link, "xlink:href"), "x.pdf");
    EXPECT_EQ(xmlOf(link),
              "<Link xmlns:xlink=\"http://www.w3.org/1999/xlink\" xlink:href=\"x.pdf\" "
              "xml:lang=\"de\"/>");
    EXPECT_EQ(root->appendChild(link, nullptr), S_OK);
    EXPECT_EQ(xmlOf(root), "<vCAT xmlns:xlink=\"http://www.w3.org/1999/xlink\" id=\"G\" "
                           "xml:lang=\"de\"><Link xlink:href=\"x.pdf\" xml:lang=\"de\"/></vCAT>");

    // Both origins are seen by XPath.
    auto parsed = parseXml("<vCAT xmlns:xlink='http://www.w3.org/1999/xlink'>"
                           "<Link xml:lang='de' n='parsed'/><Link xml:lang='en' n='other'/>"
                           "</vCAT>");
    auto made = newElement(parsed, "Link");
    made->setAttribute("xml:lang", "de");
    made->setAttribute("n", "made");
    elementAt(parsed, "/vCAT")->appendChild(made, nullptr);
    EXPECT_EQ(selectedValues(parsed, "/vCAT/*[@xml:lang = 'de']", "n"), "parsed made");
    EXPECT_EQ(selectedValues(root, "*[@xlink:href = 'x.pdf']", "xml:lang"), "de");

    // An attribute of a detached element is seen by a selection relative to it.
    auto alone = newElement(doc, "Image");
    alone->setAttribute("xlink:href", "i.png");
    EXPECT_EQ(selectedValues(alone, "self::*[@xlink:href = 'i.png']", "xlink:href"), "i.png");

    // Names that are not qualified names, declarations that cannot be made.
    EXPECT_EQ(root->setAttribute("", "v"), E_FAIL);
    EXPECT_EQ(root->setAttribute("a b", "v"), E_FAIL);
    EXPECT_EQ(root->setAttribute("xmlns:p", ""), E_FAIL);
    EXPECT_EQ(root->removeAttribute("xmlns:xlink"), E_FAIL); // still in use below
    // An unknown prefix without declaration stays a plain attribute of that name.
    EXPECT_EQ(root->setAttribute("foo:bar", "1"), S_OK);
    EXPECT_EQ(attributeOf(root, "foo:bar"), "1");
}

TEST(DomAttributes, AttributeNodesOutliveTheirElementsLinks) {
    auto doc = parseXml("<r xmlns:xlink='http://www.w3.org/1999/xlink'>"
                        "<a xlink:href='h' id='i'/></r>");
    auto a = elementAt(doc, "/r/a");
    auto href = selectOne(a, "@xlink:href");
    auto id = selectOne(a, "@id");
    EXPECT_EQ(a->removeAttribute("xlink:href"), S_OK);
    EXPECT_EQ(a->removeAttribute("id"), S_OK);
    EXPECT_EQ(nameOf(href), "xlink:href");
    EXPECT_EQ(textOf(href), "h");
    EXPECT_EQ(href->put_text("changed"), S_OK);
    EXPECT_EQ(textOf(href), "changed");
    // The element's own attribute node changes with setAttribute.
    a->setAttribute("n", "1");
    auto n = selectOne(a, "@n");
    EXPECT_EQ(n->put_text("2"), S_OK);
    EXPECT_EQ(attributeOf(a, "n"), "2");
    elementAt(doc, "/r")->removeChild(a, nullptr);
    a = nullptr;
    EXPECT_EQ(textOf(n), "2");
    EXPECT_EQ(xmlOf(id), "id=\"i\"");
}

} // namespace
} // namespace qvr
