#include <gtest/gtest.h>

#include "dom_test_support.h"

namespace qvr {
namespace {

using namespace qvr::testing;

Ref<IXMLDOMElement> rootOf(IXMLDOMDocument* doc) {
    Ref<IXMLDOMElement> root;
    EXPECT_EQ(doc->get_documentElement(&root), S_OK);
    return root;
}

TEST(DomTree, InsertRemoveReplaceAndNavigate) {
    auto doc = parseXml("<r><a/><b/></r>");
    auto root = rootOf(doc);
    auto a = elementAt(root, "a");
    auto b = elementAt(root, "b");

    // Insert before a sibling, append text nodes: adjacent texts are not merged.
    auto c = newElement(doc, "c", "x");
    Ref<IXMLDOMNode> inserted;
    EXPECT_EQ(root->insertBefore(c, b, &inserted), S_OK);
    EXPECT_EQ(inserted.get(), static_cast<IXMLDOMNode*>(c.get()));
    Ref<IXMLDOMNode> t1, t2;
    doc->createTextNode("t1", &t1);
    doc->createTextNode("t2", &t2);
    EXPECT_EQ(root->appendChild(t1, nullptr), S_OK);
    EXPECT_EQ(root->appendChild(t2, nullptr), S_OK);
    EXPECT_EQ(xmlOf(root), "<r><a/><c>x</c><b/>t1t2</r>");
    Ref<IXMLDOMNodeList> children;
    root->get_childNodes(&children);
    std::int32_t length = 0;
    children->get_length(&length);
    EXPECT_EQ(length, 5);
    EXPECT_EQ(textOf(t1), "t1");

    // Navigation, with S_FALSE at the ends.
    Ref<IXMLDOMNode> node;
    EXPECT_EQ(root->get_firstChild(&node), S_OK);
    EXPECT_EQ(node.get(), static_cast<IXMLDOMNode*>(a.get())); // one object per node
    EXPECT_EQ(a->get_previousSibling(&node), S_FALSE);
    EXPECT_FALSE(node);
    EXPECT_EQ(a->get_nextSibling(&node), S_OK);
    EXPECT_EQ(nameOf(node), "c");
    EXPECT_EQ(root->get_lastChild(&node), S_OK);
    EXPECT_EQ(node.get(), t2.get());
    EXPECT_EQ(t2->get_nextSibling(&node), S_FALSE);
    EXPECT_EQ(root->get_parentNode(&node), S_OK);
    EXPECT_EQ(node.get(), static_cast<IXMLDOMNode*>(doc.get()));
    EXPECT_EQ(doc->get_parentNode(&node), S_FALSE);
    VARIANT_BOOL has = VARIANT_FALSE;
    EXPECT_EQ(a->hasChildNodes(&has), S_OK);
    EXPECT_EQ(has, VARIANT_FALSE);

    // Remove and replace hand back the node that left.
    Ref<IXMLDOMNode> removed;
    EXPECT_EQ(root->removeChild(a, &removed), S_OK);
    EXPECT_EQ(removed.get(), static_cast<IXMLDOMNode*>(a.get()));
    EXPECT_EQ(a->get_parentNode(&node), S_FALSE);
    auto d = newElement(doc, "d");
    Ref<IXMLDOMNode> replaced;
    EXPECT_EQ(root->replaceChild(d, b, &replaced), S_OK);
    EXPECT_EQ(replaced.get(), static_cast<IXMLDOMNode*>(b.get()));
    EXPECT_EQ(xmlOf(root), "<r><c>x</c><d/>t1t2</r>");

    // Refusals.
    EXPECT_EQ(root->insertBefore(a, b, nullptr), E_INVALIDARG); // b is no child any more
    EXPECT_EQ(root->removeChild(a, nullptr), E_INVALIDARG);
    EXPECT_EQ(c->appendChild(root, nullptr), E_FAIL); // an ancestor under its descendant
    EXPECT_EQ(c->appendChild(c, nullptr), E_FAIL);
    EXPECT_EQ(doc->appendChild(a, nullptr), E_FAIL);  // a second root
    EXPECT_EQ(doc->appendChild(t1, nullptr), E_FAIL); // text beside the root
    EXPECT_EQ(t1->appendChild(a, nullptr), E_FAIL);
    EXPECT_EQ(root->appendChild(nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(xmlOf(root), "<r><c>x</c><d/>t1t2</r>");
}

TEST(DomTree, NodeKindsNamesAndValues) {
    auto doc = parseXml("<?pi data?><!--note--><r id='7'>a<![CDATA[<b>]]></r>");
    Ref<IXMLDOMNode> pi, comment;
    doc->get_firstChild(&pi);
    pi->get_nextSibling(&comment);
    auto root = rootOf(doc);
    auto attribute = selectOne(root, "@id");
    auto cdata = selectOne(root, "text()[2]");

    struct Expected {
        IXMLDOMNode* node;
        DOMNodeType type;
        const char* name;
        VARTYPE valueType;
    };
    const Expected expected[] = {
        {doc, NODE_DOCUMENT, "#document", VT_NULL},
        {pi, NODE_PROCESSING_INSTRUCTION, "pi", VT_BSTR},
        {comment, NODE_COMMENT, "#comment", VT_BSTR},
        {root, NODE_ELEMENT, "r", VT_NULL},
        {attribute, NODE_ATTRIBUTE, "id", VT_BSTR},
        {cdata, NODE_CDATA_SECTION, "#cdata-section", VT_BSTR},
    };
    for (const auto& e : expected) {
        DOMNodeType type = NODE_INVALID;
        EXPECT_EQ(e.node->get_nodeType(&type), S_OK);
        EXPECT_EQ(type, e.type) << e.name;
        EXPECT_EQ(nameOf(e.node), e.name);
        Variant value;
        EXPECT_EQ(e.node->get_nodeValue(&value), S_OK);
        EXPECT_EQ(value.vt(), e.valueType) << e.name;
    }
    Variant value;
    attribute->get_nodeValue(&value);
    EXPECT_EQ(value.str(), "7");
    root->get_nodeTypedValue(&value);
    EXPECT_EQ(value.str(), "a<b>");
    EXPECT_FALSE(query<IXMLDOMElement>(comment));
    EXPECT_EQ(xmlOf(attribute), "id=\"7\"");
    EXPECT_EQ(xmlOf(cdata), "<![CDATA[<b>]]>");

    Ref<IXMLDOMDocument> owner;
    EXPECT_EQ(attribute->get_ownerDocument(&owner), S_OK);
    EXPECT_EQ(owner.get(), doc.get());
    EXPECT_EQ(doc->get_ownerDocument(&owner), S_FALSE);
}

TEST(DomTree, TextReplacesChildrenAndKeepsReferredOnes) {
    auto doc = parseXml("<r><a><b>1</b><c>2</c></a></r>");
    auto a = elementAt(doc, "r/a");
    auto b = elementAt(a, "b");
    auto bText = selectOne(b, "text()");
    EXPECT_EQ(a->put_text("new"), S_OK);
    EXPECT_EQ(xmlOf(a), "<a>new</a>");
    // b was referred to: it lives on outside the tree; c was freed.
    EXPECT_EQ(xmlOf(b), "<b>1</b>");
    Ref<IXMLDOMNode> parent;
    EXPECT_EQ(b->get_parentNode(&parent), S_FALSE);
    // A text node that is referred to is replaced, not rewritten.
    EXPECT_EQ(b->put_text("2"), S_OK);
    EXPECT_EQ(textOf(bText), "1");
    EXPECT_EQ(bText->put_text("one"), S_OK);
    EXPECT_EQ(textOf(bText), "one");
    EXPECT_EQ(a->put_text(""), S_OK);
    EXPECT_EQ(xmlOf(a), "<a/>");
    EXPECT_EQ(doc->put_text("x"), E_FAIL);

    // A loaded short text is kept inside its node: it takes a text beside it, a longer value, a
    // copy and a move like any other, and goes with its document.
    auto other = parseXml("<s/>");
    {
        auto loaded = parseXml("<r><a k='v'>1</a></r>");
        auto one = elementAt(loaded, "r/a");
        Ref<IXMLDOMNode> text, copy;
        ASSERT_EQ(loaded->createTextNode("2", &text), S_OK);
        EXPECT_EQ(one->appendChild(text, nullptr), S_OK);
        EXPECT_EQ(textOf(one), "12");
        EXPECT_EQ(selectOne(one, "@k")->put_text(std::string(40, 'w')), S_OK);
        EXPECT_EQ(selectOne(one, "text()")->put_text("a text longer than the node holds"), S_OK);
        EXPECT_EQ(one->cloneNode(VARIANT_TRUE, &copy), S_OK);
        EXPECT_EQ(rootOf(other)->appendChild(one, nullptr), S_OK);
        EXPECT_EQ(rootOf(other)->appendChild(copy, nullptr), S_OK);
    }
    EXPECT_EQ(selectedValues(other, "/s/a", ""), "a text longer than the node holds2 "
                                                 "a text longer than the node holds2");
    EXPECT_EQ(selectedValues(other, "/s/a/@k", ""),
              std::string(40, 'w') + " " + std::string(40, 'w'));
}

TEST(DomTree, DetachedSubtreesLiveWhileReferred) {
    ASSERT_EQ(CanUnloadNow(), S_OK);
    {
        auto doc = parseXml("<r><p id='1'><q>deep</q><s/></p></r>");
        auto q = selectOne(doc, "/r/p/q");
        {
            auto p = elementAt(doc, "/r/p");
            EXPECT_EQ(rootOf(doc)->removeChild(p, nullptr), S_OK);
        }
        // Only q refers into the removed subtree: all of it stays.
        EXPECT_EQ(textOf(q), "deep");
        Ref<IXMLDOMNode> p;
        EXPECT_EQ(q->get_parentNode(&p), S_OK);
        EXPECT_EQ(xmlOf(p), "<p id=\"1\"><q>deep</q><s/></p>");
        // Selections relative to a detached node see its subtree.
        EXPECT_EQ(nameOf(selectOne(p, ".//q")), "q");
        EXPECT_EQ(selectedValues(p, "*", ""), "deep ");
        Ref<IXMLDOMNode> none;
        EXPECT_EQ(p->selectSingleNode("r", &none), S_FALSE);

        // A node created and never inserted, and the document dropped before its nodes.
        auto lonely = newElement(doc, "lonely", "x");
        doc = nullptr;
        Ref<IXMLDOMDocument> owner;
        EXPECT_EQ(lonely->get_ownerDocument(&owner), S_OK);
        EXPECT_EQ(textOf(lonely), "x");
        EXPECT_EQ(CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

TEST(DomTree, NodesMoveBetweenDocuments) {
    auto target = parseXml("<s/>");
    Ref<IXMLDOMNode> moved;
    {
        auto source = parseXml("<r xmlns:xlink='http://www.w3.org/1999/xlink'>"
                               "<p xlink:href='u' xml:lang='de'><q>t</q></p><z/></r>");
        moved = selectOne(source, "/r/p");
        auto q = selectOne(moved, "q");
        EXPECT_EQ(rootOf(target)->appendChild(moved, nullptr), S_OK);
        Ref<IXMLDOMDocument> owner;
        q->get_ownerDocument(&owner);
        EXPECT_EQ(owner.get(), target.get());
        EXPECT_EQ(selectedValues(source, "/r/*", ""), "");
    } // the source document and all its nodes go
    EXPECT_EQ(xmlOf(target),
              "<?xml version=\"1.0\"?>\n<s><p xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
              "xlink:href=\"u\" xml:lang=\"de\"><q>t</q></p></s>\n");
    EXPECT_EQ(selectedValues(target, "//*[@xlink:href = 'u'][@xml:lang = 'de']"), "t");
    EXPECT_EQ(rootOf(target)->removeChild(moved, nullptr), S_OK);

    // A copy of a subtree with an entity reference moves too, in the text or in an attribute's
    // value (libxml2 would free a name of the source's dictionary).
    auto withEntity = parseXml("<!DOCTYPE r [<!ENTITY e 'text'>]><r><a b='&e;'>&e;</a></r>");
    Ref<IXMLDOMNode> copy, attributeCopy;
    ASSERT_EQ(selectOne(withEntity, "/r/a")->cloneNode(VARIANT_TRUE, &copy), S_OK);
    ASSERT_EQ(selectOne(withEntity, "/r/a/@b")->cloneNode(VARIANT_TRUE, &attributeCopy), S_OK);
    EXPECT_EQ(rootOf(target)->appendChild(copy, nullptr), S_OK);
    EXPECT_EQ(xmlOf(copy), "<a b=\"&e;\">&e;</a>");
    withEntity = nullptr;
    EXPECT_EQ(xmlOf(moved), "<p xmlns:xlink=\"http://www.w3.org/1999/xlink\" xlink:href=\"u\" "
                            "xml:lang=\"de\"><q>t</q></p>");
}

TEST(DomTree, ClonesStandOutsideTheTree) {
    auto doc = parseXml("<r xmlns:xlink='http://www.w3.org/1999/xlink'>"
                        "<a n='1' xlink:href='h'><c>t</c></a></r>");
    auto a = elementAt(doc, "/r/a");
    Ref<IXMLDOMNode> deep, shallow, parent;
    EXPECT_EQ(a->cloneNode(VARIANT_TRUE, &deep), S_OK);
    EXPECT_EQ(a->cloneNode(VARIANT_FALSE, &shallow), S_OK);
    EXPECT_EQ(xmlOf(deep), "<a xmlns:xlink=\"http://www.w3.org/1999/xlink\" n=\"1\" "
                           "xlink:href=\"h\"><c>t</c></a>");
    EXPECT_EQ(xmlOf(shallow),
              "<a xmlns:xlink=\"http://www.w3.org/1999/xlink\" n=\"1\" xlink:href=\"h\"/>");
    EXPECT_EQ(deep->get_parentNode(&parent), S_FALSE);
    EXPECT_NE(deep.get(), static_cast<IXMLDOMNode*>(a.get()));
    query<IXMLDOMElement>(deep)->setAttribute("n", "2");
    EXPECT_EQ(attributeOf(a, "n"), "1");
    EXPECT_EQ(attributeOf(query<IXMLDOMElement>(deep), "xlink:href"), "h");

    Ref<IXMLDOMNode> docCopy;
    EXPECT_EQ(doc->cloneNode(VARIANT_TRUE, &docCopy), S_OK);
    auto copy = query<IXMLDOMDocument>(docCopy);
    ASSERT_TRUE(copy);
    EXPECT_EQ(xmlOf(copy), xmlOf(doc));
    EXPECT_EQ(rootOf(copy)->appendChild(deep, nullptr), S_OK); // moves to the copy
    EXPECT_EQ(selectedValues(copy, "/r/a/@n", ""), "1 2");
}

TEST(DomTree, DocumentElementAndDocumentLevelNodes) {
    Ref<IXMLDOMDocument> doc;
    ASSERT_EQ(CreateDOMDocument(&doc), S_OK);
    Ref<IXMLDOMElement> root;
    EXPECT_EQ(doc->get_documentElement(&root), S_FALSE);
    Ref<IXMLDOMNode> declaration, product, copyright;
    EXPECT_EQ(doc->createProcessingInstruction("xml", "version='1.0'", &declaration), S_OK);
    EXPECT_EQ(doc->createComment("product", &product), S_OK);
    EXPECT_EQ(doc->createComment("copyright", &copyright), S_OK);
    doc->appendChild(declaration, nullptr);
    doc->appendChild(product, nullptr);
    doc->appendChild(copyright, nullptr);
    auto first = newElement(doc, "vCAT");
    EXPECT_EQ(doc->putref_documentElement(first), S_OK);
    EXPECT_EQ(doc->get_documentElement(&root), S_OK);
    EXPECT_EQ(root.get(), first.get());
    // The declaration made in memory is written once, as the declaration.
    EXPECT_EQ(xmlOf(doc), "<?xml version=\"1.0\"?>\n<!--product-->\n<!--copyright-->\n<vCAT/>\n");
    auto second = newElement(doc, "vCATTable");
    EXPECT_EQ(doc->putref_documentElement(second), S_OK);
    Ref<IXMLDOMNode> parent;
    EXPECT_EQ(first->get_parentNode(&parent), S_FALSE);
    EXPECT_EQ(xmlOf(doc),
              "<?xml version=\"1.0\"?>\n<!--product-->\n<!--copyright-->\n<vCATTable/>\n");
    EXPECT_EQ(doc->putref_documentElement(nullptr), E_INVALIDARG);
    Ref<IXMLDOMElement> bad;
    EXPECT_EQ(doc->createElement("1x", &bad), E_FAIL);
    EXPECT_EQ(doc->createProcessingInstruction("a b", "", &declaration), E_FAIL);
}

} // namespace
} // namespace qvr
