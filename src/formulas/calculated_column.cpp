#include "formulas/calculated_column.h"

#include <string_view>

#include <qvr/content.h>
#include <qvr/table.h>

#include "core/row_tool.h"
#include "formulas/document_columns.h"
#include "formulas/formula_evaluator.h"
#include "platform/dom/index.h"

namespace qvr {
namespace {

using Column = CQVRTableCalculatedColumn;

// What the column tells formulas about itself: read-only properties, by name with case ignored.
// An absent attribute reads as Empty.
struct ScriptMember {
    std::string_view name;
    HRESULT (*read)(Column& column, Variant* value);
};

template <auto Get>
HRESULT readText(Column& column, Variant* value) {
    String text;
    const HRESULT hr = (column.*Get)(&text);
    if (hr == S_OK) *value = Variant(text);
    return SUCCEEDED(hr) ? S_OK : hr;
}

HRESULT readDataType(Column& column, Variant* value) {
    QVRColumnDataType type = qvrDataTypeString;
    const HRESULT hr = column.get_dataType(&type);
    if (hr == S_OK) *value = Variant(static_cast<std::int32_t>(type));
    return SUCCEEDED(hr) ? S_OK : hr;
}

HRESULT readVisible(Column& column, Variant* value) {
    VARIANT_BOOL visible = VARIANT_TRUE;
    const HRESULT hr = column.get_visible(&visible);
    if (SUCCEEDED(hr)) *value = Variant(visible == VARIANT_TRUE);
    return SUCCEEDED(hr) ? S_OK : hr;
}

HRESULT readObjectType(Column& column, Variant* value) {
    QVRObjectType type = qvrCatalog;
    const HRESULT hr = column.get_objectType(&type);
    if (hr == S_OK) *value = Variant(static_cast<std::int32_t>(type));
    return hr;
}

constexpr ScriptMember kScriptMembers[] = {
    {"Name", &readText<&Column::get_name>},
    {"Desc", &readText<&Column::get_desc>},
    {"Unit", &readText<&Column::get_unit>},
    {"Attrib", &readText<&Column::get_attrib>},
    {"Expression", &readText<&Column::get_expression>},
    {"Key", &readText<&Column::get_key>},
    {"DataType", &readDataType},
    {"Visible", &readVisible},
    {"ObjectType", &readObjectType},
};

// The evaluator's view of the column.
class ColumnHost final : public FormulaEvaluator::Host {
public:
    explicit ColumnHost(Column& column) : column_(column) {}

    IUnknown* scriptItem() override { return column_.self(); }
    ErrorSource reportSource() const override { return column_.errorSource(); }

    // The table is the column's parent, and the part the table's; a table's text is its
    // description.
    void describe(String* columnName, String* tableText, String* partText) override {
        column_.get_name(columnName);
        Ref<IQVRCatalogObject> parent;
        if (column_.get_parentNode(&parent) != S_OK || !parent) return;
        if (Ref<IQVRCatalogTable> table = query<IQVRCatalogTable>(parent)) {
            table->get_desc(tableText);
            parent = nullptr;
            if (table->get_parentNode(&parent) != S_OK) return;
        }
        if (Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(parent)) part->get_name(partText);
    }

private:
    Column& column_;
};

} // namespace

class Column::KeptRun {
public:
    KeptRun(Column& column, const String& formula)
        : document_(column.ownerDocument()),
          // Read before the columns are listed: a change made meanwhile is seen next time.
          version_(dom::Index::namingVersion()), lcid_(GetUserLocale()), formula_(formula),
          columns_(column.ownerDocument()), host_(column), run_(columns_, host_, formula_) {}

    // Nothing it was made of can have changed: the formula too is the one it was made for.
    bool current(IXMLDOMDocument* document) const {
        return document == document_.get() && version_ == dom::Index::namingVersion() &&
               lcid_ == GetUserLocale();
    }
    HRESULT evaluate(const String& rowId, Variant* result) { return run_.evaluate(rowId, result); }

private:
    Ref<IXMLDOMDocument> document_;
    std::uint64_t version_;
    LCID lcid_;
    String formula_;
    DocumentColumns columns_;
    ColumnHost host_;
    FormulaRun run_;
};

HRESULT Column::get_expression(String* expression) {
    return accessors::getAttribute(*this, "expression", expression);
}

HRESULT Column::put_expression(const String& expression) {
    return accessors::putAttribute(*this, "expression", expression);
}

HRESULT Column::calculate(const Variant& row, Variant* result) {
    if (!result) return E_POINTER;
    return guarded([&] {
        *result = Variant();
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMElement> rowElement;
        HRESULT hr = findRow(row, &rowElement);
        if (hr != S_OK) return hr;
        String id;
        if (FAILED(hr = rowElement->getAttribute("id", &id))) return hr;
        if (kept_ && kept_->current(ownerDocument())) return kept_->evaluate(id, result);
        String formula;
        if ((hr = get_expression(&formula)) != S_OK) return hr;
        if (formula.isEmpty()) return S_OK;
        return evaluateFormula(id, formula, result);
    });
}

class Column::ColumnSeries final : public Series {
public:
    explicit ColumnSeries(Column& column)
        : column_(column), columns_(column.ownerDocument()), host_(column) {
        columns_.followRows();
        formulaStatus_ = column.get_expression(&formula_);
        if (formulaStatus_ == S_OK && !formula_.isEmpty())
            run_ = std::make_unique<FormulaRun>(columns_, host_, formula_);
    }

    HRESULT calculateAt(const String& rowId, Variant* result) override {
        if (!result) return E_POINTER;
        return guarded([&] {
            *result = Variant();
            if (!column_.initialized()) return column_.notInitialized();
            // What calculate() does once it has the row's id.
            if (formulaStatus_ != S_OK) return formulaStatus_;
            return run_ ? run_->evaluate(rowId, result) : S_OK;
        });
    }

private:
    Column& column_;
    DocumentColumns columns_;
    ColumnHost host_;
    HRESULT formulaStatus_ = S_OK;
    String formula_;
    std::unique_ptr<FormulaRun> run_;
};

Column::CQVRTableCalculatedColumn() = default;
Column::~CQVRTableCalculatedColumn() = default;

std::unique_ptr<Column::Series> Column::startSeries() {
    return std::make_unique<ColumnSeries>(*this);
}

HRESULT Column::findRow(const Variant& row, Ref<IXMLDOMElement>* found) {
    RowTool tool(element());
    HRESULT hr;
    if (row.vt() == VT_BSTR) {
        // A text is the row's key, whatever it looks like: "0" names the row whose key is "0".
        hr = tool.findRowByValue(row.str(), found);
        return hr == S_FALSE ? report(msgIdNotFound, E_INVALIDARG) : hr;
    }
    Variant index;
    if ((hr = changeType(&index, row, LOCALE_USER_DEFAULT, 0, VT_I4)) != S_OK) return hr;
    if (index.i4() < 1) return report(msgIndexZero, E_INVALIDARG);
    hr = tool.findRowByIndex(index.i4() - 1, found);
    return hr == S_FALSE ? report(msgIndexOutOfRange, E_INVALIDARG) : hr;
}

HRESULT Column::evaluateFormula(const String& rowId, const String& formula, Variant* result) {
    kept_.reset();
    kept_ = std::make_unique<KeptRun>(*this, formula);
    return kept_->evaluate(rowId, result);
}

HRESULT Column::invoke(const String& name, const Variant*, int argc, Variant* result) {
    return guarded([&] {
        for (const ScriptMember& member : kScriptMembers) {
            if (!name.equalsIgnoreCase(member.name)) continue;
            if (argc != 0) return DISP_E_BADPARAMCOUNT;
            *result = Variant();
            return member.read(*this, result);
        }
        return DISP_E_MEMBERNOTFOUND;
    });
}

} // namespace qvr
