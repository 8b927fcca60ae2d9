// A calculated column (`ColumnCalc`): described like a plain column, but with no cells. Its value
// at a row is computed on request from its `expression` by the formula evaluator; nothing is
// stored, so the value is never stale and nothing recalculates on a change.
//
// Formulas reach the column itself as the named item "QVRTableCalculatedColumn": its description
// can be read there (QVRTableCalculatedColumn.Name, .Desc, .Unit, .Attrib, .DataType,
// .Expression, .Visible, .Key, .ObjectType). Nothing can be changed or calculated from a formula.
#pragma once

#include <memory>

#include <qvr/table_columns.h>

#include "tables/table_column_object.h"
#include "vbscript/script_object.h"

namespace qvr {

class CQVRTableCalculatedColumn final
    : public TableColumnObject<IQVRTableCalculatedColumn, qvrCalculatedColumn>,
      public vbscript::IScriptObject {
public:
    CQVRTableCalculatedColumn();
    ~CQVRTableCalculatedColumn() override;

    // --- IQVRTableCalculatedColumn -------------------------------------------------------------
    HRESULT get_expression(String* expression) override;
    HRESULT put_expression(const String& expression) override;
    HRESULT calculate(const Variant& row, Variant* result) override;

    // Rows calculated one after another while no one but the caller changes the table, as a
    // freeze does: the formula is read and the columns are listed once, the formula is compiled
    // once for all rows, and the cells are followed in step. Each row answers what calculate()
    // answers for its key.
    class Series {
    public:
        virtual ~Series() = default;
        // The value at the row with id `rowId`, for a row that calculate() finds by its key (no
        // row before it has that key). No row is asked for twice.
        virtual HRESULT calculateAt(const String& rowId, Variant* result) = 0;
    };
    std::unique_ptr<Series> startSeries();

    // --- IScriptObject: the column as formulas see it ------------------------------------------
    HRESULT invoke(const String& name, const Variant* args, int argc, Variant* result) override;

    // One count for all interfaces, the script one included.
    std::uint32_t AddRef() override { return ObjectBase::AddRef(); }
    std::uint32_t Release() override { return ObjectBase::Release(); }

private:
    class ColumnSeries;
    class KeptRun;

    // What calculate() keeps from one call to the next: the columns as listed, the formula
    // compiled as a template. It serves only while no change anywhere could have altered what it
    // was made of (the document layer's count of such changes stands where it stood, so the
    // formula too is the one it was made for), for the same document and locale; anything else
    // makes it again. Cell values are read anew for every row.
    std::unique_ptr<KeptRun> kept_;

    // The row element that `row` names: by key for a text, else by one-based index.
    HRESULT findRow(const Variant& row, Ref<IXMLDOMElement>* found);
    // The value of `formula` at the row with id `rowId`, through a run kept afresh for it.
    HRESULT evaluateFormula(const String& rowId, const String& formula, Variant* result);
};

} // namespace qvr
