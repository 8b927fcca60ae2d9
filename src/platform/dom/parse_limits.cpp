#include "platform/dom/parse_limits.h"

#include <string>

#include <libxml/entities.h>
#include <libxml/parserInternals.h>

#include "platform/dom/subtree.h"

namespace qvr::dom {
namespace {

std::size_t capped(std::size_t sum, std::size_t cap) {
    return sum > cap ? cap + 1 : sum;
}

} // namespace

ParseLimits::ParseLimits(xmlParserCtxtPtr context, std::size_t inputSize)
    : parserGetEntity_(context->sax->getEntity), parserStartElement_(context->sax->startElementNs),
      inputSize_(inputSize), budget_(inputSize * kExpansionFactor + kExpansionAllowance) {
    context->_private = this;
    context->sax->getEntity = &ParseLimits::getEntity;
    if (parserStartElement_) context->sax->startElementNs = &ParseLimits::startElement;
}

void ParseLimits::refuse(xmlParserCtxtPtr context, std::string message) {
    if (!refused_) {
        refused_ = true;
        refusal_.code = XML_ERR_USER_STOP;
        refusal_.line = context->input ? context->input->line : 0;
        refusal_.column = context->input ? context->input->col : 0;
        refusal_.message = std::move(message);
    }
    context->wellFormed = 0;
    xmlStopParser(context);
}

std::string ParseLimits::expansionMessage() const {
    return "Entities expand to more than " + std::to_string(kExpansionFactor) +
           " times the size of the document (" + std::to_string(inputSize_) +
           " bytes) plus 1 MiB: the document is refused";
}

xmlEntityPtr ParseLimits::getEntity(void* context, const xmlChar* name) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    auto* self = static_cast<ParseLimits*>(parser->_private);
    if (self->refused_) return nullptr;
    xmlEntityPtr entity = self->parserGetEntity_(context, name);
    if (!entity || entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) return entity;
    try {
        if (parser->depth > kMaxEntityDepth) {
            self->refuse(parser, "Entities nest deeper than " + std::to_string(kMaxEntityDepth) +
                                     " levels: the document is refused");
            return nullptr;
        }
        // Each use of an entity costs what it holds, whether the parser expands it now (in an
        // attribute value, or to check it once) or a reader expands it later.
        self->spent_ =
            capped(self->spent_ + static_cast<std::size_t>(entity->length), self->budget_);
        if (self->spent_ > self->budget_) {
            self->refuse(parser, self->expansionMessage());
            return nullptr;
        }
    } catch (...) {
        xmlStopParser(parser); // called from C: nothing may be thrown through it
        parser->wellFormed = 0;
        return nullptr;
    }
    return entity;
}

void ParseLimits::startElement(void* context, const xmlChar* localname, const xmlChar* prefix,
                               const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                               int attributeCount, int defaultedCount, const xmlChar** attributes) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    auto* self = static_cast<ParseLimits*>(parser->_private);
    self->parserStartElement_(context, localname, prefix, uri, namespaceCount, namespaces,
                              attributeCount, defaultedCount, attributes);
    // The element just started is not counted among the open ones yet.
    if (parser->nameNr >= kMaxElementDepth) {
        try {
            self->refuse(parser, "Elements nest deeper than " + std::to_string(kMaxElementDepth) +
                                     " levels: the document is refused");
        } catch (...) {
            xmlStopParser(parser); // called from C: nothing may be thrown through it
            parser->wellFormed = 0;
        }
    }
}

std::size_t ParseLimits::expandedSize(xmlDocPtr doc, xmlEntityPtr entity, int depth) {
    if (entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) return 1;
    // Deeper than a parse allows, or a loop: beyond any budget.
    if (depth > kMaxEntityDepth) return budget_ + 1;
    if (auto known = expanded_.find(entity); known != expanded_.end()) return known->second;
    expanded_[entity] = budget_ + 1; // a loop back to this entity finds it over the budget
    const std::string_view content =
        entity->content ? reinterpret_cast<const char*>(entity->content) : std::string_view();
    std::size_t size = 0;
    for (std::size_t at = 0; at < content.size() && size <= budget_;) {
        const std::size_t semicolon = content.find(';', at);
        if (content[at] == '&' && semicolon != std::string_view::npos && at + 1 < content.size() &&
            content[at + 1] != '#') {
            const std::string name(content.substr(at + 1, semicolon - at - 1));
            xmlEntityPtr inner =
                xmlGetDocEntity(doc, reinterpret_cast<const xmlChar*>(name.c_str()));
            size = capped(size + (inner ? expandedSize(doc, inner, depth + 1) : name.size() + 2),
                          budget_);
            at = semicolon + 1;
        } else {
            ++size;
            ++at;
        }
    }
    return expanded_[entity] = capped(size, budget_);
}

bool ParseLimits::acceptsTree(xmlDocPtr doc) {
    std::size_t total = 0;
    walkSubtreeWithAttributes(reinterpret_cast<xmlNodePtr>(doc), [&](xmlNodePtr node) {
        // An attribute's value is made of text and entity references.
        for (xmlNodePtr part = node->type == XML_ATTRIBUTE_NODE ? node->children : node; part;
             part = node->type == XML_ATTRIBUTE_NODE ? part->next : nullptr) {
            if (part->type != XML_ENTITY_REF_NODE) continue;
            xmlEntityPtr entity = xmlGetDocEntity(doc, part->name);
            total = capped(total + (entity ? expandedSize(doc, entity, 0) : 0), budget_);
        }
        return total > budget_;
    });
    if (total <= budget_) return true;
    refused_ = true;
    refusal_ = {XML_ERR_USER_STOP, 1, 1, expansionMessage()};
    return false;
}

} // namespace qvr::dom
