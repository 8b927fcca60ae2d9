// The selections the lookup tables answer, one named form per shape: a value stands between the
// head and the tail. The model makes every selection it repeats per row or cell from these forms,
// and the recogniser of indexed selections reads the same forms, so that a text the model makes
// is always one the tables answer; a form spelt differently in two places would quietly send
// every lookup walking through the tree.
#pragma once

#include <string>
#include <string_view>

namespace qvr::dom {

struct IndexedForm {
    std::string_view head;
    std::string_view tail;

    // The selection for `value`, by plain concatenation; the caller sees to it that the value
    // can stand inside the form's literal.
    std::string text(std::string_view value) const {
        std::string out;
        out.reserve(head.size() + value.size() + tail.size());
        out.append(head).append(value).append(tail);
        return out;
    }
};

namespace forms {

// Elements by `id`: below the context, anywhere in the document, among the context's children.
inline constexpr IndexedForm descendantById{".//*[@id = '", "']"};
inline constexpr IndexedForm documentById{"//*[@id = '", "']"};
inline constexpr IndexedForm childById{"*[@id = '", "']"};
// Table rows by their key text, by `id` (from the unique column, or from the document), and by
// one-based position (the value is the number).
inline constexpr IndexedForm tableRowByKey{"/vCATTable/ColumnUnique/RowUnique[. = '", "']"};
inline constexpr IndexedForm childRowById{"RowUnique[@id='", "']"};
inline constexpr IndexedForm tableRowById{"/vCATTable/ColumnUnique/RowUnique[@id='", "']"};
inline constexpr IndexedForm tableRowAt{"/vCATTable/ColumnUnique/RowUnique[", "]"};
// Every row of a table, in document order; it takes no value, and is answered by walking the
// unique column's children, without XPath.
inline constexpr IndexedForm tableRows{"/vCATTable/ColumnUnique/RowUnique", ""};
// Cells by the row `id` they name: anywhere in the table, among a column's children.
inline constexpr IndexedForm tableCellsByIdref{"/vCATTable//*[@idref='", "']"};
inline constexpr IndexedForm childByIdref{"*[@idref = '", "']"};

// The columns of a table that need no lookup table, only the root's children: its unique column,
// and its columns of values (plain and constant, in document order). They take no value.
inline constexpr IndexedForm tableUniqueColumn{"/vCATTable/ColumnUnique", ""};
inline constexpr IndexedForm tableValueColumns{"/vCATTable/Column | /vCATTable/ColumnConst", ""};

// Every form above.
inline constexpr IndexedForm all[] = {
    descendantById,    documentById, childById,         tableRowByKey,
    childRowById,      tableRowById, tableRowAt,        tableRows,
    tableCellsByIdref, childByIdref, tableUniqueColumn, tableValueColumns,
};

} // namespace forms
} // namespace qvr::dom
