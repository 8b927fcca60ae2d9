// The commands over one table: table, calc, freeze, export and import.
#include <charconv>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>

#include "commands.h"
#include "csv.h"
#include "model.h"

namespace qvrcat {

namespace {

// What the second header line of a shown table says of a column: its unit, and for the columns
// whose values are not their own cells' values, how the value comes about.
std::string columnNote(const Column& column) {
    if (column.kind == ColumnKind::Calculated) return "calc " + column.unit;
    if (column.kind == ColumnKind::Const) return "const " + column.unit;
    if (column.kind == ColumnKind::Reference) return "link";
    if (column.kind == ColumnKind::View || column.kind == ColumnKind::ConstView) return "view";
    return column.unit;
}

Json describeColumn(const Column& column) {
    Json described = {{"name", column.name}, {"kind", kindName(column.kind)}};
    if (column.kind != ColumnKind::Reference && column.kind != ColumnKind::View &&
        column.kind != ColumnKind::ConstView) {
        described["type"] = typeName(column.type);
        described["unit"] = column.unit;
    }
    if (column.kind == ColumnKind::Calculated) described["expression"] = column.formula;
    if (column.kind == ColumnKind::Const) described["constant"] = column.formula;
    return described;
}

// The value of `column` at `row`; with `refused` given, a value the library refuses is noted
// there and stands as an error value, so that the rest of the table can still be shown.
Variant shownValue(const Column& column, IQVRTableInfoCell* row, const std::string& where,
                   std::vector<std::string>* refused) {
    if (!refused) return valueAt(column, row, where);
    try {
        return valueAt(column, row, where);
    } catch (const Failure& failure) {
        refused->push_back(failure.what());
        return Variant::error(E_FAIL);
    }
}

// Rows by the given columns as JSON: one object per row, the key first, a column without a
// value at the row left out.
Json rowsAsJson(IQVRCatalogTable* table, const std::vector<Column>& columns,
                const std::string& where, std::vector<std::string>* refused = nullptr) {
    const std::string key = keyColumnName(table);
    Json rows = Json::array();
    for (const Ref<IQVRTableInfoCell>& row : rowsOf(table)) {
        Json object = {{key, keyOf(row)}};
        for (const Column& column : columns) {
            const Variant value = shownValue(column, row, where, refused);
            if (!value.isEmpty()) object[column.name] = toJson(value);
        }
        rows.push_back(std::move(object));
    }
    return rows;
}

// A value on one line of a terminal: line breaks and tabs written as escapes.
std::string oneLine(const std::string& value) {
    std::string shown;
    for (const char c : value)
        shown += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
    return shown;
}

} // namespace

int runTable(const Options& options) {
    const TableTarget target = openTable(options.catalog, options.target);
    const std::vector<Column> columns = columnsOf(target.table);
    // A value the library refuses shows as null or "#error" in its place; its message follows.
    std::vector<std::string> refused;
    if (options.json) {
        Json described = Json::array();
        for (const Column& column : columns) described.push_back(describeColumn(column));
        printJson({{"key", keyColumnName(target.table)},
                   {"columns", described},
                   {"rows", rowsAsJson(target.table, columns, target.label, &refused)}});
    } else {
        std::vector<std::vector<std::string>> lines(2);
        lines[0].push_back(keyColumnName(target.table));
        lines[1].push_back("");
        for (const Column& column : columns) {
            lines[0].push_back(column.name);
            lines[1].push_back(columnNote(column));
        }
        for (const Ref<IQVRTableInfoCell>& row : rowsOf(target.table)) {
            std::vector<std::string> line{oneLine(keyOf(row))};
            for (const Column& column : columns) {
                const Variant value = shownValue(column, row, target.label, &refused);
                line.push_back(value.vt() == VT_ERROR ? "#error" : oneLine(text(value)));
            }
            lines.push_back(std::move(line));
        }
        printAligned(lines);
        for (const Column& column : columns)
            if (column.kind == ColumnKind::Calculated)
                std::cout << column.name << " = " << column.formula << '\n';
    }
    std::cout.flush();
    for (const std::string& message : refused) std::cerr << "qvrcat: " << message << '\n';
    return refused.empty() ? 0 : 1;
}

int runCalc(const Options& options) {
    const TableTarget target = openTable(options.catalog, options.target);
    const std::vector<Column> columns = columnsOf(target.table);
    const Column& column = columnNamed(columns, options.column, target.label);
    const auto rows = rowsByKey(target.table);
    std::vector<std::pair<std::string, Variant>> values;
    for (const std::string& key : options.rows) {
        const auto row = rows.find(key);
        if (row == rows.end()) throw Failure(target.label, "no row \"" + key + "\"");
        values.emplace_back(key, valueAt(column, row->second, target.label));
    }
    if (options.json) {
        Json list = Json::array();
        for (const auto& [key, value] : values)
            list.push_back({{"row", key}, {"value", toJson(value)}});
        printJson(list);
        return 0;
    }
    std::vector<std::vector<std::string>> lines;
    for (const auto& [key, value] : values) lines.push_back({key, text(value)});
    printAligned(lines);
    return 0;
}

namespace {

// Turns one calculated column into a plain column of its computed values, as the table does for
// all of them: the new column takes the place and description of the formula's column.
void freezeColumn(const TableTarget& target, const Column& column, Progress& progress) {
    auto calculated = query<IQVRTableCalculatedColumn>(column.object);
    String attrib, desc;
    VARIANT_BOOL visible = VARIANT_TRUE;
    calculated->get_attrib(&attrib);
    calculated->get_desc(&desc);
    calculated->get_visible(&visible);
    const std::string where = target.label + ": column \"" + column.name + "\"";
    Ref<IQVRTableColumn> plain;
    need(target.table->createColumn(column.type, column.name, attrib, desc, column.unit, visible,
                                    &plain),
         where);
    // The values are computed before the new column stands beside the formula's, so that a
    // formula naming its own column sees what it saw before.
    std::vector<std::pair<std::string, Variant>> values;
    for (const Ref<IQVRTableInfoCell>& row : rowsOf(target.table)) {
        values.emplace_back(keyOf(row), valueAt(column, row, target.label));
        progress.advance();
    }
    need(target.table->insertBefore(plain, Variant(column.object), nullptr), where);
    for (const auto& [key, value] : values) {
        Ref<IQVRTableCell> cell;
        need(target.table->createCell(key, value, &cell), where);
        need(plain->appendChild(cell, nullptr), where + ", row \"" + key + "\"");
    }
    need(target.table->removeChild(column.object, nullptr), where);
}

} // namespace

int runFreeze(const Options& options) {
    const TableTarget target = openTable(options.catalog, options.target);
    const std::vector<Column> columns = columnsOf(target.table);
    std::size_t formulas = 0;
    for (const Column& column : columns) formulas += column.kind == ColumnKind::Calculated;
    const std::size_t rows = rowsOf(target.table).size();
    // A formula without rows has no values to become.
    if (rows == 0 && (formulas > 0 || !options.column.empty()))
        throw Failure(target.label, "the table has no rows to freeze");
    if (!options.column.empty()) {
        const Column& column = columnNamed(columns, options.column, target.label);
        if (column.kind != ColumnKind::Calculated)
            throw Failure(target.label, "column \"" + column.name + "\" is not calculated");
        Progress progress("freezing " + column.name, rows);
        freezeColumn(target, column, progress);
        formulas = 1;
    } else if (formulas > 0) {
        Progress progress("freezing " + options.target, formulas * rows);
        ProgressListener listening(progress, target.catalog, target.table);
        VARIANT_BOOL ok = VARIANT_FALSE;
        need(target.table->freezeCalculatedColumns(&ok), target.label);
    }
    if (formulas == 0) {
        std::cout << "no calculated columns in " << target.label << '\n';
        return 0;
    }
    target.save();
    std::cout << "froze " << formulas << (formulas == 1 ? " column" : " columns") << " of " << rows
              << " rows in " << target.label << '\n';
    return 0;
}

namespace {

// The columns export writes: the plain ones, and with `computed` the const and calculated too.
std::vector<Column> exportedColumns(const std::vector<Column>& columns, bool computed) {
    std::vector<Column> chosen;
    for (const Column& column : columns)
        if (column.kind == ColumnKind::Plain || (computed && column.computed()))
            chosen.push_back(column);
    return chosen;
}

} // namespace

int runExport(const Options& options) {
    const TableTarget target = openTable(options.catalog, options.target);
    const std::vector<Column> columns = exportedColumns(columnsOf(target.table), options.computed);
    std::ostringstream out;
    if (options.csv) {
        out << csvField(keyColumnName(target.table));
        for (const Column& column : columns) out << ',' << csvField(column.name);
        out << "\r\n";
        const std::vector<Ref<IQVRTableInfoCell>> rows = rowsOf(target.table);
        Progress progress("exporting " + options.target, rows.size());
        for (const Ref<IQVRTableInfoCell>& row : rows) {
            out << csvField(keyOf(row));
            for (const Column& column : columns)
                out << ',' << csvField(text(valueAt(column, row, target.label)));
            out << "\r\n";
            progress.advance();
        }
    } else {
        Json described = Json::array();
        for (const Column& column : columns) described.push_back(describeColumn(column));
        Json rows = rowsAsJson(target.table, columns, target.label);
        // One row to a line: a script reads it whole, a person and a diff line by line.
        out << "{\n  \"key\": " << Json(keyColumnName(target.table)).dump()
            << ",\n  \"columns\": " << described.dump() << ",\n  \"rows\": [";
        for (std::size_t i = 0; i < rows.size(); ++i)
            out << (i ? ",\n    " : "\n    ") << rows[i].dump();
        out << (rows.empty() ? "]\n}\n" : "\n  ]\n}\n");
    }
    if (options.output.empty()) {
        std::cout << out.str();
        return 0;
    }
    std::ofstream file(options.output, std::ios::binary);
    file << out.str();
    file.close();
    if (!file) throw Failure(options.output, "cannot be written");
    return 0;
}

namespace {

// A row of the file to import: its key, and for each column of the header the value (none where
// the field is empty or left out).
struct ImportRow {
    std::size_t line;
    std::string key;
    std::vector<std::optional<Variant>> values;
};

struct Import {
    std::vector<Column> columns; // in the order of the values of each row
    std::vector<ImportRow> rows;
};

// The plain column a name of the file's header stands for; the formulas' columns take no values.
const Column& importedColumn(const std::vector<Column>& columns, const std::string& name,
                             const std::string& where) {
    const Column& column = columnNamed(columns, name, where);
    if (column.kind != ColumnKind::Plain)
        throw Failure(where, "column \"" + name + "\" is " + kindName(column.kind) +
                                 ": its values cannot be imported");
    return column;
}

std::string aTypeName(QVRColumnDataType type) {
    return std::string(type == qvrDataTypeInt ? "an " : "a ") + typeName(type);
}

// A field of a CSV file as a value of the column's type; nullopt for an empty field.
std::optional<Variant> typedField(const Column& column, const std::string& field,
                                  const std::string& where) {
    if (field.empty()) return std::nullopt;
    if (column.type == qvrDataTypeString) return Variant(field);
    const char* end = field.data() + field.size();
    if (column.type == qvrDataTypeInt) {
        std::int32_t number = 0;
        const auto [stop, error] = std::from_chars(field.data(), end, number);
        if (error == std::errc() && stop == end) return Variant(number);
    } else {
        double number = 0;
        const auto [stop, error] = std::from_chars(field.data(), end, number);
        if (error == std::errc() && stop == end && std::isfinite(number)) return Variant(number);
    }
    throw Failure(where, "\"" + field + "\" is not " + aTypeName(column.type));
}

Import readCsvImport(const std::string& text, const std::string& file,
                     const std::vector<Column>& columns, const std::string& keyName) {
    const std::vector<Record> records = readCsv(text, file);
    if (records.empty()) throw Failure(file, "no header line");
    Import result;
    const Record& header = records[0];
    std::size_t keyAt = header.fields.size();
    const std::string headerPlace = file + ": line " + std::to_string(header.line);
    for (std::size_t i = 0; i < header.fields.size(); ++i) {
        if (header.fields[i] == keyName && keyAt == header.fields.size()) {
            keyAt = i;
            continue;
        }
        const Column& column = importedColumn(columns, header.fields[i], headerPlace);
        for (const Column& earlier : result.columns)
            if (earlier.object == column.object)
                throw Failure(headerPlace, "column \"" + column.name + "\" stands twice");
        result.columns.push_back(column);
    }
    if (keyAt == header.fields.size())
        throw Failure(headerPlace, "no column \"" + keyName + "\" with the rows' keys");
    for (std::size_t r = 1; r < records.size(); ++r) {
        const Record& record = records[r];
        const std::string place = file + ": line " + std::to_string(record.line);
        if (record.fields.size() != header.fields.size())
            throw Failure(place, std::to_string(record.fields.size()) +
                                     " fields where the header has " +
                                     std::to_string(header.fields.size()));
        ImportRow row{record.line, record.fields[keyAt], {}};
        for (std::size_t i = 0, c = 0; i < record.fields.size(); ++i)
            if (i != keyAt)
                row.values.push_back(typedField(result.columns[c++], record.fields[i],
                                                place + ": column \"" + header.fields[i] + "\""));
        result.rows.push_back(std::move(row));
    }
    return result;
}

// Walks a text and counts the line breaks passed, so that the JSON parser reading through it
// tells the line on which each row starts.
struct LineCounter {
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;
    const char* at = nullptr;
    std::size_t* breaks = nullptr;
    reference operator*() const { return *at; }
    LineCounter& operator++() {
        if (*at++ == '\n') ++*breaks;
        return *this;
    }
    LineCounter operator++(int) {
        LineCounter before = *this;
        ++*this;
        return before;
    }
    bool operator==(const LineCounter& other) const { return at == other.at; }
};

// A JSON value as a value of the column's type; nullopt for null.
std::optional<Variant> typedJson(const Column& column, const Json& value,
                                 const std::string& where) {
    if (value.is_null()) return std::nullopt;
    if (column.type == qvrDataTypeString && value.is_string())
        return Variant(value.get<std::string>());
    if (column.type == qvrDataTypeInt && value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        if (number >= INT32_MIN && number <= INT32_MAX &&
            !(value.is_number_unsigned() && number < 0))
            return Variant(static_cast<std::int32_t>(number));
    }
    if (column.type == qvrDataTypeFloat && value.is_number()) return Variant(value.get<double>());
    throw Failure(where, value.dump() + " is not " + aTypeName(column.type));
}

Import readJsonImport(const std::string& text, const std::string& file,
                      const std::vector<Column>& columns, const std::string& keyName) {
    // The rows are the objects of the "rows" array of the top object, or of a top array.
    std::size_t breaks = 0, rowsDepth = 0;
    std::string topKey;
    std::vector<std::size_t> lines;
    Json json;
    try {
        json = Json::parse(LineCounter{text.data(), &breaks},
                           LineCounter{text.data() + text.size(), &breaks},
                           [&](int depth, Json::parse_event_t event, Json& parsed) {
                               if (event == Json::parse_event_t::key && depth == 1)
                                   topKey = parsed.get<std::string>();
                               if (event == Json::parse_event_t::array_start &&
                                   (depth == 0 || (depth == 1 && topKey == "rows")))
                                   rowsDepth = depth + 1;
                               if (event == Json::parse_event_t::object_start &&
                                   depth == static_cast<int>(rowsDepth) && rowsDepth > 0)
                                   lines.push_back(breaks + 1);
                               if (event == Json::parse_event_t::array_end &&
                                   depth + 1 == static_cast<int>(rowsDepth))
                                   rowsDepth = 0;
                               return true;
                           });
    } catch (const Json::parse_error& error) {
        const std::string what = error.what();
        throw Failure(file, what.substr(what.find("] ") + 2));
    }
    const Json* rows = json.is_array() ? &json : nullptr;
    if (json.is_object() && json.contains("rows") && json["rows"].is_array()) rows = &json["rows"];
    if (!rows) throw Failure(file, "neither an array of rows nor an object with \"rows\"");
    Import result;
    std::map<std::string, std::size_t> placeOf; // a column's place in the values of a row
    std::size_t lineAt = 0;
    for (const Json& object : *rows) {
        const std::size_t line = object.is_object() && lineAt < lines.size() ? lines[lineAt++] : 0;
        const std::string place = file + ": line " + std::to_string(line);
        if (!object.is_object()) throw Failure(file, "a row is not an object: " + object.dump());
        if (!object.contains(keyName) || !object[keyName].is_string())
            throw Failure(place, "the row has no text \"" + keyName + "\" as its key");
        ImportRow row{line, object[keyName].get<std::string>(), {}};
        for (const auto& [name, value] : object.items()) {
            if (name == keyName) continue;
            auto known = placeOf.find(name);
            if (known == placeOf.end()) {
                result.columns.push_back(importedColumn(columns, name, place));
                known = placeOf.emplace(name, result.columns.size() - 1).first;
            }
            row.values.resize(result.columns.size());
            row.values[known->second] =
                typedJson(result.columns[known->second], value,
                          place + ": row \"" + row.key + "\", column \"" + name + "\"");
        }
        result.rows.push_back(std::move(row));
    }
    for (ImportRow& row : result.rows) row.values.resize(result.columns.size());
    return result;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw Failure(path, "no such file");
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

int runImport(const Options& options) {
    const bool json = options.json || (!options.csv && endsWith(options.input, ".json"));
    if (!json && !options.csv && !endsWith(options.input, ".csv"))
        throw Failure(options.input, "neither .csv nor .json: say which with --csv or --json");
    const std::string content = readFile(options.input);
    const TableTarget target = openTable(options.catalog, options.target);
    const std::vector<Column> columns = columnsOf(target.table);
    const std::string keyName = keyColumnName(target.table);
    // The whole file is read and checked before the table changes at all.
    const Import data = json ? readJsonImport(content, options.input, columns, keyName)
                             : readCsvImport(content, options.input, columns, keyName);
    std::map<std::string, std::size_t> seen;
    for (const ImportRow& row : data.rows) {
        const std::string place = options.input + ": line " + std::to_string(row.line);
        if (row.key.empty()) throw Failure(place, "the row has an empty key");
        if (!seen.emplace(row.key, row.line).second)
            throw Failure(place, "row \"" + row.key + "\" stands on line " +
                                     std::to_string(seen[row.key]) + " already");
    }
    const auto existing = rowsByKey(target.table);
    Ref<IQVRTableUniqueColumn> unique;
    need(target.table->get_uniqueColumn(&unique), target.label);
    std::size_t created = 0;
    Progress progress("importing " + options.input, data.rows.size());
    for (const ImportRow& row : data.rows) {
        const std::string place = target.label + ": row \"" + row.key + "\" (" + options.input +
                                  ", line " + std::to_string(row.line) + ")";
        Ref<IQVRTableInfoCell> target_row;
        if (auto found = existing.find(row.key); found != existing.end()) {
            target_row = found->second;
        } else {
            need(target.table->createInfoCell(row.key, &target_row), place);
            need(unique->appendChild(target_row, nullptr), place);
            ++created;
        }
        for (std::size_t i = 0; i < data.columns.size(); ++i) {
            if (!row.values[i]) continue;
            const Column& column = data.columns[i];
            Ref<IQVRTableCellObject> cell;
            if (target_row->getCell(column.object, &cell) == S_OK && cell) {
                need(query<IQVRTableCell>(cell)->put_value(*row.values[i]),
                     place + ", column \"" + column.name + "\"");
                continue;
            }
            Ref<IQVRTableCell> made;
            need(target.table->createCell(row.key, *row.values[i], &made), place);
            need(column.object->appendChild(made, nullptr),
                 place + ", column \"" + column.name + "\"");
        }
        progress.advance();
    }
    target.save();
    std::cout << "imported " << data.rows.size() << " rows (" << created << " new) into "
              << target.label << '\n';
    return 0;
}

} // namespace qvrcat
