// The columns of a table document. A column is a child of the table root with its description in
// attributes; the kinds that store a value for each row hold one cell element per row, which
// names its row by the row's id in `idref`. The unique column (`ColumnUnique`, always first) is
// the register of the rows: one `RowUnique` per row, whose text is the row's key.
//
// Every kind answers the operations of IQVRTableChildObject; the columns proper add those of
// IQVRTableColumnObject, the views those of IQVRTableViewObject.
#pragma once

#include <cstdint>

#include <qvr/classification.h>
#include <qvr/media.h>
#include <qvr/object.h>

namespace qvr {

// The type of a column's values, stored by name in `dataType`.
enum QVRColumnDataType : std::int32_t {
    qvrDataTypeString = 0, // "string"
    qvrDataTypeInt = 1,    // "int"
    qvrDataTypeFloat = 2,  // "float"
};

// The side a view shows, stored by name in `viewKey`.
enum QVRViewKey : std::int32_t {
    qvrViewFront = 0,
    qvrViewBack = 1,
    qvrViewLeft = 2,
    qvrViewRight = 3,
    qvrViewTop = 4,
    qvrViewBottom = 5,
    qvrView3D = 6,
    qvrViewUndefined = 7,
};

// What columns and views share.
class QVR_API IQVRTableChildObject : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRTableChildObject)

    virtual HRESULT get_desc(String* desc) = 0;
    // Writes the attribute also for an empty or null text (as "").
    virtual HRESULT put_desc(const String& desc) = 0;
    // Sets true first; an absent attribute gives S_FALSE and true.
    virtual HRESULT get_visible(VARIANT_BOOL* visible) = 0;
    // Only VARIANT_TRUE (-1) writes "1"; any other value writes "0".
    virtual HRESULT put_visible(VARIANT_BOOL visible) = 0;
    // A new `id`; E_INVALIDARG for an empty one, "A child with the same id already exists." when
    // a sibling has it.
    virtual HRESULT put_id(const String& id) = 0;
    virtual HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) = 0;
};

// The columns proper: a name for formulas, a data type, a unit and a free text.
class QVR_API IQVRTableColumnObject : public IQVRTableChildObject {
public:
    QVR_INTERFACE_ID(IQVRTableColumnObject)

    virtual HRESULT get_attrib(String* attrib) = 0;
    virtual HRESULT put_attrib(const String& attrib) = 0;
    // A `dataType` that is none of the three names reads as qvrDataTypeString; an absent one
    // gives S_FALSE and leaves `dataType` alone.
    virtual HRESULT get_dataType(QVRColumnDataType* dataType) = 0;
    // Leaves the texts of the cells as they are. E_INVALIDARG for a number that names no type.
    virtual HRESULT put_dataType(QVRColumnDataType dataType) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    virtual HRESULT get_unit(String* unit) = 0;
    virtual HRESULT put_unit(const String& unit) = 0;
};

// A plain column: one text value for each row that has one, in a `Row` cell.
class QVR_API IQVRTableColumn : public IQVRTableColumnObject {
public:
    QVR_INTERFACE_ID(IQVRTableColumn)
};

// The register of the rows. Inserting a row object (IQVRTableInfoCell) makes a row without
// cells; removing one takes its cells out of every column.
class QVR_API IQVRTableUniqueColumn : public IQVRTableColumnObject {
public:
    QVR_INTERFACE_ID(IQVRTableUniqueColumn)

    // Moves the row at the one-based index `from` (or the rows of an array of such indexes, which
    // keep their order) before the row that stands at `to`, together with its cells in every
    // column.
    virtual HRESULT moveRows(const Variant& from, const Variant& to) = 0;
};

// A column with one value for all rows, in `constant`. It holds no cells.
class QVR_API IQVRTableConstColumn : public IQVRTableColumnObject {
public:
    QVR_INTERFACE_ID(IQVRTableConstColumn)

    // The constant; absent: S_FALSE. A "float" constant is stored with a decimal point and shown
    // in the notation of the user's locale ("7,85" under de-DE).
    virtual HRESULT get_constant(String* constant) = 0;
    // A "float" constant is read in the user's notation and stored with a decimal point; a text
    // that is no number, and the constant of any other type, is stored as it stands.
    virtual HRESULT put_constant(const String& constant) = 0;
};

// A column whose value at a row is computed from its `expression`, a VBScript expression in
// which the names of the table's plain and const columns stand for their values at that row. It
// holds no cells. A formula reaches the column itself as "QVRTableCalculatedColumn".
class QVR_API IQVRTableCalculatedColumn : public IQVRTableColumnObject {
public:
    QVR_INTERFACE_ID(IQVRTableCalculatedColumn)

    // The formula; absent: S_FALSE and `expression` untouched.
    virtual HRESULT get_expression(String* expression) = 0;
    // Stores the formula as it is; it is not checked until it is calculated.
    virtual HRESULT put_expression(const String& expression) = 0;
    // The value at `row`: a text is the row's key, a number its one-based index. An empty
    // formula gives S_OK and an empty value. A formula the engine refuses is reported with the
    // formula, the text as it was evaluated, the column, the table and the part.
    virtual HRESULT calculate(const Variant& row, Variant* result) = 0;
};

// The role of a reference column's links in the words of XLink, stored by name in `role`. How
// they are shown and followed (`show`, `actuate`) takes the words of a URL (QVRURLShow,
// QVRURLActuate), whose undefined values stand for no attribute in a reference column.
enum QVRRefRole : std::int32_t {
    qvrRoleBr = 0,  // "br"
    qvrRoleImg = 1, // "img"
};

// A column of links, one `RowRef` cell per row (IQVRTableRefCell). It has no data type and no
// unit: those operations answer E_NOTIMPL. Its formulas never see it.
class QVR_API IQVRTableRefColumn : public IQVRTableColumnObject {
public:
    QVR_INTERFACE_ID(IQVRTableRefColumn)

    // Each getter reads its word (case-sensitive); a word it does not know reads as qvrRoleBr,
    // qvrShowUndefined or qvrActuateUndefined. An absent attribute gives S_FALSE and leaves the
    // number alone. A setter writes the word and tells of the change; a number that names no
    // word is refused with E_INVALIDARG.
    virtual HRESULT get_role(std::int32_t* role) = 0;
    virtual HRESULT put_role(std::int32_t role) = 0;
    // qvrShowUndefined removes the attribute (and tells of it only when there was one).
    virtual HRESULT get_show(std::int32_t* show) = 0;
    virtual HRESULT put_show(std::int32_t show) = 0;
    // qvrActuateUndefined removes the attribute, as for `show`.
    virtual HRESULT get_actuate(std::int32_t* actuate) = 0;
    virtual HRESULT put_actuate(std::int32_t actuate) = 0;
};

// What views share: the side they show, a name, and the view's images and the files its
// drawings refer to. `Images`, `XRefFiles` and `Extrinsics` stand first, in this order, ahead
// of the view's other children.
class QVR_API IQVRTableViewObject : public IQVRTableChildObject {
public:
    QVR_INTERFACE_ID(IQVRTableViewObject)

    // A `viewKey` that names none of the seven sides reads as qvrViewUndefined; an absent one
    // gives S_FALSE and leaves `viewKey` alone.
    virtual HRESULT get_viewKey(QVRViewKey* viewKey) = 0;
    // E_INVALIDARG for a number that names no side.
    virtual HRESULT put_viewKey(QVRViewKey viewKey) = 0;
    virtual HRESULT get_viewName(String* viewName) = 0;
    virtual HRESULT put_viewName(const String& viewName) = 0;
    // Absent: S_FALSE and null.
    virtual HRESULT get_images(Ref<IQVRCatalogImages>* images) = 0;
    // Sets, replaces or (null) removes the images; new ones go first.
    virtual HRESULT putref_images(IQVRCatalogObject* images) = 0;
    // Absent: S_FALSE and null.
    virtual HRESULT get_xRefFiles(Ref<IQVRCatalogReferencedFiles>* files) = 0;
    // New files go right behind the images, or first. Null removes them (S_FALSE when there are
    // none). Files given to a view that has files already take the place of its images, and the
    // old files stay: a view without images then answers S_FALSE and changes nothing.
    virtual HRESULT putref_xRefFiles(IQVRCatalogObject* files) = 0;
};

// A column of drawings, one `Drawing` cell per row (IQVRTableDrawing), all seen from one side.
class QVR_API IQVRTableView : public IQVRTableViewObject {
public:
    QVR_INTERFACE_ID(IQVRTableView)
};

// A view with no drawing per row: it holds `Recipe` children instead (IQVRTableRecipe), one per
// application, of which it keeps at least one ("You can't remove the last child of this
// object.").
class QVR_API IQVRTableConstView : public IQVRTableViewObject {
public:
    QVR_INTERFACE_ID(IQVRTableConstView)
};

} // namespace qvr
