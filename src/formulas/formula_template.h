// One formula evaluated for many rows of one listing of columns. Substitution pastes each row's
// values into the same text, so the text around them is cut into tokens, its words looked up and
// the whole compiled once; a row then only fills in its values and runs the compiled form.
//
// The result is always that of pasting the text. A row whose values could read otherwise than as
// one literal each (a bare value that is no plain number, a quote or line break in a text, a value
// whose tokens could name a column), a row that leaves a name in the formula (an empty value, a
// missing cell), and a run-time error all go the textual road for that row, which decides and
// reports as it always has.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <qvr/com.h>
#include <qvr/string.h>
#include <qvr/variant.h>

#include "formulas/formula_columns.h"
#include "vbscript/expression_template.h"

namespace qvr {

class FormulaTemplate {
public:
    // The template of `formula` for columns called `names`, in list order (an empty name for a
    // column that has none), compiled under `lcid`. Null when the formula has no such shape.
    static std::unique_ptr<FormulaTemplate> build(const String& formula,
                                                  std::span<const String> names, LCID lcid);

    // The value at row `rowId`, reading the values through `columns`, whose listing must be the
    // one the template was built for. `handled` false: the row must take the textual road, and
    // nothing was decided. Else the status (and `result`) are those of the textual road.
    HRESULT evaluate(FormulaColumns& columns, const String& rowId, Variant* result, bool* handled);

private:
    FormulaTemplate() = default;

    // The occurrences of one name (case ignored) in the formula: the holes it fills.
    struct Group {
        std::vector<std::size_t> holes;
        bool filled = false;
    };

    std::unique_ptr<vbscript::ExpressionTemplate> expression_;
    std::vector<Group> groups_;
    std::vector<std::int32_t> groupOfColumn_; // -1: the column's name is not in the formula
    // A bare number's tokens could be taken for a column's name: one is spelt that way.
    bool numbersCanName_ = false;
};

} // namespace qvr
