// The commands over a whole catalog: info, tree, files, check and copy.
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <set>

#include "commands.h"
#include "model.h"

namespace fs = std::filesystem;

namespace qvrcat {

namespace {

// Calls `visit` for every chapter and part below `object`, depth first, with its depth.
void walkTree(IQVRCatalogObject* object, int depth,
              const std::function<void(IQVRCatalogObject*, int)>& visit) {
    for (const Ref<IQVRCatalogObject>& child : childrenOf(object)) {
        const QVRObjectType type = typeOf(child);
        if (type != qvrChapter && type != qvrPart) continue;
        visit(child, depth);
        if (type == qvrChapter) walkTree(child, depth + 1, visit);
    }
}

std::string tableRefOf(IQVRCatalogObject* part) {
    String reference;
    query<IQVRCatalogPart>(part)->get_tableRef(&reference);
    return reference.str();
}

std::string attribute(IQVRCatalogObject* object, const char* xpath) {
    Variant value;
    return object->getValue(xpath, &value) == S_OK ? text(value) : "";
}

} // namespace

int runInfo(const Options& options) {
    Ref<IQVRCatalog> catalog = openCatalog(options.target);
    std::size_t chapters = 0, parts = 0, tables = 0, rows = 0;
    std::map<ColumnKind, std::size_t> columns;
    walkTree(catalog, 0, [&](IQVRCatalogObject* object, int) {
        if (typeOf(object) == qvrChapter) {
            ++chapters;
            return;
        }
        ++parts;
        auto part = query<IQVRCatalogPart>(object);
        if (tableRefOf(part).empty()) return;
        Ref<IQVRCatalogTable> table;
        need(part->getTable(0, &table), options.target + ": " + describePart(part));
        ++tables;
        rows += rowsOf(table).size();
        for (const Column& column : columnsOf(table)) ++columns[column.kind];
    });
    String name, language, desc;
    catalog->get_name(&name);
    catalog->get_language(&language);
    catalog->get_desc(&desc);
    const ColumnKind kinds[] = {ColumnKind::Plain,     ColumnKind::Const, ColumnKind::Calculated,
                                ColumnKind::Reference, ColumnKind::View,  ColumnKind::ConstView};
    if (options.json) {
        Json counts = Json::object();
        for (const ColumnKind kind : kinds) counts[kindName(kind)] = columns[kind];
        printJson({{"file", options.target},
                   {"name", name.str()},
                   {"description", desc.str()},
                   {"version", attribute(catalog, "@version")},
                   {"language", language.str()},
                   {"chapters", chapters},
                   {"parts", parts},
                   {"tables", tables},
                   {"rows", rows},
                   {"columns", counts}});
        return 0;
    }
    std::vector<std::vector<std::string>> lines = {{"name", name.str()},
                                                   {"description", desc.str()},
                                                   {"version", attribute(catalog, "@version")},
                                                   {"language", language.str()},
                                                   {"chapters", std::to_string(chapters)},
                                                   {"parts", std::to_string(parts)},
                                                   {"tables", std::to_string(tables)},
                                                   {"rows", std::to_string(rows)}};
    for (const ColumnKind kind : kinds)
        lines.push_back({std::string(kindName(kind)) + " columns", std::to_string(columns[kind])});
    printAligned(lines);
    return 0;
}

int runTree(const Options& options) {
    Ref<IQVRCatalog> catalog = openCatalog(options.target);
    String name;
    catalog->get_name(&name);
    if (options.json) {
        // Each level is the children array of the node above it.
        Json root = {{"name", name.str()}, {"children", Json::array()}};
        std::vector<Json*> levels{&root["children"]};
        walkTree(catalog, 0, [&](IQVRCatalogObject* object, int depth) {
            levels.resize(depth + 1);
            const bool part = typeOf(object) == qvrPart;
            Json node = {{"type", part ? "part" : "chapter"},
                         {"name", nameOf(object)},
                         {"id", keyOf(object)}};
            if (part)
                node["table"] = tableRefOf(object);
            else
                node["children"] = Json::array();
            levels[depth]->push_back(std::move(node));
            if (!part) levels.push_back(&levels[depth]->back()["children"]);
        });
        printJson(root);
        return 0;
    }
    std::vector<std::vector<std::string>> lines{{name.str()}};
    walkTree(catalog, 1, [&](IQVRCatalogObject* object, int depth) {
        std::vector<std::string> line{std::string(2 * depth, ' ') + nameOf(object)};
        if (typeOf(object) == qvrPart) line.push_back(tableRefOf(object));
        lines.push_back(std::move(line));
    });
    printAligned(lines);
    return 0;
}

namespace {

// A file pointer of the catalog, as the reference walk gives it.
struct FilePointer {
    Ref<IQVRCatalogReference> reference;
    std::uint32_t kind = 0;
    std::string url;      // as its holder keeps it
    std::string absolute; // resolved against its document's base
    std::string path;     // the local file; empty for a file on the web
    std::string owner;    // how a message names the object that owns it
    // Links and order targets point at no file; their pointers are listed all the same.
    bool carriesFile() const { return kind != qvrLink && kind != qvrOrderTarget; }
    bool exists() const {
        std::error_code ignored;
        return !path.empty() && fs::exists(path, ignored);
    }
};

const char* pointerKind(std::uint32_t kind) {
    switch (kind) {
    case qvrPart: return "table";
    case qvrImage: return "image";
    case qvrLink: return "link";
    case qvrOrderTarget: return "order target";
    case qvrDocument: return "document";
    case qvrReferencedFiles: return "view file";
    case qvrRefColumn: return "link cell";
    case qvrView: return "drawing";
    case qvrConstView: return "recipe";
    default: return "file";
    }
}

std::string describeOwner(IQVRCatalogObject* owner) {
    switch (typeOf(owner)) {
    case qvrCatalog: return "catalog";
    case qvrPart: return "part \"" + nameOf(owner) + "\"";
    case qvrChapter: return "chapter \"" + nameOf(owner) + "\"";
    case qvrSupplier: return "supplier \"" + nameOf(owner) + "\"";
    case qvrTable: return "the table";
    case qvrView:
    case qvrConstView: {
        String name;
        query<IQVRTableViewObject>(owner)->get_viewName(&name);
        return "view \"" + name.str() + "\"";
    }
    default: return "column \"" + nameOf(owner) + "\"";
    }
}

// Every file pointer of the catalog and of its tables (which the walk opens).
std::vector<FilePointer> filePointers(IQVRCatalog* catalog, const std::string& where) {
    Ref<IQVRCatalogObjectList> list;
    need(catalog->getReferencedFiles(VARIANT_TRUE, &list), where);
    std::vector<FilePointer> pointers;
    // The walk lists the pointers inside a table right ahead of the table's own: those learn
    // the table's file when it comes.
    std::vector<std::size_t> inTable;
    std::set<std::string> partsListed;
    for (Ref<IQVRCatalogObject> item : *list) {
        FilePointer pointer;
        pointer.reference = query<IQVRCatalogReference>(item);
        if (!pointer.reference) continue;
        String url, absolute;
        Ref<IQVRCatalogObject> owner;
        pointer.reference->get_kind(&pointer.kind);
        pointer.reference->get_url(&url);
        pointer.reference->get_absoluteUrl(&absolute);
        pointer.reference->get_owner(&owner);
        pointer.url = url.str();
        pointer.absolute = absolute.str();
        pointer.path = localPath(pointer.absolute);
        pointer.owner = describeOwner(owner);
        if (pointer.kind == qvrPart) {
            for (const std::size_t i : inTable) pointers[i].owner += " in " + pointer.url;
            inTable.clear();
            partsListed.insert(keyOf(owner));
        } else if (typeOf(owner) >= qvrTable) {
            inTable.push_back(pointers.size());
        }
        pointers.push_back(std::move(pointer));
    }
    // A table that does not open is not in the walk's list; its pointer is one all the same.
    String base;
    catalog->get_baseUrl(&base);
    for (const Ref<IQVRCatalogPart>& part : partsOf(catalog)) {
        const std::string reference = tableRefOf(part);
        if (reference.empty() || partsListed.count(keyOf(part))) continue;
        FilePointer pointer;
        pointer.kind = qvrPart;
        pointer.url = reference;
        pointer.absolute = localPath(reference).empty() || fs::path(reference).is_absolute()
                               ? reference
                               : base.str() + reference;
        pointer.path = localPath(pointer.absolute);
        pointer.owner = describeOwner(part);
        pointers.push_back(std::move(pointer));
    }
    return pointers;
}

const char* stateOf(const FilePointer& pointer) {
    if (!pointer.carriesFile()) return "no file";
    if (pointer.path.empty()) return "web";
    return pointer.exists() ? "ok" : "missing";
}

} // namespace

int runFiles(const Options& options) {
    Ref<IQVRCatalog> catalog = openCatalog(options.target);
    const std::vector<FilePointer> pointers = filePointers(catalog, options.target);
    int status = 0;
    Json list = Json::array();
    std::vector<std::vector<std::string>> lines{{"KIND", "FILE", "STATE", "OWNER"}};
    for (const FilePointer& pointer : pointers) {
        if (std::string(stateOf(pointer)) == "missing") status = 1;
        list.push_back({{"kind", pointerKind(pointer.kind)},
                        {"url", pointer.url},
                        {"absoluteUrl", pointer.absolute},
                        {"state", stateOf(pointer)},
                        {"owner", pointer.owner}});
        lines.push_back({pointerKind(pointer.kind), pointer.url, stateOf(pointer), pointer.owner});
    }
    if (options.json)
        printJson(list);
    else
        printAligned(lines);
    return status;
}

namespace {

struct Problem {
    std::string place, message;
};

struct CheckReport {
    std::vector<Problem> problems;
    std::size_t tables = 0, rows = 0, cells = 0, files = 0;
};

// Reads every value of a table, computing each calculated cell; each value the library refuses
// is a problem at its place.
void checkTable(IQVRCatalogTable* table, const std::string& where, CheckReport& report) {
    const std::vector<Column> columns = columnsOf(table);
    const std::vector<Ref<IQVRTableInfoCell>> rows = rowsOf(table);
    ++report.tables;
    report.rows += rows.size();
    for (const Ref<IQVRTableInfoCell>& row : rows) {
        for (const Column& column : columns) {
            if (column.kind != ColumnKind::Plain && column.kind != ColumnKind::Calculated) continue;
            report.cells += column.kind == ColumnKind::Calculated;
            try {
                valueAt(column, row, where);
            } catch (const Failure& failure) {
                report.problems.push_back({failure.place, failure.message});
            }
        }
    }
}

CheckReport checkCatalog(const std::string& path) {
    CheckReport report;
    Ref<IQVRCatalog> catalog;
    try {
        catalog = openCatalog(path);
    } catch (const Failure& failure) {
        report.problems.push_back({failure.place, failure.message});
        return report;
    }
    const std::vector<Ref<IQVRCatalogPart>> parts = partsOf(catalog);
    Progress progress("checking " + path, parts.size());
    for (const Ref<IQVRCatalogPart>& part : parts) {
        progress.advance();
        if (tableRefOf(part).empty()) continue;
        const std::string where = path + ": " + describePart(part);
        Ref<IQVRCatalogTable> table;
        const HRESULT hr = part->getTable(0, &table);
        if (hr != S_OK)
            report.problems.push_back({where, libraryMessage(hr)});
        else
            checkTable(table, where, report);
    }
    try {
        for (const FilePointer& pointer : filePointers(catalog, path)) {
            // A table that does not load is reported above; a web address is not followed.
            if (!pointer.carriesFile()) continue;
            ++report.files;
            if (pointer.kind != qvrPart && !pointer.path.empty() && !pointer.exists())
                report.problems.push_back({path + ": " + pointerKind(pointer.kind) + " \"" +
                                               pointer.url + "\" of " + pointer.owner,
                                           "no such file " + pointer.path});
        }
    } catch (const Failure& failure) {
        report.problems.push_back({failure.place, failure.message});
    }
    return report;
}

void printReport(const CheckReport& report, bool json) {
    if (json) {
        Json problems = Json::array();
        for (const Problem& problem : report.problems)
            problems.push_back({{"place", problem.place}, {"message", problem.message}});
        printJson({{"tables", report.tables},
                   {"rows", report.rows},
                   {"computedCells", report.cells},
                   {"files", report.files},
                   {"problems", problems}});
        return;
    }
    for (const Problem& problem : report.problems)
        std::cout << problem.place << ": " << problem.message << '\n';
    std::cout << report.problems.size() << (report.problems.size() == 1 ? " problem" : " problems")
              << " in " << report.tables << " tables, " << report.rows << " rows, " << report.cells
              << " computed cells, " << report.files << " files\n";
}

} // namespace

int runCheck(const Options& options) {
    const CheckReport report = checkCatalog(options.target);
    printReport(report, options.json);
    return report.problems.empty() ? 0 : 1;
}

int runCopy(const Options& options) {
    const fs::path destination = fs::path(absolutePath(options.destination));
    std::error_code error;
    if (fs::exists(destination, error) &&
        (!fs::is_directory(destination, error) || !fs::is_empty(destination, error)))
        throw Failure(options.destination, "exists and is not an empty folder");
    Ref<IQVRCatalog> catalog = openCatalog(options.target);
    const std::vector<FilePointer> pointers = filePointers(catalog, options.target);
    // Every file must be there before anything is written.
    std::size_t files = 0;
    for (const FilePointer& pointer : pointers) {
        if (!pointer.carriesFile() || pointer.path.empty()) continue;
        if (!pointer.exists())
            throw Failure(options.target + ": " + pointerKind(pointer.kind) + " \"" + pointer.url +
                              "\" of " + pointer.owner,
                          "no such file " + pointer.path);
        ++files;
    }
    const bool made = !fs::exists(destination, error);
    try {
        // The library carries the files and saves the catalog with its tables into the new
        // folder; the source stays as it was.
        const std::string saved = (destination / fs::path(options.target).filename()).string();
        {
            // Each file carried rewrites its pointer, which the catalog tells.
            Progress progress("copying " + options.target, files);
            ProgressListener listening(progress, catalog, nullptr);
            need(RelocateCatalog(catalog, destination.string() + "/",
                                 fs::path(options.target).filename().string(), VARIANT_FALSE),
                 options.destination);
        }
        catalog = nullptr;
        const CheckReport report = checkCatalog(saved);
        if (!report.problems.empty()) {
            printReport(report, false);
            throw Failure(saved, "the copy does not check");
        }
        std::cout << "copied " << options.target << " with " << files << " files into "
                  << options.destination << '\n';
    } catch (const Failure&) {
        // A copy that did not come out whole is not left behind as if it had.
        if (made) fs::remove_all(destination, error);
        throw;
    }
    return 0;
}

} // namespace qvrcat
