// The kinds that hold one cell per row (plain columns, reference columns and views): a cell that
// enters takes the id of the row of its key, and the row is made when there is none; a cell that
// leaves takes its row along when it was the row's last cell. Which cells a kind accepts, how it
// selects them and what it answers for a wrong one stand in the container table; the message for
// a row that has a cell here already stands in the table below.
#pragma once

#include <cstdint>

#include <qvr/events.h>

#include "core/child_tool.h"
#include "core/object_types.h"
#include "core/row_tool.h"
#include "platform/com/failure.h"
#include "platform/com/messages.h"

namespace qvr {

struct CellHolderRow {
    QVRObjectType owner;
    Msg alreadyAttachedMessage;
};

inline constexpr CellHolderRow cellHolderTable[] = {
    {qvrTableColumn, msgCellAlreadyAttached},
    {qvrRefColumn, msgCellAlreadyAttached},
    {qvrView, msgDrawingAlreadyAttached},
};

constexpr std::uint32_t alreadyAttachedMessage(QVRObjectType owner) {
    for (const CellHolderRow& row : cellHolderTable)
        if (row.owner == owner) return row.alreadyAttachedMessage;
    return 0;
}

// `Base` is a kind of the table family; `CellInterface` what its cells must offer to be removed.
template <class Base, class CellInterface>
class HoldsCells : public Base {
public:
    static_assert(alreadyAttachedMessage(Base::info.type.type) != 0, "a kind that holds cells");

    // The cell leaves its column; its row goes with it when no other cell names it. A cell whose
    // row is not found (S_FALSE) stays where it is.
    HRESULT removeChild(IQVRCatalogObject* child, Ref<IQVRCatalogObject>* removed) override {
        return guarded([&] {
            if (removed) *removed = nullptr;
            if (!this->initialized()) return this->notInitialized();
            if (!child) return E_POINTER; // as every container answers, before asking the kind
            Ref<CellInterface> cell = query<CellInterface>(child);
            if (!cell) return E_FAIL;
            HRESULT hr = RowTool(this->element()).removeRowForCell(child);
            if (hr != S_OK) return hr;
            hr = ChildTool(this->element()).removeChildObject(this->catalogRef(), child, removed);
            if (hr == S_OK) this->fire(qvrEventObjectRemoved, child, Variant());
            return hr;
        });
    }

protected:
    // The cell stands in the column now, so its next sibling tells where a new row belongs. On a
    // failure the cell is taken out again.
    HRESULT childPlaced(IQVRCatalogObject* cell) override {
        const Ref<IQVRCatalogObject> table = this->catalogRef();
        // Whatever stops the row, the cell must not stay without one.
        const HRESULT hr =
            guarded([&] { return RowTool(this->element()).addRowForCell(table, cell); });
        if (SUCCEEDED(hr)) return S_OK;
        if (hr == QVR_E_DUPLICATE) this->report(alreadyAttachedMessage(Base::info.type.type), hr);
        ChildTool(this->element()).removeChildObject(table, cell, nullptr);
        return hr;
    }
};

} // namespace qvr
