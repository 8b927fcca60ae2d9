#include "model.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <unistd.h>

#include "counted.h"

namespace fs = std::filesystem;

namespace qvrcat {

std::string libraryMessage(HRESULT hr) {
    ErrorInfo info;
    std::string message;
    if (GetErrorInfo(&info)) message = info.description.str();
    if (message.empty()) {
        char status[48];
        std::snprintf(status, sizeof status, "failed with status 0x%08X",
                      static_cast<unsigned>(hr));
        return status;
    }
    // The library's texts may span lines ("Internal error.\n\nObject not initialized."); a
    // message of this tool is one line.
    std::string line;
    for (const char c : message) {
        if (c == '\n' || c == '\r') {
            if (!line.empty() && line.back() != ' ') line += ' ';
        } else {
            line += c;
        }
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    return line;
}

void need(HRESULT hr, const std::string& where) {
    if (hr != S_OK) throw Failure(where, libraryMessage(hr));
}

std::vector<Ref<IQVRCatalogObject>> childrenOf(IQVRCatalogObject* object) {
    std::vector<Ref<IQVRCatalogObject>> children;
    Ref<IQVRCatalogObjectList> list;
    if (object->get_childNodes(&list) != S_OK || !list) return children;
    for (Ref<IQVRCatalogObject> child : *list) children.push_back(child);
    return children;
}

std::string absolutePath(const std::string& path) {
    std::error_code ignored;
    const fs::path absolute = fs::absolute(path, ignored);
    return absolute.empty() ? path : absolute.lexically_normal().string();
}

std::string localPath(const std::string& urlOrPath) {
    const std::string scheme = "file://";
    if (urlOrPath.compare(0, scheme.size(), scheme) != 0)
        return urlOrPath.find("://") == std::string::npos ? urlOrPath : "";
    std::string path = urlOrPath.substr(scheme.size());
    if (path.compare(0, 9, "localhost") == 0) path.erase(0, 9);
    std::string decoded;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '%' && i + 2 < path.size() && std::isxdigit((unsigned char)path[i + 1]) &&
            std::isxdigit((unsigned char)path[i + 2])) {
            decoded += static_cast<char>(std::stoi(path.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            decoded += path[i];
        }
    }
    return decoded;
}

namespace {

// A file the user named must be there before the library is asked to parse it, so that the
// message says what is wrong in the user's words.
std::string existingFile(const std::string& path) {
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) throw Failure(path, "no such file");
    return absolutePath(path);
}

} // namespace

Ref<IQVRCatalog> openCatalog(const std::string& path) {
    const std::string file = existingFile(path);
    Ref<IQVRCatalog> catalog;
    VARIANT_BOOL done = VARIANT_FALSE;
    need(CreateCatalog(&catalog), path);
    need(catalog->load(Variant(file), &done), path);
    return catalog;
}

std::vector<Ref<IQVRCatalogPart>> partsOf(IQVRCatalogObject* catalog) {
    std::vector<Ref<IQVRCatalogPart>> parts;
    for (const Ref<IQVRCatalogObject>& child : childrenOf(catalog)) {
        if (typeOf(child) == qvrPart) parts.push_back(query<IQVRCatalogPart>(child));
        if (typeOf(child) == qvrChapter)
            for (Ref<IQVRCatalogPart>& part : partsOf(child)) parts.push_back(std::move(part));
    }
    return parts;
}

std::string describePart(IQVRCatalogPart* part) {
    String reference;
    part->get_tableRef(&reference);
    std::string shown = "part \"" + nameOf(part) + "\"";
    return reference.isEmpty() ? shown : shown + " (" + reference.str() + ")";
}

void TableTarget::save() const {
    VARIANT_BOOL ok = VARIANT_FALSE;
    need(table->save(&ok), label);
}

namespace {

Ref<IQVRCatalogPart> findPart(IQVRCatalog* catalog, const std::string& wanted,
                              const std::string& catalogPath) {
    const std::vector<Ref<IQVRCatalogPart>> parts = partsOf(catalog);
    // An id names one part; a name or a table file may be shared, and then the id must be used.
    for (const auto& part : parts)
        if (keyOf(part) == wanted) return part;
    std::vector<Ref<IQVRCatalogPart>> found;
    for (const auto& part : parts)
        if (nameOf(part) == wanted) found.push_back(part);
    if (found.empty()) {
        for (const auto& part : parts) {
            String reference;
            part->get_tableRef(&reference);
            if (reference.str() == wanted) found.push_back(part);
        }
    }
    if (found.empty())
        throw Failure(catalogPath, "no part with the id, name or table file \"" + wanted + "\"");
    if (found.size() > 1)
        throw Failure(catalogPath, std::to_string(found.size()) + " parts answer to \"" + wanted +
                                       "\"; name one by its id (" + keyOf(found[0]) + ", ...)");
    return found[0];
}

} // namespace

TableTarget openTable(const std::string& catalogPath, const std::string& partOrFile) {
    TableTarget target;
    if (catalogPath.empty()) {
        const std::string file = existingFile(partOrFile);
        VARIANT_BOOL ok = VARIANT_FALSE;
        target.label = partOrFile;
        need(CreateCatalogTable(&target.table), target.label);
        need(target.table->load(Variant(file), 0, &ok), target.label);
        return target;
    }
    target.catalog = openCatalog(catalogPath);
    target.part = findPart(target.catalog, partOrFile, catalogPath);
    target.label = catalogPath + ": " + describePart(target.part);
    need(target.part->getTable(0, &target.table), target.label);
    return target;
}

const char* kindName(ColumnKind kind) {
    switch (kind) {
    case ColumnKind::Plain: return "plain";
    case ColumnKind::Const: return "const";
    case ColumnKind::Calculated: return "calculated";
    case ColumnKind::Reference: return "reference";
    case ColumnKind::View: return "view";
    case ColumnKind::ConstView: return "const view";
    }
    return "";
}

const char* typeName(QVRColumnDataType type) {
    switch (type) {
    case qvrDataTypeInt: return "int";
    case qvrDataTypeFloat: return "float";
    default: return "string";
    }
}

std::vector<Column> columnsOf(IQVRCatalogTable* table) {
    std::vector<Column> columns;
    for (const Ref<IQVRCatalogObject>& object : childrenOf(table)) {
        Column column{object, ColumnKind::Plain, nameOf(object), qvrDataTypeString, "", ""};
        switch (typeOf(object)) {
        case qvrTableColumn: break;
        case qvrConstColumn: column.kind = ColumnKind::Const; break;
        case qvrCalculatedColumn: column.kind = ColumnKind::Calculated; break;
        case qvrRefColumn: column.kind = ColumnKind::Reference; break;
        case qvrView: column.kind = ColumnKind::View; break;
        case qvrConstView: column.kind = ColumnKind::ConstView; break;
        default: continue; // the unique column, the table's extrinsics
        }
        String unit, formula, viewName;
        if (auto described = query<IQVRTableColumnObject>(object)) {
            if (column.kind != ColumnKind::Reference) described->get_dataType(&column.type);
            described->get_unit(&unit);
        }
        if (auto view = query<IQVRTableViewObject>(object)) {
            view->get_viewName(&viewName);
            column.name = viewName.str();
        }
        if (auto calculated = query<IQVRTableCalculatedColumn>(object))
            calculated->get_expression(&formula);
        if (auto constant = query<IQVRTableConstColumn>(object)) constant->get_constant(&formula);
        column.unit = unit.str();
        column.formula = formula.str();
        columns.push_back(std::move(column));
    }
    return columns;
}

const Column& columnNamed(const std::vector<Column>& columns, const std::string& name,
                          const std::string& where) {
    const Column* found = nullptr;
    for (const Column& column : columns) {
        if (column.name != name) continue;
        if (found) throw Failure(where, "two columns are named \"" + name + "\"");
        found = &column;
    }
    if (!found) throw Failure(where, "no column \"" + name + "\"");
    return *found;
}

std::string keyColumnName(IQVRCatalogTable* table) {
    Ref<IQVRTableUniqueColumn> unique;
    table->get_uniqueColumn(&unique);
    const std::string name = nameOf(unique);
    return name.empty() ? "row" : name;
}

std::vector<Ref<IQVRTableInfoCell>> rowsOf(IQVRCatalogTable* table) {
    Ref<IQVRTableUniqueColumn> unique;
    std::vector<Ref<IQVRTableInfoCell>> rows;
    if (table->get_uniqueColumn(&unique) != S_OK || !unique) return rows;
    for (const Ref<IQVRCatalogObject>& row : childrenOf(unique))
        if (auto info = query<IQVRTableInfoCell>(row)) rows.push_back(info);
    return rows;
}

std::map<std::string, Ref<IQVRTableInfoCell>> rowsByKey(IQVRCatalogTable* table) {
    std::map<std::string, Ref<IQVRTableInfoCell>> rows;
    for (Ref<IQVRTableInfoCell>& row : rowsOf(table)) rows.emplace(keyOf(row), std::move(row));
    return rows;
}

namespace {

// The constant typed as its column: a number column's constant is read in the user's notation.
Variant typedConstant(const Column& column) {
    Variant value(column.formula), typed;
    const VARTYPE type = column.type == qvrDataTypeInt     ? VT_I4
                         : column.type == qvrDataTypeFloat ? VT_R8
                                                           : VT_BSTR;
    if (changeType(&typed, value, LOCALE_USER_DEFAULT, 0, type) == S_OK) return typed;
    return value;
}

} // namespace

Variant valueAt(const Column& column, IQVRTableInfoCell* row, const std::string& where) {
    Variant value;
    const std::string place =
        where + ": column \"" + column.name + "\", row \"" + keyOf(row) + "\"";
    if (column.kind == ColumnKind::Calculated) {
        need(
            query<IQVRTableCalculatedColumn>(column.object)->calculate(Variant(keyOf(row)), &value),
            place);
        return value;
    }
    if (column.kind == ColumnKind::Const) return typedConstant(column);
    if (!column.hasCells()) return value;
    Ref<IQVRTableCellObject> cell;
    const HRESULT hr = row->getCell(column.object, &cell);
    if (hr == S_FALSE || !cell) return value;
    need(hr, place);
    String link;
    if (auto plain = query<IQVRTableCell>(cell)) {
        need(plain->get_value(&value), place);
    } else if (auto reference = query<IQVRTableRefCell>(cell)) {
        need(reference->get_value(&link), place);
        value = Variant(link);
    } else if (auto drawing = query<IQVRTableDrawing>(cell)) {
        need(drawing->get_value(&link), place);
        value = Variant(link);
    }
    return value;
}

std::string text(const Variant& value) {
    if (value.isEmpty()) return "";
    if (value.isNull()) return "Null";
    Variant shown;
    if (changeType(&shown, value, LCID_EN_US, VARIANT_ALPHABOOL, VT_BSTR) != S_OK) return "";
    return shown.str().str();
}

Json toJson(const Variant& value) {
    switch (value.vt()) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR: return nullptr;
    case VT_BOOL: return value.boolVal() != VARIANT_FALSE;
    case VT_BSTR: return value.str().str();
    case VT_UI1: return value.ui1();
    case VT_I2: return value.i2();
    case VT_I4: return value.i4();
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL: {
        Variant number;
        if (changeType(&number, value, LCID_EN_US, 0, VT_R8) == S_OK) return number.r8();
        break;
    }
    default: break;
    }
    return text(value);
}

void printAligned(const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths;
    for (const auto& line : lines) {
        if (widths.size() < line.size()) widths.resize(line.size(), 0);
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], String(line[i]).length());
    }
    for (const auto& line : lines) {
        std::string shown;
        for (std::size_t i = 0; i < line.size(); ++i) {
            shown += line[i];
            if (i + 1 < line.size())
                shown += std::string(widths[i] - String(line[i]).length() + 2, ' ');
        }
        while (!shown.empty() && shown.back() == ' ') shown.pop_back();
        std::cout << shown << '\n';
    }
}

void printJson(const Json& json) {
    std::cout << json.dump(2) << '\n';
}

Progress::Progress(std::string label, std::size_t total)
    : label_(std::move(label)), total_(total), shown_(total > 0 && isatty(STDERR_FILENO)) {}

Progress::~Progress() {
    if (shown_) std::fprintf(stderr, "\r%*s\r", static_cast<int>(label_.size()) + 60, "");
}

void Progress::advance(std::size_t steps) {
    done_ = std::min(total_, done_ + steps);
    if (shown_) draw();
}

void Progress::draw() {
    const int percent = static_cast<int>(done_ * 100 / total_);
    if (percent == shownPercent_) return;
    shownPercent_ = percent;
    const int width = 30, filled = percent * width / 100;
    std::fprintf(stderr, "\r%s [%s%s] %3d%% (%zu/%zu)", label_.c_str(),
                 std::string(filled, '#').c_str(), std::string(width - filled, '.').c_str(),
                 percent, done_, total_);
    std::fflush(stderr);
}

namespace {

class ProgressSink final : public tools::Counted<IQVRCatalogEvents> {
public:
    explicit ProgressSink(Progress& progress) : progress_(progress) {}
    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant&) override {
        if (typeOf(object) == qvrCell) progress_.advance();
        return S_OK;
    }
    HRESULT onObjectChanged(IQVRCatalogObject*) override {
        progress_.advance();
        return S_OK;
    }
    HRESULT onObjectRemoved(IQVRCatalogObject*) override { return S_OK; }
    HRESULT onObjectQuery(IQVRCatalogObject*, VARIANT_BOOL) override { return S_OK; }

private:
    Progress& progress_;
};

} // namespace

ProgressListener::ProgressListener(Progress& progress, IQVRCatalog* catalog,
                                   IQVRCatalogTable* table)
    : catalog_(catalog), table_(catalog ? nullptr : table) {
    Ref<IQVRCatalogEvents> sink(new ProgressSink(progress));
    if (catalog_)
        catalog_->advise(sink, &cookie_);
    else if (table_)
        table_->advise(sink, &cookie_);
}

ProgressListener::~ProgressListener() {
    if (catalog_)
        catalog_->unadvise(cookie_);
    else if (table_)
        table_->unadvise(cookie_);
}

} // namespace qvrcat
