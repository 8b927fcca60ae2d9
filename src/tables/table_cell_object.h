// What the cells share (values of plain columns, drawings of views, links of reference columns):
// the `idref` that names their row, and the move to another row by its key. A cell is a leaf.
// Its key (KeyFamily::RowKeyOfIdref) is the key text of its row, or until it has one, the key it
// was made with.
//
//   TableCellObject<I, Type>        what every cell shares
//   ReferenceCellObject<I, Type>    + a value that is a file reference (drawings and links)
#pragma once

#include <qvr/table_cells.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/row_tool.h"
#include "platform/com/failure.h"

namespace qvr {

template <class Interface, QVRObjectType Type>
class TableCellObject : public CatalogObject<Interface, Type> {
public:
    // --- IQVRTableCellObject -------------------------------------------------------------------
    // No check and no event: the row operations write it.
    HRESULT put_idref(const String& idref) override {
        return guarded([&] {
            if (!this->initialized()) return this->notInitialized();
            static const String none("");
            return this->element()->setAttribute("idref", idref.isNull() ? none : idref);
        });
    }
    // Makes no row and fires nothing; it does not look whether the column already has a cell
    // for the new row, and the old row stays even when no cell names it any more.
    HRESULT put_row(const String& row) override {
        return guarded([&] {
            if (row.isEmpty()) return E_INVALIDARG;
            if (!this->initialized()) return this->notInitialized();
            Ref<IXMLDOMElement> found;
            HRESULT hr = RowTool(this->element()).findRowByValue(row, &found);
            if (hr != S_OK) return this->report(msgRowIdNotFound, hr);
            String id;
            if (FAILED(hr = found->getAttribute("id", &id))) return hr;
            return put_idref(id);
        });
    }

    // The key the cell was made with (null clears it); it serves until the cell names a row.
    void setKey(const String& key) { this->setCachedKey(key); }
    // A new cell's value, then its key. The value is told as a change, though the cell has no
    // parent yet.
    template <class Value>
    HRESULT fillNew(const Value& value, const String& key) {
        const HRESULT hr = static_cast<Interface*>(this)->put_value(value);
        if (hr == S_OK) setKey(key);
        return hr;
    }

    HRESULT cloneNode(VARIANT_BOOL, Ref<IQVRCatalogObject>*) override { return E_NOTIMPL; }

    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override {
        if (iid == IQVRTableCellObject::iid) return S_OK;
        return CatalogObject<Interface, Type>::InterfaceSupportsErrorInfo(iid);
    }
};

// The cells whose value is a file reference (drawings and links): a URL stands as it is, a
// relative path is kept with forward slashes, an absolute one becomes a file URL.
template <class Interface, QVRObjectType Type>
class ReferenceCellObject : public TableCellObject<Interface, Type> {
public:
    HRESULT get_value(String* value) override { return accessors::getReferenceText(*this, value); }
    HRESULT put_value(const String& value) override {
        return accessors::putReferenceText(*this, value);
    }
};

} // namespace qvr
