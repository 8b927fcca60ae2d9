#include <gtest/gtest.h>

#include "dom_test_support.h"

namespace qvr {
namespace {

using namespace qvr::testing;

constexpr const char* kCatalog =
    "<vCAT id='cat'><Desc>d</Desc>"
    "<Chapter id='c1'><Part id='p1'/><Chapter id='c2'><Part id='p2'/></Chapter></Chapter>"
    "<Part id='p3'/><Chapter id='c3'/></vCAT>";

TEST(DomSelection, SelectionsOfTheModel) {
    auto doc = parseXml(kCatalog);
    auto root = elementAt(doc, "/vCAT");
    auto c1 = elementAt(root, "Chapter[1]");
    // Relative, absolute, unions in document order, descendants by id, positions from one.
    EXPECT_EQ(selectedValues(root, "Chapter", "id"), "c1 c3");
    EXPECT_EQ(selectedValues(c1, "/vCAT/Chapter", "id"), "c1 c3");
    EXPECT_EQ(selectedValues(root, "(Chapter | Part)", "id"), "c1 p3 c3");
    EXPECT_EQ(selectedValues(root, "Part|Chapter", "id"), "c1 p3 c3");
    EXPECT_EQ(selectedValues(doc, "//Part", "id"), "p1 p2 p3");
    EXPECT_EQ(attributeOf(elementAt(root, ".//*[@id = 'p2']"), "id"), "p2");
    EXPECT_EQ(attributeOf(elementAt(c1, ".//*[@id='p2']"), "id"), "p2");
    EXPECT_EQ(attributeOf(elementAt(root, "Chapter[2]"), "id"), "c3");
    EXPECT_EQ(textOf(selectOne(doc, "vCAT/Desc")), "d");
    EXPECT_EQ(nameOf(selectOne(root, "..")), "#document");

    // Nothing selected: S_FALSE and an empty list.
    Ref<IXMLDOMNode> none;
    EXPECT_EQ(c1->selectSingleNode(".//*[@id = 'p3']", &none), S_FALSE);
    EXPECT_FALSE(none);
    EXPECT_EQ(selectedValues(root, "Chapter[3]", "id"), "");
    Ref<IXMLDOMNodeList> list;
    ASSERT_EQ(root->selectNodes("Chapter", &list), S_OK);
    EXPECT_EQ(list->get_item(2, &none), S_FALSE);
    EXPECT_EQ(list->get_item(-1, &none), S_FALSE);

    // Malformed: E_FAIL, no node, nothing printed. A value with an apostrophe ends the literal.
    const char* malformed[] = {"Chapter[", "",        "//*[@id = 'it's']",
                               "***",      "foo:bar", "count(Chapter)"};
    for (const char* xpath : malformed) {
        Ref<IXMLDOMNode> node;
        EXPECT_EQ(root->selectSingleNode(xpath, &node), E_FAIL) << xpath;
        EXPECT_FALSE(node);
        Ref<IXMLDOMNodeList> nodes;
        EXPECT_EQ(root->selectNodes(xpath, &nodes), E_FAIL) << xpath;
        EXPECT_FALSE(nodes);
    }
    EXPECT_EQ(root->selectSingleNode(String(), &none), E_INVALIDARG);
    EXPECT_EQ(root->selectSingleNode("Chapter", nullptr), E_POINTER);
}

} // namespace
} // namespace qvr
