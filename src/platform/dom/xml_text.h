// Small conversions and tests between libxml2's types and the layer's, shared by its units.
#pragma once

#include <string>
#include <string_view>

#include <libxml/tree.h>

#include <qvr/string.h>

namespace qvr::dom {

inline const xmlChar* bytes(std::string_view text) {
    return reinterpret_cast<const xmlChar*>(text.data());
}

inline const char* chars(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}

// Takes over a string libxml2 allocated; null gives the empty text.
inline String takeString(xmlChar* text) {
    // Freed also when the copy runs out of memory.
    struct Owner {
        xmlChar* text;
        ~Owner() { xmlFree(text); }
    } owner{text};
    return String(chars(text));
}

// The text of a node as XPath sees it (an element's: all its text below).
inline String contentOf(xmlNodePtr node) {
    // Most elements and attributes hold one text or nothing: read in place, without gathering
    // into a buffer.
    if (node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE) {
        const xmlNodePtr child = node->children;
        if (!child) return String("");
        if (!child->next && child->type == XML_TEXT_NODE) return String(chars(child->content));
    }
    return takeString(xmlNodeGetContent(node));
}

// The same text as a view: read in place when it is one text node, the usual case; else
// gathered into `scratch`, which the view then points into.
inline std::string_view contentView(xmlNodePtr node, std::string& scratch) {
    const xmlNodePtr only = node->children;
    if (only && !only->next && only->type == XML_TEXT_NODE && only->content)
        return chars(only->content);
    xmlChar* content = xmlNodeGetContent(node);
    scratch = chars(content);
    xmlFree(content);
    return scratch;
}

inline bool isDocument(xmlNodePtr node) {
    return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE;
}

// An element of that name without namespace, as a name step of XPath selects it.
inline bool isPlainElement(xmlNodePtr node, const char* name) {
    return node && node->type == XML_ELEMENT_NODE && !node->ns &&
           xmlStrEqual(node->name, bytes(name));
}

} // namespace qvr::dom
