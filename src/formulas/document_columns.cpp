#include "formulas/document_columns.h"

#include "core/value_selection.h"

namespace qvr {
namespace {

// Whether `name` can be pasted into a selection; a name that cannot is never looked up.
bool fitsSelection(const String& name) {
    return !selectionWithValue("", name, "").isNull();
}

// Whether `column` has the `dataType` "string", exactly.
bool isStringColumn(IXMLDOMElement* column) {
    String type;
    return column->getAttribute("dataType", &type) == S_OK && type == "string";
}

} // namespace

HRESULT DocumentColumns::count(std::int32_t* count) {
    *count = 0;
    columns_.clear();
    if (!document_) return E_FAIL;
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
    if (c->nameStatus == S_OK) *name = c->name;
    return c->nameStatus;
}

FormulaColumns::Lookup DocumentColumns::cell(const String& name, const String& rowId) {
    Lookup found;
    // For the document this is one selection with both the name and the row id pasted in.
    const String cellPath = selectionWithValue(dom::forms::childByIdref, rowId);
    if (cellPath.isNull() || !fitsSelection(name)) {
        found.outcome = Lookup::Broken;
        return found;
    }
    // The first `Row` in document order among the columns of that name: columns in their order,
    // and in each the first cell of the row.
    const auto count = static_cast<std::int32_t>(columns_.size());
    for (std::int32_t i = 0; i < count; ++i) {
        if (!isNamed(i, false, name)) continue;
        IXMLDOMElement* column = columns_[static_cast<std::size_t>(i)].element;
        Ref<IXMLDOMNodeList> cells;
        if (FAILED(column->selectNodes(cellPath, &cells))) {
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
            found.isString = isStringColumn(column);
            return found;
        }
    }
    return found;
}

FormulaColumns::Lookup DocumentColumns::constant(const String& name) {
    Lookup found;
    if (!fitsSelection(name)) {
        found.outcome = Lookup::Broken;
        return found;
    }
    const auto count = static_cast<std::int32_t>(columns_.size());
    for (std::int32_t i = 0; i < count; ++i) {
        if (!isNamed(i, true, name)) continue;
        IXMLDOMElement* column = columns_[static_cast<std::size_t>(i)].element;
        found.outcome = Lookup::Found;
        found.status = column->getAttribute("constant", &found.text);
        found.isString = isStringColumn(column);
        return found;
    }
    return found;
}

} // namespace qvr
