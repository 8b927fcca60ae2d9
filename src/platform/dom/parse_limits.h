// Bounds of a parse that do not depend on the size of one text. Texts and attribute values may be
// as long as the input allows (a value the library accepted must load back), but what entities
// expand to is bounded in proportion to the input: counted while parsing (a value that expands
// entities in an attribute is built during the parse) and over the parsed tree (text that
// expands its entity references is built when it is read). Elements and entities nest to a
// bounded depth, so that no walk over a tree or an entity runs deep.
#pragma once

#include <cstddef>
#include <map>

#include <libxml/parser.h>

#include "platform/dom/quiet_errors.h"

namespace qvr::dom {

class ParseLimits {
public:
    static constexpr int kMaxElementDepth = 1024;
    static constexpr int kMaxEntityDepth = 40;
    // Entities may expand to this many times the input's size, plus a fixed allowance.
    static constexpr std::size_t kExpansionFactor = 4;
    static constexpr std::size_t kExpansionAllowance = std::size_t{1} << 20;

    // Watches the parse of `context` over an input of `inputSize` bytes; the object must outlive
    // the parse.
    ParseLimits(xmlParserCtxtPtr context, std::size_t inputSize);

    // After a well-formed parse: whether reading every text of `doc` stays within the budget.
    bool acceptsTree(xmlDocPtr doc);
    // Why the parse was refused; null when it was not.
    const CapturedError* refusal() const { return refused_ ? &refusal_ : nullptr; }

private:
    static xmlEntityPtr getEntity(void* context, const xmlChar* name);
    static void startElement(void* context, const xmlChar* localname, const xmlChar* prefix,
                             const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                             int attributeCount, int defaultedCount, const xmlChar** attributes);
    void refuse(xmlParserCtxtPtr context, std::string message);
    // What `entity` expands to, in bytes, at most budget_ + 1.
    std::size_t expandedSize(xmlDocPtr doc, xmlEntityPtr entity, int depth);
    std::string expansionMessage() const;

    getEntitySAXFunc parserGetEntity_;
    startElementNsSAX2Func parserStartElement_;
    std::size_t inputSize_;
    std::size_t budget_;
    std::size_t spent_ = 0;
    std::map<xmlEntityPtr, std::size_t> expanded_;
    bool refused_ = false;
    CapturedError refusal_;
};

} // namespace qvr::dom
