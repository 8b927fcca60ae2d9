// Small helpers for the DOM tests: parse a text, select, read names and texts.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <qvr/dom.h>

namespace qvr::testing {

inline Ref<IXMLDOMDocument> parseXml(const char* xml) {
    Ref<IXMLDOMDocument> doc;
    EXPECT_EQ(CreateDOMDocument(&doc), S_OK);
    VARIANT_BOOL ok = VARIANT_FALSE;
    EXPECT_EQ(doc->loadXML(xml, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    return doc;
}

inline Ref<IXMLDOMNode> selectOne(IXMLDOMNode* context, const char* xpath) {
    Ref<IXMLDOMNode> node;
    EXPECT_EQ(context->selectSingleNode(xpath, &node), S_OK) << xpath;
    return node;
}

inline Ref<IXMLDOMElement> elementAt(IXMLDOMNode* context, const char* xpath) {
    return query<IXMLDOMElement>(selectOne(context, xpath));
}

inline std::string xmlOf(IXMLDOMNode* node) {
    String xml;
    EXPECT_EQ(node->get_xml(&xml), S_OK);
    return xml.str();
}

inline std::string textOf(IXMLDOMNode* node) {
    String text;
    EXPECT_EQ(node->get_text(&text), S_OK);
    return text.str();
}

inline std::string nameOf(IXMLDOMNode* node) {
    String name;
    EXPECT_EQ(node->get_nodeName(&name), S_OK);
    return name.str();
}

inline std::string attributeOf(IXMLDOMElement* element, const char* name) {
    String value;
    element->getAttribute(name, &value);
    return value.isNull() ? "(absent)" : value.str();
}

// The value of attribute `attribute` (or the text, when empty) of every selected node, joined by
// blanks.
inline std::string selectedValues(IXMLDOMNode* context, const char* xpath,
                                  const char* attribute = "") {
    Ref<IXMLDOMNodeList> list;
    EXPECT_EQ(context->selectNodes(xpath, &list), S_OK) << xpath;
    if (!list) return "(failed)";
    std::int32_t length = 0;
    list->get_length(&length);
    std::string out;
    for (std::int32_t i = 0; i < length; ++i) {
        Ref<IXMLDOMNode> node;
        list->get_item(i, &node);
        if (!out.empty()) out += ' ';
        out += *attribute ? attributeOf(query<IXMLDOMElement>(node), attribute) : textOf(node);
    }
    return out;
}

inline Ref<IXMLDOMElement> newElement(IXMLDOMDocument* doc, const char* tag,
                                      const char* text = nullptr) {
    Ref<IXMLDOMElement> element;
    EXPECT_EQ(doc->createElement(tag, &element), S_OK);
    if (text) {
        EXPECT_EQ(element->put_text(text), S_OK);
    }
    return element;
}

} // namespace qvr::testing
