// libFuzzer target: any bytes as a document. A document that loads is changed at random (removals,
// moves to another document, text and attribute changes), and every table selection is asked
// twice, from the lookup tables and from XPath: the answers must be the same. A document that does
// not load must leave a complete error record. Nothing may crash, leak or print.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <qvr/dom.h>

#include "platform/dom/indexed_selection.h"

namespace {

using namespace qvr;

// A small generator seeded by the input, so that a crash reproduces from the input alone.
class Choices {
public:
    Choices(const std::uint8_t* data, std::size_t size) : state_(0x9E3779B97F4A7C15ull ^ size) {
        for (std::size_t i = 0; i < size; ++i) state_ = (state_ ^ data[i]) * 0x100000001B3ull;
    }
    std::size_t below(std::size_t n) {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return n ? static_cast<std::size_t>(state_ % n) : 0;
    }

private:
    std::uint64_t state_;
};

std::vector<Ref<IXMLDOMNode>> selectAll(IXMLDOMNode* context, const char* xpath) {
    std::vector<Ref<IXMLDOMNode>> out;
    Ref<IXMLDOMNodeList> list;
    if (context->selectNodes(xpath, &list) != S_OK) return out;
    std::int32_t length = 0;
    list->get_length(&length);
    for (std::int32_t i = 0; i < length && i < 4096; ++i) {
        Ref<IXMLDOMNode> node;
        list->get_item(i, &node);
        out.push_back(node);
    }
    return out;
}

struct Answer {
    HRESULT status;
    std::vector<Ref<IXMLDOMNode>> nodes;
    HRESULT singleStatus;
    Ref<IXMLDOMNode> single;
};

Answer ask(IXMLDOMNode* context, const std::string& xpath, bool tables) {
    dom::IndexedSelection::setEnabled(tables);
    Answer answer;
    Ref<IXMLDOMNodeList> list;
    answer.status = context->selectNodes(xpath, &list);
    std::int32_t length = 0;
    if (list) list->get_length(&length);
    for (std::int32_t i = 0; i < length; ++i) {
        Ref<IXMLDOMNode> node;
        list->get_item(i, &node);
        answer.nodes.push_back(node);
    }
    answer.singleStatus = context->selectSingleNode(xpath, &answer.single);
    dom::IndexedSelection::setEnabled(true);
    return answer;
}

void compare(IXMLDOMNode* context, const std::string& xpath) {
    const Answer tables = ask(context, xpath, true);
    const Answer plain = ask(context, xpath, false);
    if (tables.status != plain.status || tables.nodes != plain.nodes ||
        tables.singleStatus != plain.singleStatus || tables.single != plain.single)
        std::abort();
}

std::string valueOf(IXMLDOMNode* node) {
    String text;
    node->get_text(&text);
    return text.str().substr(0, 64);
}

void compareTableShapes(IXMLDOMDocument* doc, IXMLDOMNode* context, Choices& choices) {
    auto values = selectAll(doc, "//@id | //@idref | /vCATTable/ColumnUnique/RowUnique");
    std::string value = values.empty() ? "R1" : valueOf(values[choices.below(values.size())]);
    static const char* const shapes[] = {
        ".//*[@id = '",           "/vCATTable/ColumnUnique/RowUnique[. = '",
        "RowUnique[@id='",        "/vCATTable/ColumnUnique/RowUnique[@id='",
        "/vCATTable//*[@idref='", "*[@idref = '"};
    for (const char* shape : shapes) compare(context, std::string(shape) + value + "']");
    compare(context, "/vCATTable/ColumnUnique/RowUnique[" + std::to_string(choices.below(5)) + "]");
}

void change(IXMLDOMDocument* doc, IXMLDOMDocument* other, Choices& choices) {
    auto nodes = selectAll(doc, "//node()");
    if (nodes.empty()) return;
    Ref<IXMLDOMNode> node = nodes[choices.below(nodes.size())];
    Ref<IXMLDOMNode> target = nodes[choices.below(nodes.size())];
    Ref<IXMLDOMNode> parent;
    switch (choices.below(6)) {
    case 0:
        if (node->get_parentNode(&parent) == S_OK) parent->removeChild(node, nullptr);
        break;
    case 1: target->insertBefore(node, nullptr, nullptr); break;
    case 2: node->put_text(valueOf(target)); break;
    case 3:
        if (auto element = query<IXMLDOMElement>(node))
            element->setAttribute(choices.below(2) ? "id" : "idref", valueOf(target));
        break;
    case 4: {
        Ref<IXMLDOMElement> root;
        if (other->get_documentElement(&root) == S_OK) root->appendChild(node, nullptr);
        break;
    }
    case 5: {
        Ref<IXMLDOMNode> copy;
        if (node->cloneNode(VARIANT_TRUE, &copy) == S_OK) target->appendChild(copy, nullptr);
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Ref<IXMLDOMDocument> doc;
    if (CreateDOMDocument(&doc) != S_OK) std::abort();
    VARIANT_BOOL ok = VARIANT_FALSE;
    const String text(reinterpret_cast<const char*>(data), size);
    if (doc->loadXML(text, &ok) != S_OK) {
        Ref<IXMLDOMParseError> error;
        std::int32_t code = 0;
        String reason, source;
        if (doc->get_parseError(&error) != S_OK || error->get_errorCode(&code) != S_OK ||
            code == 0 || error->get_reason(&reason) != S_OK || error->get_srcText(&source) != S_OK)
            std::abort();
        return 0;
    }
    Ref<IXMLDOMDocument> other;
    CreateDOMDocument(&other);
    other->loadXML("<vCATTable><ColumnUnique id='C0'/></vCATTable>", &ok);

    Choices choices(data, size);
    String xml;
    doc->get_xml(&xml);
    for (int round = 0; round < 4; ++round) {
        auto contexts = selectAll(doc, "//* | /");
        if (!contexts.empty())
            compareTableShapes(doc, contexts[choices.below(contexts.size())], choices);
        change(doc, other, choices);
    }
    doc->get_xml(&xml);
    other->get_xml(&xml);
    return 0;
}
