#include "formulas/document_columns.h"

#include "core/value_selection.h"
#include "platform/dom/index.h"
#include "platform/dom/selection.h"

namespace qvr {
namespace {

// Whether `column` has the `dataType` "string", exactly.
bool isStringColumn(IXMLDOMElement* column) {
    String type;
    return column->getAttribute("dataType", &type) == S_OK && type == "string";
}

} // namespace

HRESULT DocumentColumns::count(std::int32_t* count) {
    *count = 0;
    // A listing stands while the table is followed, or while nothing could have changed it.
    if (listed_ && (following_ || listedVersion_ == dom::Index::namingVersion())) {
        *count = static_cast<std::int32_t>(columns_.size());
        return S_OK;
    }
    columns_.clear();
    listed_ = false;
    if (!document_) return E_FAIL;
    listedVersion_ = dom::Index::namingVersion();
    Ref<IXMLDOMNodeList> list;
    HRESULT hr = document_->selectNodes(
        String(dom::forms::tableValueColumns.text(std::string_view())), &list);
    if (FAILED(hr)) return hr;
    std::int32_t length = 0;
    if (FAILED(hr = list->get_length(&length))) return hr;
    columns_.resize(static_cast<std::size_t>(length));
    for (std::int32_t i = 0; i < length; ++i) {
        Ref<IXMLDOMNode> node;
        if (FAILED(hr = list->get_item(i, &node))) return hr;
        Column& column = columns_[static_cast<std::size_t>(i)];
        column.element = query<IXMLDOMElement>(node);
        String tag;
        if (column.element && column.element->get_nodeName(&tag) == S_OK)
            column.isConst = tag == "ColumnConst";
    }
    *count = length;
    listed_ = true;
    return S_OK;
}

DocumentColumns::Column* DocumentColumns::column(std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= columns_.size()) return nullptr;
    Column& column = columns_[static_cast<std::size_t>(index)];
    if (!column.nameRead) {
        column.nameRead = true;
        column.nameStatus =
            column.element ? column.element->getAttribute("name", &column.name) : E_NOINTERFACE;
    }
    return &column;
}

bool DocumentColumns::isNamed(std::int32_t index, bool isConst, const String& name) {
    const Column* c = column(index);
    return c && c->element && c->isConst == isConst && c->nameStatus == S_OK && c->name == name;
}

HRESULT DocumentColumns::name(std::int32_t index, String* name) {
    const Column* c = column(index);
    if (!c) return E_INVALIDARG;
    if (c->nameStatus == S_OK && name) *name = c->name;
    return c->nameStatus;
}

DocumentColumns::Column& DocumentColumns::detailed(std::int32_t index) {
    Column& c = columns_[static_cast<std::size_t>(index)];
    if (!c.detailsRead) {
        c.detailsRead = true;
        c.isString = isStringColumn(c.element);
    }
    return c;
}

FormulaColumns::Lookup DocumentColumns::cell(const String& name, const String& rowId) {
    Lookup found;
    // For the document this is one selection with both the name and the row id pasted in.
    if (!fitsLiteral(rowId) || !fitsLiteral(name)) {
        found.outcome = Lookup::Broken;
        return found;
    }
    // The first `Row` in document order among the columns of that name: columns in their order,
    // and in each the first cell of the row.
    const auto count = static_cast<std::int32_t>(columns_.size());
    for (std::int32_t i = 0; i < count; ++i) {
        if (!isNamed(i, false, name)) continue;
        if (following_) {
            if (Ref<IXMLDOMNode> node = cellInStep(detailed(i), rowId)) {
                found.outcome = Lookup::Found;
                found.status = node->get_text(&found.text);
                found.isString = detailed(i).isString;
                return found;
            }
        }
        IXMLDOMElement* column = columns_[static_cast<std::size_t>(i)].element;
        // The first of the row's nodes here answers when it is a `Row`, as it always is but in
        // a document someone wrote by hand; else all of them are looked at.
        Ref<IXMLDOMNode> first;
        const HRESULT hr = selectOneWithValue(column, dom::forms::childByIdref, rowId, &first);
        if (FAILED(hr)) {
            found.outcome = Lookup::Broken;
            return found;
        }
        if (hr == S_FALSE) continue;
        if (String tag; first->get_nodeName(&tag) == S_OK && tag == "Row") {
            found.outcome = Lookup::Found;
            found.status = first->get_text(&found.text);
            found.isString = detailed(i).isString;
            return found;
        }
        if (cellPath_.isNull() || cellRow_ != rowId) {
            cellRow_ = rowId;
            cellPath_ = selectionWithValue(dom::forms::childByIdref, rowId);
        }
        Ref<IXMLDOMNodeList> cells;
        if (FAILED(column->selectNodes(cellPath_, &cells))) {
            found.outcome = Lookup::Broken;
            return found;
        }
        std::int32_t length = 0;
        cells->get_length(&length);
        for (std::int32_t k = 0; k < length; ++k) {
            Ref<IXMLDOMNode> node;
            String tag;
            if (cells->get_item(k, &node) != S_OK || node->get_nodeName(&tag) != S_OK ||
                tag != "Row")
                continue;
            found.outcome = Lookup::Found;
            found.status = node->get_text(&found.text);
            found.isString = detailed(i).isString;
            return found;
        }
    }
    return found;
}

Ref<IXMLDOMNode> DocumentColumns::cellInStep(Column& c, const String& rowId) {
    // The next cell of a row: a node that is no cell of a row is never an answer, and is passed;
    // a cell of another row stays ahead.
    Ref<IXMLDOMNode> next;
    bool same = false;
    if (dom::Selection::nextChildWithAttribute(c.element, c.passed, "Row", "idref", rowId.view(),
                                               &next, &same) != S_OK ||
        !same)
        return nullptr;
    c.passed = next;
    return next;
}

FormulaColumns::Lookup DocumentColumns::constant(const String& name) {
    Lookup found;
    if (!fitsLiteral(name)) {
        found.outcome = Lookup::Broken;
        return found;
    }
    const auto count = static_cast<std::int32_t>(columns_.size());
    for (std::int32_t i = 0; i < count; ++i) {
        if (!isNamed(i, true, name)) continue;
        IXMLDOMElement* column = columns_[static_cast<std::size_t>(i)].element;
        found.outcome = Lookup::Found;
        found.status = column->getAttribute("constant", &found.text);
        found.isString = detailed(i).isString;
        return found;
    }
    return found;
}

} // namespace qvr
