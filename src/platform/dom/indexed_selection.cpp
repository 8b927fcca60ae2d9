#include "platform/dom/indexed_selection.h"
#include "platform/dom/xml_text.h"

#include <algorithm>
#include <atomic>
#include <string>

#include <libxml/xpath.h>

#include "platform/dom/index.h"
#include "platform/dom/indexed_forms.h"
#include "platform/dom/tree.h"

namespace qvr::dom {
namespace {

std::atomic<bool> recognising{true};
std::atomic<std::uint64_t> answered{0};

enum class Shape {
    DescendantById,    // .//*[@id = 'X'] relative to any node
    DocumentById,      // //*[@id = 'X'] anywhere in the document
    ChildById,         // *[@id='X'] among the children of the context
    TableRowByKey,     // /vCATTable/ColumnUnique/RowUnique[. = 'KEY']
    ChildRowById,      // RowUnique[@id='ID'] relative to ColumnUnique
    TableRowById,      // /vCATTable/ColumnUnique/RowUnique[@id='ID']
    TableCellsByIdref, // /vCATTable//*[@idref='ID']
    ChildByIdref,      // *[@idref = 'ID'] relative to a column
    TableRowAt,        // /vCATTable/ColumnUnique/RowUnique[N]
    TableRows,         // /vCATTable/ColumnUnique/RowUnique
    TableColumns,      // /vCATTable/ColumnUnique, /vCATTable/Column | /vCATTable/ColumnConst
    ChildrenNamed,     // NAME: the context's child elements of that name, without namespace
};

struct ShapeForm {
    std::string_view prefix;
    std::string_view suffix;
    Shape shape;
};

// The value stands between prefix and suffix. The model's own forms come first, those it uses
// for every cell it places ahead of the rest; each is followed by the other spacing people write.
// No text fits two of these forms but for the position form, whose prefix is shared: it comes
// last.
constexpr ShapeForm kShapeForms[] = {
    {forms::tableRowByKey.head, forms::tableRowByKey.tail, Shape::TableRowByKey},
    {"/vCATTable/ColumnUnique/RowUnique[.='", "']", Shape::TableRowByKey},
    {forms::childByIdref.head, forms::childByIdref.tail, Shape::ChildByIdref},
    {"*[@idref='", "']", Shape::ChildByIdref},
    {forms::childRowById.head, forms::childRowById.tail, Shape::ChildRowById},
    {"RowUnique[@id = '", "']", Shape::ChildRowById},
    {forms::descendantById.head, forms::descendantById.tail, Shape::DescendantById},
    {".//*[@id='", "']", Shape::DescendantById},
    {forms::documentById.head, forms::documentById.tail, Shape::DocumentById},
    {"//*[@id='", "']", Shape::DocumentById},
    {forms::childById.head, forms::childById.tail, Shape::ChildById},
    {"*[@id='", "']", Shape::ChildById},
    {forms::tableRowById.head, forms::tableRowById.tail, Shape::TableRowById},
    {"/vCATTable/ColumnUnique/RowUnique[@id = '", "']", Shape::TableRowById},
    {forms::tableCellsByIdref.head, forms::tableCellsByIdref.tail, Shape::TableCellsByIdref},
    {"/vCATTable//*[@idref = '", "']", Shape::TableCellsByIdref},
    {forms::tableRows.head, forms::tableRows.tail, Shape::TableRows},
    {forms::tableUniqueColumn.head, forms::tableUniqueColumn.tail, Shape::TableColumns},
    {forms::tableValueColumns.head, forms::tableValueColumns.tail, Shape::TableColumns},
    {forms::tableRowAt.head, forms::tableRowAt.tail, Shape::TableRowAt},
};

// Positions with more digits are left to XPath.
constexpr std::size_t kMaxPositionDigits = 9;

bool isStrictDescendant(xmlNodePtr node, xmlNodePtr ancestor) {
    for (xmlNodePtr p = node->parent; p; p = p->parent)
        if (p == ancestor) return true;
    return false;
}

bool valueFits(Shape shape, std::string_view value) {
    if (shape == Shape::TableColumns || shape == Shape::TableRows) return value.empty();
    if (shape != Shape::TableRowAt) return value.find('\'') == std::string_view::npos;
    return !value.empty() && value.size() <= kMaxPositionDigits &&
           std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A name without prefix, in ASCII: as a whole expression it is a step to the children so named.
bool isPlainName(std::string_view text) {
    auto isStart = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    };
    return !text.empty() && isStart(text.front()) &&
           std::all_of(text.begin() + 1, text.end(), [&](char c) {
               return isStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
           });
}

constexpr ShapeForm kChildrenNamed{"", "", Shape::ChildrenNamed};

const ShapeForm* recognise(std::string_view expression, std::string_view* value) {
    if (isPlainName(expression)) {
        *value = expression;
        return &kChildrenNamed;
    }
    for (const auto& form : kShapeForms) {
        if (expression.size() < form.prefix.size() + form.suffix.size() ||
            !expression.starts_with(form.prefix) || !expression.ends_with(form.suffix))
            continue;
        const std::string_view inner = expression.substr(
            form.prefix.size(), expression.size() - form.prefix.size() - form.suffix.size());
        if (!valueFits(form.shape, inner)) continue;
        *value = inner;
        return &form;
    }
    return nullptr;
}

bool precedes(xmlNodePtr a, xmlNodePtr b) {
    return xmlXPathCmpNodes(a, b) == 1;
}

using Entry = TextTable::Entry;

// The candidates that pass `keep`, in document order. A candidate's parent is read from its
// entry, so that picking the children of one element reads none of the others.
template <class Keep>
void collect(Index::Nodes candidates, Keep&& keep, bool firstOnly, std::vector<xmlNodePtr>* nodes) {
    for (const Entry& candidate : candidates)
        if (keep(candidate)) nodes->push_back(candidate.node);
    if (nodes->size() < 2) return;
    if (firstOnly) {
        xmlNodePtr first = *std::min_element(nodes->begin(), nodes->end(), precedes);
        nodes->assign(1, first);
    } else {
        std::sort(nodes->begin(), nodes->end(), precedes);
    }
}

} // namespace

void IndexedSelection::setEnabled(bool enabled) {
    recognising = enabled;
}

bool IndexedSelection::enabled() {
    return recognising;
}

std::uint64_t IndexedSelection::answeredCount() {
    return answered;
}

namespace {

// The shape of a named form: found by the form's own texts first (the table above is made of
// them), by equal texts for a copy.
const ShapeForm* shapeOf(const IndexedForm& form) {
    const auto same = [](std::string_view a, std::string_view b) {
        return a.data() == b.data() && a.size() == b.size();
    };
    for (const auto& shape : kShapeForms)
        if (same(shape.prefix, form.head) && same(shape.suffix, form.tail)) return &shape;
    for (const auto& shape : kShapeForms)
        if (shape.prefix == form.head && shape.suffix == form.tail) return &shape;
    return nullptr;
}

// Answers `shape` with the value `text` from the tables; false when they do not cover `context`.
bool answerShape(xmlNodePtr context, const ShapeForm& shape, std::string_view text, bool firstOnly,
                 std::vector<xmlNodePtr>* nodes) {
    const ShapeForm* form = &shape;
    if (form->shape == Shape::ChildrenNamed) {
        // Walked at once, in or out of the tree, from an element or the document only.
        if (context->type != XML_ELEMENT_NODE && !isDocument(context)) return false;
        const std::string name(text);
        nodes->clear();
        ++answered;
        for (xmlNodePtr child = context->children; child; child = child->next) {
            if (!isPlainElement(child, name.c_str())) continue;
            nodes->push_back(child);
            if (firstOnly) break;
        }
        return true;
    }
    // Relative shapes: the tables hold the nodes of the tree only.
    const bool relative = form->prefix.front() != '/';
    if (relative && !Index::inTree(context)) return false;

    Index& index = Tree::of(context)->index();
    const std::string_view value = text;
    nodes->clear();
    ++answered;
    switch (form->shape) {
    case Shape::DescendantById:
        collect(
            index.withId(value),
            [&](const Entry& e) {
                return isDocument(context) || isStrictDescendant(e.node, context);
            },
            firstOnly, nodes);
        return true;
    case Shape::DocumentById:
        collect(
            index.withId(value), [](const Entry&) { return true; }, firstOnly, nodes);
        return true;
    case Shape::ChildById:
        collect(
            index.withId(value), [&](const Entry& e) { return e.parent == context; }, firstOnly,
            nodes);
        return true;
    case Shape::TableRowByKey:
        collect(
            index.rowsWithKey(value), [](const Entry&) { return true; }, firstOnly, nodes);
        return true;
    case Shape::ChildRowById:
        collect(
            index.withId(value),
            [&](const Entry& e) {
                return e.parent == context && isPlainElement(e.node, "RowUnique");
            },
            firstOnly, nodes);
        return true;
    case Shape::TableRowById:
        collect(
            index.withId(value), [](const Entry& e) { return Index::isTableRow(e.node); },
            firstOnly, nodes);
        return true;
    case Shape::TableCellsByIdref: {
        xmlNodePtr root = xmlDocGetRootElement(context->doc);
        if (!isPlainElement(root, "vCATTable")) return true;
        collect(
            index.withIdref(value),
            [&](const Entry& e) { return isStrictDescendant(e.node, root); }, firstOnly, nodes);
        return true;
    }
    case Shape::ChildByIdref:
        collect(
            index.withIdref(value), [&](const Entry& e) { return e.parent == context; }, firstOnly,
            nodes);
        return true;
    case Shape::TableRowAt:
        index.rowsAt(std::stoul(std::string(value)), firstOnly, nodes);
        return true;
    case Shape::TableRows: {
        xmlNodePtr root = xmlDocGetRootElement(context->doc);
        if (!isPlainElement(root, "vCATTable")) return true;
        for (xmlNodePtr column = root->children; column; column = column->next) {
            if (!isPlainElement(column, "ColumnUnique")) continue;
            for (xmlNodePtr row = column->children; row; row = row->next) {
                if (!isPlainElement(row, "RowUnique")) continue;
                nodes->push_back(row);
                if (firstOnly) return true;
            }
        }
        return true;
    }
    case Shape::ChildrenNamed: return false; // answered above
    case Shape::TableColumns: {
        // Children of the root, walked: a table has a handful of columns.
        xmlNodePtr root = xmlDocGetRootElement(context->doc);
        if (!isPlainElement(root, "vCATTable")) return true;
        const bool unique = form->prefix == forms::tableUniqueColumn.head;
        for (xmlNodePtr column = root->children; column; column = column->next) {
            const bool wanted =
                unique ? isPlainElement(column, "ColumnUnique")
                       : isPlainElement(column, "Column") || isPlainElement(column, "ColumnConst");
            if (!wanted) continue;
            nodes->push_back(column);
            if (firstOnly) break;
        }
        return true;
    }
    }
    return false;
}

} // namespace

bool IndexedSelection::answer(xmlNodePtr context, std::string_view expression, bool firstOnly,
                              std::vector<xmlNodePtr>* nodes) {
    if (!recognising) return false;
    std::string_view text;
    const ShapeForm* form = recognise(expression, &text);
    return form && answerShape(context, *form, text, firstOnly, nodes);
}

bool IndexedSelection::answer(xmlNodePtr context, const IndexedForm& form, std::string_view value,
                              bool firstOnly, std::vector<xmlNodePtr>* nodes) {
    if (!recognising || value.find('\0') != std::string_view::npos) return false;
    const ShapeForm* shape = shapeOf(form);
    return shape && valueFits(shape->shape, value) &&
           answerShape(context, *shape, value, firstOnly, nodes);
}

} // namespace qvr::dom
