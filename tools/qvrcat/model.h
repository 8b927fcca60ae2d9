// What every command of qvrcat needs from the library: opening catalogs and tables, finding
// parts, columns and rows by the names a user types, and reading values as text or JSON.
//
// A step that fails throws Failure with a one-line message that names the file (and the part,
// column or row) and carries the library's own message; main prints it and exits with 1.
#pragma once

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>
#include <qvr/qvr.h>

#include "object_names.h"

namespace qvrcat {

using namespace qvr;
using Json = nlohmann::ordered_json;

struct Failure : std::runtime_error {
    Failure(const std::string& where, const std::string& what)
        : std::runtime_error(where + ": " + what), place(where), message(what) {}
    std::string place, message;
};

// The library's message for the call that just answered `hr`, on one line.
std::string libraryMessage(HRESULT hr);
// Throws "<where>: <library message>" unless `hr` is S_OK.
void need(HRESULT hr, const std::string& where);

using tools::keyOf;
using tools::nameOf;
using tools::typeOf;
// The children of an object; none for the kinds that take no children.
std::vector<Ref<IQVRCatalogObject>> childrenOf(IQVRCatalogObject* object);

// A path as the library takes it (absolute), and the local path of a file URL or a path; empty
// for a URL of another scheme (a file on the web).
std::string absolutePath(const std::string& path);
std::string localPath(const std::string& urlOrPath);

Ref<IQVRCatalog> openCatalog(const std::string& path);
// Every part of the catalog, in document order.
std::vector<Ref<IQVRCatalogPart>> partsOf(IQVRCatalogObject* catalog);
// "part \"Hex bolt M8\" (hex-bolt-m8.xml)": how messages name a part.
std::string describePart(IQVRCatalogPart* part);

// A table named on the command line: a part of a catalog (found by its id, its name or the file
// its table reference names), or a table file standing alone.
struct TableTarget {
    Ref<IQVRCatalog> catalog; // null for a table file
    Ref<IQVRCatalogPart> part;
    Ref<IQVRCatalogTable> table;
    std::string label; // how messages name it
    // Writes the table to its file; the catalog stays as it is.
    void save() const;
};
TableTarget openTable(const std::string& catalogPath, const std::string& partOrFile);

enum class ColumnKind { Plain, Const, Calculated, Reference, View, ConstView };
const char* kindName(ColumnKind kind);
const char* typeName(QVRColumnDataType type);

// A column (or view) of a table with what the commands show of it.
struct Column {
    Ref<IQVRCatalogObject> object;
    ColumnKind kind;
    std::string name; // a view's viewName
    QVRColumnDataType type = qvrDataTypeString;
    std::string unit;
    std::string formula; // the expression or the constant
    bool hasCells() const {
        return kind == ColumnKind::Plain || kind == ColumnKind::Reference ||
               kind == ColumnKind::View;
    }
    bool computed() const { return kind == ColumnKind::Const || kind == ColumnKind::Calculated; }
};
std::vector<Column> columnsOf(IQVRCatalogTable* table);
// The column named `name`; Failure naming `where` when there is none or more than one.
const Column& columnNamed(const std::vector<Column>& columns, const std::string& name,
                          const std::string& where);
// The name of the key column (the unique column's name).
std::string keyColumnName(IQVRCatalogTable* table);

// The rows of a table as row objects, in order; a row's key is keyOf(row).
std::vector<Ref<IQVRTableInfoCell>> rowsOf(IQVRCatalogTable* table);
// The rows by their exact keys (a list of rows finds a key without regard to case, and walks
// the whole list for each key).
std::map<std::string, Ref<IQVRTableInfoCell>> rowsByKey(IQVRCatalogTable* table);

// The value of `column` at `row`: the cell's value (Empty when the row has none), the constant,
// or the computed value. Throws with the library's message and the place.
Variant valueAt(const Column& column, IQVRTableInfoCell* row, const std::string& where);

// A value as text (numbers as en-US writes them) and as JSON (numbers, booleans, null, text).
std::string text(const Variant& value);
Json toJson(const Variant& value);

// Lines of cells printed in columns as wide as their widest cell, counted in characters.
void printAligned(const std::vector<std::vector<std::string>>& lines);
void printJson(const Json& json);

// A bar on standard error while long work runs, shown only when standard error is a terminal.
class Progress {
public:
    Progress(std::string label, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void advance(std::size_t steps = 1);

private:
    void draw();
    std::string label_;
    std::size_t total_, done_ = 0;
    int shownPercent_ = -1;
    bool shown_;
};

// Follows work that one call of the library does: while it lives, each cell inserted and each
// object changed in the document of `catalog` (or, without one, of `table`) advances `progress`.
class ProgressListener {
public:
    ProgressListener(Progress& progress, IQVRCatalog* catalog, IQVRCatalogTable* table);
    ~ProgressListener();
    ProgressListener(const ProgressListener&) = delete;
    ProgressListener& operator=(const ProgressListener&) = delete;

private:
    Ref<IQVRCatalog> catalog_;
    Ref<IQVRCatalogTable> table_;
    std::uint32_t cookie_ = 0;
};

} // namespace qvrcat
