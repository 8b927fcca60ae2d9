// What every child kind of a table shares (all columns and views): a description, a visibility
// flag, an `id` that is unique among the table's children, an Extrinsics child, and copies that
// get a new column id. The kinds are short declarations over this template and its refinements:
//
//   TableChildObject<I, Type>          IQVRTableChildObject, over CatalogObject<I, Type>
//   TableColumnObject<I, Type>         + IQVRTableColumnObject (table_column_object.h)
//   HoldsCells<Base, CellInterface>    + cells bound to rows by `idref` (holds_cells.h)
//
//   class CQVRTableColumn final
//       : public HoldsCells<TableColumnObject<IQVRTableColumn, qvrTableColumn>, IQVRTableCell> {};
#pragma once

#include <type_traits>

#include <qvr/table_columns.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/ids.h"
#include "platform/com/failure.h"

namespace qvr {

template <class Interface, QVRObjectType Type>
class TableChildObject : public CatalogObject<Interface, Type> {
public:
    // --- IQVRTableChildObject ------------------------------------------------------------------
    HRESULT get_desc(String* desc) override { return accessors::getAttribute(*this, "desc", desc); }
    // An empty or null text writes an empty attribute: a child's description is never removed.
    HRESULT put_desc(const String& desc) override {
        return accessors::putAttribute(*this, "desc", desc);
    }
    HRESULT get_visible(VARIANT_BOOL* visible) override {
        return accessors::getFlag(*this, "visible", visible);
    }
    HRESULT put_visible(VARIANT_BOOL visible) override {
        return accessors::putFlag(*this, "visible", visible);
    }
    // Unique among the parent's children; the child's own present id passes, and so does any id
    // of a child without parent.
    HRESULT put_id(const String& id) override {
        if (id.isEmpty()) return E_INVALIDARG;
        return accessors::putKeyAttribute(*this, "id", id);
    }
    // Wrapped with the child as its catalog as well as its parent, so that the changes made in
    // it are heard nowhere. A child that is not initialized answers with the table's message.
    HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) override {
        return guarded([&] {
            if (!extrinsics) return E_POINTER;
            *extrinsics = nullptr;
            if (!this->initialized()) return this->report(msgTableNotInitialized);
            return accessors::wrapSelected(this->element(), "Extrinsics", this->self(),
                                           this->self(), extrinsics);
        });
    }
    HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) override {
        return accessors::putSingleton(*this, "Extrinsics", extrinsics, extrinsicsPredecessors());
    }

    // --- Common operations ---------------------------------------------------------------------
    // A copy with a new column id, wrapped with the table as catalog and no parent.
    HRESULT cloneNode(VARIANT_BOOL deep, Ref<IQVRCatalogObject>* clone) override {
        return guarded([&] {
            HRESULT hr = this->cloneElement(deep, nullptr, clone);
            if (hr != S_OK) return hr;
            Ref<IXMLDOMElement> copy;
            if ((hr = (*clone)->get_domNode(&copy)) == S_OK)
                hr = copy->setAttribute("id", newColumnId());
            if (hr != S_OK) *clone = nullptr;
            return hr;
        });
    }

    // The class's own interface, its family's, IQVRTableChildObject and IQVRCatalogObject.
    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override {
        if (iid == IQVRTableChildObject::iid) return S_OK;
        if constexpr (std::is_base_of_v<IQVRTableColumnObject, Interface>)
            if (iid == IQVRTableColumnObject::iid) return S_OK;
        if constexpr (std::is_base_of_v<IQVRTableViewObject, Interface>)
            if (iid == IQVRTableViewObject::iid) return S_OK;
        return CatalogObject<Interface, Type>::InterfaceSupportsErrorInfo(iid);
    }

protected:
    // The singletons that stand ahead of Extrinsics; a new Extrinsics goes right behind the last
    // of them that exists, or first. A column has none; a view has its images and files.
    virtual ChildNames extrinsicsPredecessors() const { return {}; }
};

} // namespace qvr
