// What formula substitution reads of a table: the columns whose names may stand in a formula
// (every `Column` and `ColumnConst`, in document order), the value of a row in a named `Column`,
// and the constant of a named `ColumnConst`. The document's implementation is DocumentColumns;
// tests give their own.
#pragma once

#include <cstdint>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr {

class FormulaColumns {
public:
    // The outcome of looking a value up by a column's name.
    struct Lookup {
        enum Outcome {
            Found,   // the cell (or const column) exists; `status` tells how reading it went
            Missing, // no such column, or no cell for the row
            Broken,  // the lookup itself failed (an apostrophe in the name or the row id)
        };
        Outcome outcome = Missing;
        HRESULT status = S_OK; // with Found: the status of reading the value
        String text;           // with Found and S_OK: the value as stored
        bool isString = false; // the column's `dataType` is exactly "string"
    };

    virtual ~FormulaColumns() = default;

    // The number of columns; a failure ends the substitution with that status.
    virtual HRESULT count(std::int32_t* count) = 0;
    // The `name` of column `index`; S_FALSE when it has none. A null `name` asks for the status
    // alone.
    virtual HRESULT name(std::int32_t index, String* name) = 0;
    // The text of the cell of row `rowId` in the first `Column` called `name` that has one.
    virtual Lookup cell(const String& name, const String& rowId) = 0;
    // The `constant` of the first `ColumnConst` called `name`; its absence reads as S_FALSE.
    virtual Lookup constant(const String& name) = 0;
};

} // namespace qvr
