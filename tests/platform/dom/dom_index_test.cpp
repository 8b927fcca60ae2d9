#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dom_test_support.h"
#include "platform/dom/indexed_forms.h"
#include "platform/dom/indexed_selection.h"
#include "platform/dom/selection.h"

namespace qvr {
namespace {

using namespace qvr::testing;
using dom::IndexedSelection;

constexpr const char* kTable =
    "<vCATTable><ColumnUnique id='C0'>"
    "<RowUnique id='R1'>A</RowUnique><RowUnique id='R2'>B</RowUnique>"
    "<RowUnique id='R3'>C</RowUnique></ColumnUnique>"
    "<Column id='C1'><Row idref='R1'>1</Row><Row idref='R2'>2</Row><Row idref='R2'>dup</Row>"
    "</Column><ColumnView id='C2'><Drawing idref='R3'>d<Other id='R1'/></Drawing></ColumnView>"
    "</vCATTable>";

const char* const kIds[] = {"R1", "R2", "R3", "R4", "C0", "C1", "X"};
const char* const kKeys[] = {"A", "B", "C", "", "1"};
const char* const kTags[] = {"RowUnique", "RowUnique", "Row",         "Drawing", "ColumnUnique",
                             "Column",    "vCATTable", "ColumnConst", "Other"};

// Every shape the tables answer, with {} where the value goes.
const char* const kShapes[] = {
    ".//*[@id = '{}']",
    ".//*[@id='{}']",
    "//*[@id = '{}']",
    "//*[@id='{}']",
    "*[@id='{}']",
    "*[@id = '{}']",
    "/vCATTable/ColumnUnique/RowUnique[. = '{}']",
    "/vCATTable/ColumnUnique/RowUnique[.='{}']",
    "RowUnique[@id='{}']",
    "RowUnique[@id = '{}']",
    "/vCATTable/ColumnUnique/RowUnique[@id='{}']",
    "/vCATTable//*[@idref='{}']",
    "/vCATTable//*[@idref = '{}']",
    "*[@idref = '{}']",
    "*[@idref='{}']",
    "/vCATTable/ColumnUnique/RowUnique[{}]",
    "/vCATTable/ColumnUnique{}",
    "ColumnUnique{}",
    "Row{}",
    "/vCATTable/Column | /vCATTable/ColumnConst{}",
};

std::string fill(const char* shape, const std::string& value) {
    std::string out = shape;
    out.replace(out.find("{}"), 2, value);
    return out;
}

std::vector<Ref<IXMLDOMNode>> listed(IXMLDOMNodeList* list) {
    std::vector<Ref<IXMLDOMNode>> out;
    std::int32_t length = 0;
    if (list) list->get_length(&length);
    for (std::int32_t i = 0; i < length; ++i) {
        Ref<IXMLDOMNode> node;
        list->get_item(i, &node);
        out.push_back(node);
    }
    return out;
}

// The nodes are held: a node's object lives only as long as someone refers to it.
struct Answer {
    HRESULT listStatus;
    std::vector<Ref<IXMLDOMNode>> nodes;
    HRESULT singleStatus;
    Ref<IXMLDOMNode> single;
    bool operator==(const Answer& o) const {
        return listStatus == o.listStatus && nodes == o.nodes && singleStatus == o.singleStatus &&
               single == o.single;
    }
};

Answer ask(IXMLDOMNode* context, const std::string& xpath, bool recognise) {
    IndexedSelection::setEnabled(recognise);
    Answer answer;
    Ref<IXMLDOMNodeList> list;
    answer.listStatus = context->selectNodes(xpath, &list);
    answer.nodes = listed(list);
    answer.singleStatus = context->selectSingleNode(xpath, &answer.single);
    IndexedSelection::setEnabled(true);
    return answer;
}

// Random changes of two table documents and of detached nodes; after each change the answers
// from the tables must equal the answers of XPath.
class IndexAgainstXPath {
public:
    explicit IndexAgainstXPath(unsigned seed) : random_(seed) {
        docs_[0] = parseXml(kTable);
        docs_[1] = parseXml("<vCATTable><ColumnUnique id='C0'><RowUnique id='R1'>B</RowUnique>"
                            "</ColumnUnique><Column id='C1'><Row idref='R1'>x</Row></Column>"
                            "</vCATTable>");
    }

    int pick(std::size_t n) {
        return std::uniform_int_distribution<int>(0, static_cast<int>(n) - 1)(random_);
    }
    template <class T, std::size_t N>
    const T& anyOf(const T (&items)[N]) {
        return items[pick(N)];
    }

    // Nodes of both documents and the ones held aside (some detached).
    std::vector<Ref<IXMLDOMNode>> candidates(bool elementsOnly) {
        std::vector<Ref<IXMLDOMNode>> out;
        for (auto& doc : docs_) {
            Ref<IXMLDOMNodeList> list;
            doc->selectNodes(elementsOnly ? "//*" : "//node()", &list);
            for (auto& node : listed(list)) out.push_back(node);
        }
        for (auto& node : held_) {
            if (!elementsOnly || query<IXMLDOMElement>(node)) out.push_back(node);
            Ref<IXMLDOMNodeList> below;
            node->selectNodes(elementsOnly ? ".//*" : ".//node()", &below);
            for (auto& n : listed(below)) out.push_back(n);
        }
        return out;
    }
    Ref<IXMLDOMNode> anyNode(bool elementsOnly) {
        auto all = candidates(elementsOnly);
        return all.empty() ? nullptr : all[pick(all.size())];
    }
    Ref<IXMLDOMElement> anyElement() { return query<IXMLDOMElement>(anyNode(true)); }

    void change() {
        IXMLDOMDocument* doc = docs_[pick(2)];
        switch (pick(11)) {
        case 0: { // a new element, kept aside
            auto element = newElement(doc, anyOf(kTags), pick(2) ? anyOf(kKeys) : nullptr);
            if (pick(2)) element->setAttribute(pick(2) ? "id" : "idref", anyOf(kIds));
            hold(element);
            break;
        }
        case 1:
        case 2: { // insert or move, also between documents and into detached subtrees
            auto node = anyNode(false);
            auto parent = anyElement();
            if (!node || !parent) break;
            Ref<IXMLDOMNode> ref;
            if (pick(2)) parent->get_firstChild(&ref);
            if (ref && pick(2)) ref->get_nextSibling(&ref);
            parent->insertBefore(node, ref, nullptr);
            break;
        }
        case 3: { // removal
            auto node = anyNode(false);
            Ref<IXMLDOMNode> parent;
            if (node && node->get_parentNode(&parent) == S_OK &&
                parent->removeChild(node, nullptr) == S_OK && pick(2))
                hold(node);
            break;
        }
        case 4: { // replacement
            auto node = anyNode(false);
            auto old = anyNode(false);
            Ref<IXMLDOMNode> parent;
            if (node && old && old->get_parentNode(&parent) == S_OK)
                parent->replaceChild(node, old, nullptr);
            break;
        }
        case 5: // text of an element or of a text node
            if (auto node = anyNode(false)) node->put_text(anyOf(kKeys));
            break;
        case 6:
            if (auto element = anyElement())
                element->setAttribute(pick(2) ? "id" : "idref", anyOf(kIds));
            break;
        case 7:
            if (auto element = anyElement()) element->removeAttribute(pick(2) ? "id" : "idref");
            break;
        case 8: // the value of an attribute node
            if (auto element = anyElement()) {
                Ref<IXMLDOMNode> attribute;
                if (element->selectSingleNode(pick(2) ? "@id" : "@idref", &attribute) == S_OK)
                    attribute->put_text(anyOf(kIds));
            }
            break;
        case 9: // a new root, a copy, or letting go of held nodes
            if (pick(3) == 0) {
                if (auto element = anyElement()) doc->putref_documentElement(element);
            } else if (pick(2)) {
                Ref<IXMLDOMNode> copy;
                if (auto node = anyNode(false);
                    node && node->cloneNode(VARIANT_TRUE, &copy) == S_OK)
                    hold(copy);
            } else if (!held_.empty()) {
                held_.erase(held_.begin() + pick(held_.size()));
            }
            break;
        case 10:
            if (pick(20) == 0) {
                VARIANT_BOOL ok;
                doc->loadXML(kTable, &ok);
            }
            break;
        }
    }

    void hold(const Ref<IXMLDOMNode>& node) {
        held_.push_back(node);
        if (held_.size() > 12) held_.erase(held_.begin());
    }

    std::string randomQuery() {
        const char* shape = anyOf(kShapes);
        if (std::string(shape).ends_with("{}")) return fill(shape, "");
        if (std::string(shape).find("[{}]") != std::string::npos)
            return fill(shape, std::to_string(pick(5)));
        if (std::string(shape).find(". = ") != std::string::npos ||
            std::string(shape).find(".=") != std::string::npos)
            return fill(shape, anyOf(kKeys));
        return fill(shape, anyOf(kIds));
    }

    // Compares one random query on one random context; false (with a message) on a difference.
    bool compareOnce(int step) { return compare(step, randomQuery()); }

    // Compares `xpath` on one random context.
    bool compare(int step, const std::string& xpath) {
        Ref<IXMLDOMNode> context = pick(4) == 0 ? Ref<IXMLDOMNode>(docs_[pick(2)]) : anyNode(false);
        if (!context) return true;
        const Answer indexed = ask(context, xpath, true);
        const Answer plain = ask(context, xpath, false);
        if (indexed == plain) return true;
        ADD_FAILURE() << "step " << step << ": " << xpath << " on " << nameOf(context) << " ("
                      << xmlOf(context) << ") gives " << indexed.nodes.size() << " nodes, XPath "
                      << plain.nodes.size();
        return false;
    }

private:
    std::mt19937 random_;
    Ref<IXMLDOMDocument> docs_[2];
    std::vector<Ref<IXMLDOMNode>> held_;
};

// Whatever changed (a row's text and so its key, a row inserted, removed or moved, an id given
// twice, a subtree taken out of the tree, a new load), the tables answer what XPath answers: the
// same nodes in document order, and rows by place from the rows as they now stand.
TEST(DomIndex, AnswersEqualXPathAfterRandomChanges) {
    const std::uint64_t answeredBefore = IndexedSelection::answeredCount();
    for (unsigned seed = 1; seed <= 6; ++seed) {
        IndexAgainstXPath run(seed);
        bool same = true;
        for (int step = 0; step < 400 && same; ++step) {
            run.change();
            for (int q = 0; q < 6 && same; ++q) same = run.compareOnce(step);
            // Runs of positional lookups with no change between them.
            for (int n = 0; n < 6 && same; ++n)
                same = run.compare(step, "/vCATTable/ColumnUnique/RowUnique[" +
                                             std::to_string(n % 3 + 1) + "]");
        }
    }
    EXPECT_EQ(CanUnloadNow(), S_OK);
    // The tables really answered (the comparison is not XPath against itself).
    EXPECT_GT(IndexedSelection::answeredCount() - answeredBefore, 5000u);
}

// Each form the model builds its selections from is answered by the tables, with XPath's nodes.
TEST(DomIndex, EveryModelFormIsAnsweredFromTheTables) {
    struct Case {
        const char* context; // selected from the document
        const char* value;
    };
    const auto doc = parseXml(kTable);
    auto caseOf = [](const dom::IndexedForm& form) -> Case {
        namespace f = dom::forms;
        if (form.head == f::tableRowByKey.head) return {"/", "B"};
        if (form.head == f::tableRowAt.head) return {"/", "2"};
        if (form.head == f::childRowById.head || form.head == f::childById.head)
            return {"//ColumnUnique", "R2"};
        if (form.head == f::childByIdref.head) return {"//Column", "R2"};
        if (form.head == f::tableCellsByIdref.head) return {"/", "R2"};
        if (form.tail.empty()) return {"/", ""};
        return {"/vCATTable", "R1"};
    };
    for (const dom::IndexedForm& form : dom::forms::all) {
        const Case c = caseOf(form);
        Ref<IXMLDOMNode> context;
        ASSERT_EQ(doc->selectSingleNode(c.context, &context), S_OK);
        const std::string text = form.text(c.value);
        const std::uint64_t before = IndexedSelection::answeredCount();
        const Answer indexed = ask(context, text, true);
        EXPECT_EQ(IndexedSelection::answeredCount() - before, 2u) << text;
        EXPECT_FALSE(indexed.nodes.empty()) << text;
        EXPECT_TRUE(indexed == ask(context, text, false)) << text;

        // The form's own road, without the text, reaches the same nodes from the tables.
        Answer direct;
        const std::uint64_t beforeDirect = IndexedSelection::answeredCount();
        Ref<IXMLDOMNodeList> list;
        direct.listStatus = dom::Selection::selectAll(context, form, c.value, &list);
        direct.nodes = listed(list);
        direct.singleStatus = dom::Selection::selectOne(context, form, c.value, &direct.single);
        EXPECT_EQ(IndexedSelection::answeredCount() - beforeDirect, 2u) << text;
        EXPECT_TRUE(direct == indexed) << text;
        // An attribute of the first node, read without its object; nothing selected, no value.
        String id, expected;
        query<IXMLDOMElement>(indexed.single)->getAttribute("id", &expected);
        EXPECT_EQ(dom::Selection::selectOneAttribute(context, form, c.value, "id", &id), S_OK);
        EXPECT_EQ(id, expected) << text;
        if (form.tail.empty()) continue; // a form without a value selects its columns always
        EXPECT_EQ(dom::Selection::selectOneAttribute(context, form, "999", "id", &id), S_FALSE);
        EXPECT_TRUE(id.isNull()) << text;
    }
}

} // namespace
} // namespace qvr
