// What the table tests share: a table made through the public creator, columns and cells added
// through the public API, readers of rows, columns and cell values, and a listener at the table
// that writes rows and cells down by kind and key ("Row A-10", "Cell A-10") and columns by name.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <qvr/table.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {

inline Ref<IQVRCatalogTable> newTable(const char* desc = "Bolts", const char* language = "en") {
    Ref<IQVRCatalogTable> table;
    EXPECT_EQ(CreateCatalogTable(&table), S_OK);
    VARIANT_BOOL ok = VARIANT_FALSE;
    EXPECT_EQ(table->create("/tmp/qvr-test/", desc, language, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    return table;
}

// A new column, appended to the table.
inline Ref<IQVRTableColumn> addColumn(IQVRCatalogTable* table, const char* name,
                                      QVRColumnDataType type = qvrDataTypeString) {
    Ref<IQVRTableColumn> column;
    EXPECT_EQ(table->createColumn(type, name, "", "", "", VARIANT_TRUE, &column), S_OK);
    EXPECT_EQ(table->appendChild(column, nullptr), S_OK);
    return column;
}

// A new cell for the row `key`, appended to `column`; the status of the append.
inline HRESULT addCell(IQVRCatalogTable* table, IQVRCatalogObject* column, const char* key,
                       const Variant& value) {
    Ref<IQVRTableCell> cell;
    EXPECT_EQ(table->createCell(key, value, &cell), S_OK);
    return column->appendChild(cell, nullptr);
}

inline Ref<IQVRTableUniqueColumn> uniqueColumnOf(IQVRCatalogTable* table) {
    Ref<IQVRTableUniqueColumn> unique;
    EXPECT_EQ(table->get_uniqueColumn(&unique), S_OK);
    return unique;
}

// The text of the attribute or child that `xpath` selects below `object` ("" when none).
inline std::string textAt(IQVRCatalogObject* object, const char* xpath) {
    Variant value;
    return object && object->getValue(xpath, &value) == S_OK ? value.str().str() : std::string();
}

// The keys of the items of a list, joined by blanks.
inline std::string keysIn(IQVRCatalogObjectList* list) {
    std::string keys;
    if (list)
        for (Ref<IQVRCatalogObject> item : *list) keys += (keys.empty() ? "" : " ") + keyOf(item);
    return keys;
}

// The keys of the table's rows, in row order.
inline std::string rowKeys(IQVRCatalogTable* table) {
    Ref<IQVRCatalogObjectList> rows;
    uniqueColumnOf(table)->get_childNodes(&rows);
    return keysIn(rows);
}

// The names of the table's columns, in column order.
inline std::string columnNames(IQVRCatalogTable* table) {
    Ref<IQVRCatalogObjectList> columns;
    table->get_childNodes(&columns);
    return columns ? namesIn(columns) : std::string();
}

// What a table document keeps whatever was done to it, a failed operation included: ids are
// unique, every row has an id and a key of its own, every idref names a row, and a column holds
// at most one cell per row. Answers the first rule that is broken.
inline ::testing::AssertionResult tableIsWellFormed(IQVRCatalogTable* table) {
    Ref<IXMLDOMElement> root;
    if (!table || table->get_domNode(&root) != S_OK || !root)
        return ::testing::AssertionFailure() << "the table has no document";
    std::set<std::string> ids, rowIds, keys;
    std::vector<std::pair<int, std::string>> idrefs; // the holder's number, the idref
    std::string broken;
    int numbered = 0;
    const std::function<void(IXMLDOMNode*, int)> walk = [&](IXMLDOMNode* node, int holder) {
        Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node);
        if (!element) return;
        const int self = ++numbered;
        String tag, id, idref;
        element->get_tagName(&tag);
        const bool hasId = element->getAttribute("id", &id) == S_OK;
        if (hasId && !ids.insert(id.str()).second) broken = "the id " + id.str() + " is not unique";
        if (tag == "RowUnique") {
            String key;
            element->get_text(&key);
            if (!hasId || id.isEmpty()) broken = "the row " + key.str() + " has no id";
            if (!keys.insert(key.str()).second) broken = "two rows have the key " + key.str();
            rowIds.insert(id.str());
        }
        if (element->getAttribute("idref", &idref) == S_OK)
            idrefs.emplace_back(holder, idref.str());
        Ref<IXMLDOMNode> child;
        element->get_firstChild(&child);
        while (child && broken.empty()) {
            walk(child, self);
            Ref<IXMLDOMNode> next;
            child->get_nextSibling(&next);
            child = std::move(next);
        }
    };
    walk(root, 0);
    std::set<std::pair<int, std::string>> cells;
    for (const auto& cell : idrefs) {
        if (!broken.empty()) break;
        if (!rowIds.count(cell.second))
            broken = "the idref " + cell.second + " names no row";
        else if (!cells.insert(cell).second)
            broken = "a column holds two cells of the row " + cell.second;
    }
    if (broken.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << broken;
}

// The row object of `key`, or null.
inline Ref<IQVRTableInfoCell> rowOf(IQVRCatalogTable* table, const char* key) {
    Ref<IQVRCatalogObjectList> rows;
    uniqueColumnOf(table)->get_childNodes(&rows);
    for (Ref<IQVRCatalogObject> row : *rows)
        if (keyOf(row) == key) return query<IQVRTableInfoCell>(row);
    return nullptr;
}

// The value of the cell of row `key` in `column`, read through the row object; empty when there
// is no such cell.
inline Variant valueAt(IQVRCatalogTable* table, IQVRCatalogObject* column, const char* key) {
    Variant value;
    Ref<IQVRTableInfoCell> row = rowOf(table, key);
    Ref<IQVRTableCellObject> cell;
    if (row && row->getCell(column, &cell) == S_OK) {
        EXPECT_EQ(query<IQVRTableCell>(cell)->get_value(&value), S_OK);
    }
    return value;
}

// Rows, cells and recipes by kind and key (without one by kind alone), views by their view name,
// everything else by name ("Table" for the table itself).
inline std::string describeTableObject(IQVRCatalogObject* object) {
    QVRObjectType type = qvrCatalog;
    if (object) object->get_objectType(&type);
    const auto withKey = [&](const char* kind) {
        const std::string key = keyOf(object);
        return key.empty() ? std::string(kind) : kind + (" " + key);
    };
    switch (type) {
    case qvrInfoCell: return withKey("Row");
    case qvrCell: return withKey("Cell");
    case qvrDrawing: return withKey("Drawing");
    case qvrRefCell: return withKey("Link");
    case qvrView:
    case qvrConstView: return textAt(object, "@viewName");
    case qvrRecipe: return withKey("Recipe");
    case qvrTable: return "Table";
    default: return nameOf(object);
    }
}

// A recording sink at a table that describes what it hears by describeTableObject.
class TableListener : public RootListener<IQVRCatalogTable> {
public:
    explicit TableListener(IQVRCatalogTable* table) : RootListener(table) {
        sink().describeWith = describeTableObject;
    }
};

} // namespace qvr::testing
