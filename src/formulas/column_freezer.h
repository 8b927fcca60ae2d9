// Turns the calculated columns of a table into plain columns that hold their computed values.
// Each `ColumnCalc` in turn gets a new `Column` with its description (and a new id) right before
// it; the values are calculated row by row into cells of that column, and the calculated column
// is removed when all went well. While a column is being frozen its new twin already stands in
// the table: a formula that names its own column sees the cells built so far.
#pragma once

#include <qvr/dom.h>
#include <qvr/table.h>

namespace qvr {

class ColumnFreezer {
public:
    // Freezes every calculated column under `root`, the root element of `table`, in document
    // order, as long as each succeeds. A table with calculated columns and no rows freezes
    // nothing and answers S_FALSE. `ok` is true only for S_OK.
    static HRESULT freezeAll(IQVRCatalogTable* table, IXMLDOMElement* root, VARIANT_BOOL* ok);

    // Builds the plain twin of `column` from the values at `rows` (the table's `RowUnique`
    // elements). S_FALSE without rows. On the first status other than S_OK the twin is removed
    // again and that status returned.
    static HRESULT freezeColumn(IQVRCatalogTable* table, IQVRTableCalculatedColumn* column,
                                IXMLDOMNodeList* rows);
};

} // namespace qvr
