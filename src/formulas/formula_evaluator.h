// The evaluation of a formula for one row. The names of `Column` and `ColumnConst` columns in the
// formula are replaced, as text, by the values those columns hold at the row, column by column in
// document order over the text the previous ones left; the result goes to a fresh engine of the
// formula language as one expression, and its value comes back untouched by the column's type.
//
// Substitution never empties the text: every token is replaced in full, however short the value.
//
// When the engine refuses the text, the failure is reported with a composed text that names the
// formula, the text as it was evaluated, the column, the table's description and the part.
#pragma once

#include <memory>
#include <vector>

#include <qvr/com.h>
#include <qvr/string.h>
#include <qvr/variant.h>

#include "formulas/formula_columns.h"
#include "formulas/formula_template.h"
#include "platform/com/error_report.h"

namespace qvr {

class FormulaEvaluator {
public:
    // What an evaluation asks of the calculated column it runs for.
    class Host {
    public:
        // The object formulas reach as "QVRTableCalculatedColumn"; not kept beyond the call.
        virtual IUnknown* scriptItem() = 0;
        // The column's name, the description of its table and the name of the table's part;
        // each left empty where there is none.
        virtual void describe(String* columnName, String* tableText, String* partText) = 0;
        // Who reports a refused formula.
        virtual ErrorSource reportSource() const = 0;

    protected:
        ~Host() = default;
    };

    // The formula with the values of row `rowId` pasted in (a null formula stays null). A value
    // of a "string" column is put between double quotes, as it is; any other goes in bare. An
    // empty value, a missing cell and a failed lookup leave the name for the engine. A column
    // without a name, and a const column named in the formula without a `constant`, end the
    // walk with S_FALSE.
    static HRESULT substitute(FormulaColumns& columns, const String& rowId, const String& formula,
                              String* working);

    // Substitution, then a fresh engine given the pasted text. `result` (cleared by the caller)
    // receives the value. A refused text is reported through the error record under the
    // engine's status, which is returned; failures before the engine runs are returned without a
    // message.
    static HRESULT evaluateText(FormulaColumns& columns, Host& host, const String& rowId,
                                const String& formula, Variant* result);

    // The text reported when the engine refuses a formula.
    static String errorText(const String& description, const String& formula, const String& working,
                            const String& columnName, const String& tableText,
                            const String& partText);

    // The names of the columns as `columns` lists them now (a column without one gives an empty
    // name); false when they cannot be listed.
    static bool listNames(FormulaColumns& columns, std::vector<String>* names);
};

// One formula evaluated row after row over one listing of columns that nothing changes meanwhile
// (a freeze, where no one else runs, or a calculated column's calculations while the DOM layer
// counts no change). The columns are listed once, and the formula is compiled
// once as a template; each row answers exactly what evaluateText would.
class FormulaRun {
public:
    FormulaRun(FormulaColumns& columns, FormulaEvaluator::Host& host, const String& formula);

    HRESULT evaluate(const String& rowId, Variant* result);

private:
    FormulaColumns& columns_;
    FormulaEvaluator::Host& host_;
    const String& formula_;
    std::unique_ptr<FormulaTemplate> template_;
};

} // namespace qvr
