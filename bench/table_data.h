// The data both table benchmarks fill their tables with, so that their figures describe the same
// table: ten columns whose first holds text, the odd ones floating numbers and the even ones
// integers, and rows keyed "P-0", "P-1", ...
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <libxml/tree.h>

#include <qvr/table.h>

namespace qvr::bench {

inline QVRColumnDataType typeOfColumn(int c) {
    return c == 0 ? qvrDataTypeString : c % 2 ? qvrDataTypeFloat : qvrDataTypeInt;
}

inline std::string keyOfRow(int r) {
    return "P-" + std::to_string(r);
}

// The `dataType` a column of that type carries.
inline const char* tagOfColumn(int c) {
    return c == 0 ? "string" : c % 2 ? "float" : "int";
}

// A row id of the shape the model gives its rows: "R" and 15 hexadecimal digits, so that the
// plain document carries the same bytes as the model's.
inline std::string rowIdOf(int r) {
    char id[24];
    std::snprintf(id, sizeof id, "R%015llx", 0x1DB3F0000000000ull + static_cast<unsigned>(r));
    return id;
}

inline Variant valueAt(int r, int c) {
    switch (typeOfColumn(c)) {
    case qvrDataTypeString: return Variant("M" + std::to_string(r % 97));
    case qvrDataTypeFloat: return Variant(r * 0.5 + c);
    default: return Variant(static_cast<std::int32_t>(r + c));
    }
}

// A new table holding `count` plain columns "Col0", "Col1", ... of the types above, appended in
// order (so that cells appended later find their rows through the table's indexes).
inline Ref<IQVRCatalogTable> tableWithColumns(int count,
                                              std::vector<Ref<IQVRTableColumn>>* columns) {
    Ref<IQVRCatalogTable> table;
    CreateCatalogTable(&table);
    VARIANT_BOOL ok = VARIANT_FALSE;
    table->create("/tmp/", "Bench", "en", &ok);
    for (int c = 0; c < count; ++c) {
        Ref<IQVRTableColumn> column;
        table->createColumn(typeOfColumn(c), "Col" + std::to_string(c), "", "", "", VARIANT_TRUE,
                            &column);
        table->appendChild(column, nullptr);
        columns->push_back(column);
    }
    return table;
}

// A value as the model writes it into a cell.
inline std::string textOf(const Variant& value) {
    Variant text;
    changeType(&text, value, LCID_EN_US, 0, VT_BSTR);
    return text.str().str();
}

// The document the model writes for `rows` rows of `columnCount` plain columns, made with
// libxml2 calls alone: the baseline the model's building and saving are measured against.
inline xmlDocPtr plainTable(int rows, int columnCount) {
    xmlDocPtr doc = xmlNewDoc(BAD_CAST "1.0");
    xmlNodePtr root = xmlNewDocNode(doc, nullptr, BAD_CAST "vCATTable", nullptr);
    xmlDocSetRootElement(doc, root);
    xmlSetProp(root, BAD_CAST "version", BAD_CAST "1.2");
    xmlNodePtr unique = xmlNewChild(root, nullptr, BAD_CAST "ColumnUnique", nullptr);
    xmlSetProp(unique, BAD_CAST "id", BAD_CAST "C0");
    std::vector<xmlNodePtr> columns;
    for (int c = 0; c < columnCount; ++c) {
        xmlNodePtr column = xmlNewChild(root, nullptr, BAD_CAST "Column", nullptr);
        xmlSetProp(column, BAD_CAST "id", BAD_CAST("C" + std::to_string(c + 1)).c_str());
        xmlSetProp(column, BAD_CAST "dataType", BAD_CAST tagOfColumn(c));
        xmlSetProp(column, BAD_CAST "name", BAD_CAST("Col" + std::to_string(c)).c_str());
        columns.push_back(column);
    }
    for (int r = 0; r < rows; ++r) {
        const std::string id = rowIdOf(r);
        xmlNodePtr row =
            xmlNewTextChild(unique, nullptr, BAD_CAST "RowUnique", BAD_CAST keyOfRow(r).c_str());
        xmlSetProp(row, BAD_CAST "id", BAD_CAST id.c_str());
        for (int c = 0; c < columnCount; ++c) {
            xmlNodePtr cell =
                xmlNewTextChild(columns[static_cast<std::size_t>(c)], nullptr, BAD_CAST "Row",
                                BAD_CAST textOf(valueAt(r, c)).c_str());
            xmlSetProp(cell, BAD_CAST "idref", BAD_CAST id.c_str());
        }
    }
    return doc;
}

// The first calculated column of a table; null when it has none.
inline Ref<IQVRTableCalculatedColumn> calculatedColumn(IQVRCatalogTable* table) {
    Ref<IQVRCatalogObjectList> columns;
    table->get_childNodes(&columns);
    for (Ref<IQVRCatalogObject> column : *columns)
        if (auto calculated = query<IQVRTableCalculatedColumn>(column)) return calculated;
    return nullptr;
}

} // namespace qvr::bench
