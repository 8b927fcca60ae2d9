// The columns a formula can name, read from a table document: every `Column` and `ColumnConst`
// child of the root, in document order. The listing, with each column's name read once, stands
// while the document layer counts no change that could alter it (an insertion, a removal, an
// attribute set), so one instance may serve evaluation after evaluation.
//
// Values are found through the lookups the DOM layer answers from its indexes: a row's cell in a
// column is the column's child selected by "*[@idref = '" id "']", so an evaluation costs the
// same in a table of any length.
//
// Rows asked one after another while nothing else changes the table (a freeze) can be followed
// in step instead: the columns are listed once, and in each column the node after the last cell
// found is tried first. Each row is asked once, so a `Row` there that names the row is the first
// that does: every node before it is no such cell, or the cell of another row.
#pragma once

#include <vector>

#include <qvr/dom.h>

#include "formulas/formula_columns.h"

namespace qvr {

class DocumentColumns final : public FormulaColumns {
public:
    explicit DocumentColumns(IXMLDOMDocument* document) : document_(document) {}

    // From now on the table does not change but for cells appended at the ends of columns, and
    // no row is asked for twice.
    void followRows() { following_ = true; }

    HRESULT count(std::int32_t* count) override;
    HRESULT name(std::int32_t index, String* name) override;
    Lookup cell(const String& name, const String& rowId) override;
    Lookup constant(const String& name) override;

private:
    struct Column {
        Ref<IXMLDOMElement> element;
        bool isConst = false;
        bool nameRead = false;
        HRESULT nameStatus = S_FALSE;
        String name;
        // Read at the first lookup by this column's name.
        bool detailsRead = false;
        bool isString = false;
        // Following rows: the last node passed, if any.
        Ref<IXMLDOMNode> passed;
    };

    // Column `index` with its name read; null for an index out of range.
    Column* column(std::int32_t index);
    // Whether column `index` is of kind `isConst` and called exactly `name`.
    bool isNamed(std::int32_t index, bool isConst, const String& name);
    // Column `index` (named) with its type read.
    Column& detailed(std::int32_t index);
    // Following rows: the first `Row` of column `c` for `rowId` when it is the next cell there;
    // else null.
    Ref<IXMLDOMNode> cellInStep(Column& c, const String& rowId);

    Ref<IXMLDOMDocument> document_;
    std::vector<Column> columns_;
    // The selection of a row's cell in a column, for the row asked last: a row's values are
    // looked up one column after another.
    String cellRow_;
    String cellPath_;
    bool following_ = false;
    bool listed_ = false;
    // The document layer's count of naming changes when the columns were listed.
    std::uint64_t listedVersion_ = 0;
};

} // namespace qvr
