// The DOM tool for the rows of a table. A table keeps its rows in a register, the `RowUnique`
// children of `ColumnUnique`; a row's values lie in the columns, one cell per column, each naming
// its row by the row's `id` in `idref`. These operations turn a cell's key into that link, make
// and drop rows as cells come and go, and find rows by key, id and place.
//
// The tool stands on an element of a table; the selections go to its document, in shapes the DOM
// layer answers from its indexes. Lookups answer S_OK and the row, or S_FALSE and null.
#pragma once

#include <cstdint>

#include "core/xml_dom_tool.h"

namespace qvr {

class RowTool : public CXMLDOMTool {
public:
    using CXMLDOMTool::CXMLDOMTool;

    // A row by its key text.
    HRESULT findRowByValue(const String& key, Ref<IXMLDOMElement>* row);
    // A row by its `id`.
    HRESULT findRowById(const String& id, Ref<IXMLDOMElement>* row);
    // A row by its place: `index` counts from 0; the selection written counts from 1.
    HRESULT findRowByIndex(std::int32_t index, Ref<IXMLDOMElement>* row);
    // The cells in all columns whose `idref` is the `id` of the tool's node (a row).
    HRESULT selectIdRefs(std::int32_t* count, Ref<IXMLDOMNodeList>* cells);
    // The tool stands on the column that has just received `cell`: the cell gets the id of the
    // row of its key, which is made (behind the row of the cell's next sibling) when there is
    // none. QVR_E_DUPLICATE when the column already has a cell for that row.
    HRESULT addRowForCell(IQVRCatalogObject* table, IQVRCatalogObject* cell);
    // Before `cell` leaves its column: its row goes with it when it is the row's last cell.
    // S_FALSE when the cell's row is not found.
    HRESULT removeRowForCell(IQVRCatalogObject* cell);
    // Tells `table`'s root that the tool's row came (before the row `position`) or went: the
    // unique column is the source, a wrapper of the row the subject.
    HRESULT fireRowEvent(IQVRCatalogObject* table, const Variant& position, std::int32_t event);
};

} // namespace qvr
