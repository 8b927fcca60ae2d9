// The cells of a table document and the row object. A cell is made by the table with the key of
// its row and enters a column by the column's insertBefore or appendChild: there its key becomes
// the `idref` of the row (a new row when no row has that key yet). The row object wraps the
// row's `RowUnique` in the unique column; from it the cell of any column is found.
#pragma once

#include <qvr/object.h>

namespace qvr {

// What all cells share.
class QVR_API IQVRTableCellObject : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRTableCellObject)

    // Writes the row id the cell names (the row object: its own id). No check, no event.
    virtual HRESULT put_idref(const String& idref) = 0;
    // Moves the cell to the row whose key is `row`: "The Row id does not exist. " when there is
    // none. The row object instead changes its own key.
    virtual HRESULT put_row(const String& row) = 0;
};

// A value of a plain column. Values are written locale-neutrally (a decimal point) and read typed
// by the column: "int" under the user's locale, "float" as written. A cell that stands in no
// column reads as its text.
class QVR_API IQVRTableCell : public IQVRTableCellObject {
public:
    QVR_INTERFACE_ID(IQVRTableCell)

    virtual HRESULT get_value(Variant* value) = 0;
    virtual HRESULT put_value(const Variant& value) = 0;
};

// A row: its key is its text, its `id` what the cells of the row name.
class QVR_API IQVRTableInfoCell : public IQVRTableCellObject {
public:
    QVR_INTERFACE_ID(IQVRTableInfoCell)

    // The cell of this row in `column`: S_FALSE and null when the column has none; "Only views
    // and columns have cells" with S_FALSE for the kinds that store no cells.
    virtual HRESULT getCell(IQVRCatalogObject* column, Ref<IQVRTableCellObject>* cell) = 0;
};

// How a const view is made for one application: the path of a recipe.
class QVR_API IQVRTableRecipe : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRTableRecipe)

    virtual HRESULT get_application(String* application) = 0;
    // E_POINTER for a null text; an empty one is written.
    virtual HRESULT put_application(const String& application) = 0;
    // A relative path is stored with forward slashes, an absolute one as a file URL.
    virtual HRESULT get_path(String* path) = 0;
    virtual HRESULT put_path(const String& path) = 0;
};

// A drawing of a view: the path or URL of a drawing file of the row's part. A relative path is
// stored with forward slashes, an absolute one as a file URL, and a URL as it stands.
class QVR_API IQVRTableDrawing : public IQVRTableCellObject {
public:
    QVR_INTERFACE_ID(IQVRTableDrawing)

    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// A link of a reference column, with a description and a title. The link is stored as a
// drawing's path is.
class QVR_API IQVRTableRefCell : public IQVRTableCellObject {
public:
    QVR_INTERFACE_ID(IQVRTableRefCell)

    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
    // A null or empty text removes the attribute (and tells of it only when there was one).
    virtual HRESULT get_desc(String* desc) = 0;
    virtual HRESULT put_desc(const String& desc) = 0;
    virtual HRESULT get_title(String* title) = 0;
    virtual HRESULT put_title(const String& title) = 0;
};

} // namespace qvr
