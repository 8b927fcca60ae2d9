// The columns a formula can name, read from a table document: every `Column` and `ColumnConst`
// child of the root, in document order. One instance serves one evaluation; it reads each
// column's name once.
//
// Values are found through the lookups the DOM layer answers from its indexes: a row's cell in a
// column is the column's child selected by "*[@idref = '" id "']", so an evaluation costs the
// same in a table of any length.
#pragma once

#include <vector>

#include <qvr/dom.h>

#include "formulas/formula_columns.h"

namespace qvr {

class DocumentColumns final : public FormulaColumns {
public:
    explicit DocumentColumns(IXMLDOMDocument* document) : document_(document) {}

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
    };

    // Column `index` with its name read; null for an index out of range.
    Column* column(std::int32_t index);
    // Whether column `index` is of kind `isConst` and called exactly `name`.
    bool isNamed(std::int32_t index, bool isConst, const String& name);

    Ref<IXMLDOMDocument> document_;
    std::vector<Column> columns_;
};

} // namespace qvr
