#include "formulas/column_freezer.h"

#include <string>
#include <string_view>
#include <vector>

#include "core/event_sinks.h"
#include "core/object_factory.h"
#include "formulas/calculated_column.h"
#include "platform/dom/element_append.h"
#include "platform/dom/indexed_forms.h"

namespace qvr {
namespace {

// Texts met in a walk over rows: their hashes, each with the row it came from. A hash met again
// is settled by reading that row's text anew, so nothing of the document is copied.
class MetTexts {
public:
    explicit MetTexts(std::size_t rows) {
        std::size_t size = 16;
        while (size < 2 * rows) size *= 2;
        slots_.assign(size, Slot{});
    }

    // Whether `text` came from a row met before; else it is noted as row `row`'s. `readRow(j, t)`
    // reads row j's text into `t`.
    template <class ReadRow>
    bool metBefore(std::string_view text, std::int32_t row, ReadRow&& readRow) {
        const std::size_t hash = std::hash<std::string_view>()(text);
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            Slot& slot = slots_[i];
            if (slot.row < 0) {
                slot = Slot{hash, row};
                return false;
            }
            String other;
            if (slot.hash == hash && readRow(slot.row, &other) && other.view() == text) return true;
        }
    }

private:
    struct Slot {
        std::size_t hash = 0;
        std::int32_t row = -1;
    };
    std::vector<Slot> slots_;
};

// Writes the cells of a frozen column straight into its element, for the rows where that is what
// the table's own road would write: a row that calculate() finds by its key (no row before it has
// that key), whose id no cell of the column names yet, with a value that converts to text. No
// event is fired: no one listens. The table then holds the cell the table's road would have made
// and appended: a `Row` whose `idref` is the row's id and whose text is the value as en-US writes
// it.
class CellWriter {
public:
    CellWriter(IXMLDOMElement* column, IXMLDOMNodeList* rows, std::int32_t count)
        : column_(column), rows_(rows), keys_(static_cast<std::size_t>(count)),
          ids_(static_cast<std::size_t>(count)) {}

    // `written` false: row `index` must take the table's road, and nothing was done.
    HRESULT freezeRow(CQVRTableCalculatedColumn::Series& series, std::int32_t index,
                      IXMLDOMNode* row, const String& key, bool* written) {
        *written = false;
        // A key or an id with an apostrophe cannot be selected: the table's road reports it.
        if (key.view().find('\'') != std::string_view::npos ||
            keys_.metBefore(key.view(), index, [&](std::int32_t j, String* text) {
                Ref<IXMLDOMNode> other;
                return rows_->get_item(j, &other) == S_OK && other->get_text(text) == S_OK;
            }))
            return S_OK;
        Ref<IXMLDOMElement> rowElement = query<IXMLDOMElement>(row);
        String id;
        if (!rowElement || rowElement->getAttribute("id", &id) != S_OK || id.isEmpty() ||
            id.view().find('\'') != std::string_view::npos ||
            ids_.metBefore(id.view(), index, [&](std::int32_t j, String* text) {
                Ref<IXMLDOMNode> other;
                Ref<IXMLDOMElement> element;
                return rows_->get_item(j, &other) == S_OK &&
                       (element = query<IXMLDOMElement>(other)) &&
                       element->getAttribute("id", text) == S_OK;
            }))
            return S_OK;
        Variant value, text;
        HRESULT hr = series.calculateAt(id, &value);
        if (hr != S_OK) return hr;
        // The text of a cell is its value as en-US writes it, whatever the user's locale; a value
        // that has none fails on the table's road.
        if (changeType(&text, value, LCID_EN_US, 0, VT_BSTR) != S_OK) return S_OK;
        if ((hr = dom::ElementAppend::textElement(column_, "Row", "idref", id, text.str())) != S_OK)
            return hr;
        *written = true;
        return S_OK;
    }

private:
    IXMLDOMElement* column_;
    IXMLDOMNodeList* rows_;
    // The keys of the rows met so far, and the ids the column's cells name.
    MetTexts keys_, ids_;
};

} // namespace

HRESULT ColumnFreezer::freezeAll(IQVRCatalogTable* table, IXMLDOMElement* root, VARIANT_BOOL* ok) {
    *ok = VARIANT_FALSE;
    Ref<IXMLDOMNodeList> calculated;
    std::int32_t count = 0;
    HRESULT hr = root->selectNodes("/vCATTable/ColumnCalc", &calculated);
    if (hr == S_OK) hr = calculated->get_length(&count);
    if (hr != S_OK) return hr;
    if (count > 0) {
        Ref<IXMLDOMNodeList> rows;
        if ((hr = root->selectNodes(String(dom::forms::tableRows.text({})), &rows)) != S_OK)
            return hr;
        for (std::int32_t i = 0; i < count && hr == S_OK; ++i) {
            Ref<IXMLDOMNode> node;
            Ref<IQVRCatalogObject> object;
            if ((hr = calculated->get_item(i, &node)) != S_OK) break;
            if ((hr = createObjectOf(node, table, table, &object)) != S_OK) break;
            Ref<IQVRTableCalculatedColumn> column = query<IQVRTableCalculatedColumn>(object);
            if (!column) {
                hr = E_NOINTERFACE;
                break;
            }
            if ((hr = freezeColumn(table, column, rows)) == S_OK)
                hr = table->removeChild(column, nullptr);
        }
    }
    if (hr == S_OK) *ok = VARIANT_TRUE;
    return hr;
}

HRESULT ColumnFreezer::freezeColumn(IQVRCatalogTable* table, IQVRTableCalculatedColumn* column,
                                    IXMLDOMNodeList* rows) {
    std::int32_t count = 0;
    HRESULT hr = rows->get_length(&count);
    if (FAILED(hr)) return hr;
    if (count == 0) return S_FALSE;

    // The description of the twin; what cannot be read stays at its default.
    QVRColumnDataType dataType = qvrDataTypeString;
    String name, attrib, desc, unit;
    VARIANT_BOOL visible = VARIANT_TRUE;
    column->get_dataType(&dataType);
    column->get_name(&name);
    column->get_attrib(&attrib);
    column->get_desc(&desc);
    column->get_unit(&unit);
    column->get_visible(&visible);
    Ref<IQVRTableColumn> twin;
    if ((hr = table->createColumn(dataType, name, attrib, desc, unit, visible, &twin)) != S_OK)
        return hr;
    if ((hr = table->insertBefore(twin, Variant(static_cast<IUnknown*>(column)), nullptr)) != S_OK)
        return hr;

    // With no sink anywhere, nothing but this walk changes the table until it ends (formulas
    // only read), so the formula and the columns it names need reading only once, and the rows
    // can be followed in step.
    std::unique_ptr<CQVRTableCalculatedColumn::Series> series;
    if (auto* calculated = dynamic_cast<CQVRTableCalculatedColumn*>(column);
        calculated && !EventSinks::anyAdvised())
        series = calculated->startSeries();
    Ref<IXMLDOMElement> twinElement;
    if (series && twin->get_domNode(&twinElement) != S_OK) twinElement = nullptr;
    CellWriter writer(twinElement, rows, count);

    for (std::int32_t i = 0; i < count && hr == S_OK; ++i) {
        Ref<IXMLDOMNode> row;
        String key;
        if ((hr = rows->get_item(i, &row)) != S_OK || (hr = row->get_text(&key)) != S_OK) break;
        if (series && EventSinks::anyAdvised()) series = nullptr;
        bool written = false;
        if (series && twinElement) hr = writer.freezeRow(*series, i, row, key, &written);
        if (hr != S_OK || written) continue;
        // Through the table, as a client would: what the model decides is decided there.
        Variant value;
        Ref<IQVRTableCell> cell;
        if ((hr = column->calculate(Variant(key), &value)) != S_OK) break;
        if ((hr = table->createCell(key, value, &cell)) != S_OK) break;
        hr = twin->appendChild(cell, nullptr);
    }
    if (hr != S_OK) table->removeChild(twin, nullptr);
    return hr;
}

} // namespace qvr
