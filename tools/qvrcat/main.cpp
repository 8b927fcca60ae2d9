// qvrcat: looks into catalogs and their tables, computes, checks, copies, and moves tables to and
// from CSV and JSON. Exit status: 0 done, 1 a problem found or an operation refused, 2 a usage
// error. Messages go to standard error, one line each, naming the file and the place.
#include <cstdio>
#include <iostream>
#include <map>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "model.h"

using namespace qvrcat;

namespace {

// What a command works on, as its first arguments.
enum class Subject { Catalog, Table, Own };

struct Command {
    const char* name;
    const char* help;
    int (*run)(const Options&);
    Subject subject;
    bool readsJson; // a read command: --json for scripts
    // Declares the arguments after the subject (all of them for Subject::Own); may be null.
    void (*declare)(CLI::App&, Options&);
};

// The arguments that name a table: a part of a catalog, or a table file.
void tableArguments(CLI::App& command, Options& options) {
    command
        .add_option("PART-OR-FILE", options.target,
                    "a table file, or with --catalog a part: its id, its name or its table file")
        ->required();
    command.add_option("-c,--catalog", options.catalog, "the catalog of the part");
}

const Command commands[] = {
    {"info", "The catalog's name, version, language, and counts of its contents", runInfo,
     Subject::Catalog, true, nullptr},
    {"tree", "The chapters and parts of a catalog with their table files", runTree,
     Subject::Catalog, true, nullptr},
    {"table", "A table's rows by its columns, with the computed values", runTable, Subject::Table,
     true, nullptr},
    {"calc", "The value of a column at the given rows", runCalc, Subject::Table, true,
     [](CLI::App& c, Options& o) {
         c.add_option("COLUMN", o.column, "the column's name")->required();
         c.add_option("ROW", o.rows, "the rows' keys")->required();
     }},
    {"freeze", "Replaces calculated columns by plain columns of their values, and saves the table",
     runFreeze, Subject::Table, false,
     [](CLI::App& c, Options& o) {
         c.add_option("COLUMN", o.column, "only this calculated column");
     }},
    {"files", "Every file the catalog and its tables point at, and whether it is there", runFiles,
     Subject::Catalog, true, nullptr},
    {"copy", "Copies a catalog with all its files into a new folder, and checks the copy", runCopy,
     Subject::Catalog, false,
     [](CLI::App& c, Options& o) {
         c.add_option("DEST", o.destination, "the new folder (absent or empty)")->required();
     }},
    {"check",
     "Loads the catalog and every table, computes every calculated cell, looks for every file, "
     "and reports each problem",
     runCheck, Subject::Catalog, true, nullptr},
    {"export", "Writes a table as CSV or JSON: a column per column, a row per row", runExport,
     Subject::Table, false,
     [](CLI::App& c, Options& o) {
         c.add_flag("--csv", o.csv, "comma-separated values")
             ->excludes(c.add_flag("--json", o.json, "JSON: the columns and an object per row"));
         c.add_flag("--computed", o.computed, "also the const and calculated columns' values");
         c.add_option("-o,--output", o.output, "the file to write (standard output by default)");
         c.callback([&o] {
             if (!o.csv && !o.json) throw CLI::RequiredError("--csv or --json");
         });
     }},
    {"import",
     "Creates or updates a table's rows and cells from a CSV or JSON file; nothing changes when a "
     "value is refused",
     runImport, Subject::Own, false,
     [](CLI::App& c, Options& o) {
         c.add_option("FILE", o.input, "the file: .csv or .json")->required();
         tableArguments(c, o);
         c.add_flag("--csv", o.csv, "read FILE as CSV whatever its name")
             ->excludes(c.add_flag("--json", o.json, "read FILE as JSON whatever its name"));
     }},
};

void declare(const Command& command, CLI::App& sub, Options& options) {
    if (command.subject == Subject::Catalog)
        sub.add_option("CATALOG", options.target, "the catalog file")->required();
    if (command.subject == Subject::Table) tableArguments(sub, options);
    if (command.declare) command.declare(sub, options);
    if (command.readsJson)
        sub.add_flag("--json", options.json, "JSON for scripts instead of aligned text");
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"qvrcat: looks into catalogs and tables, computes, checks, copies, exports and "
                 "imports.\nExit status: 0 done, 1 a problem found or refused, 2 a usage error."};
    app.name("qvrcat");
    app.require_subcommand(1);
    Options options;
    std::map<CLI::App*, const Command*> chosen;
    for (const Command& command : commands) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        declare(command, *sub, options);
        chosen[sub] = &command;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        return status == 0 ? 0 : 2;
    }
    try {
        for (CLI::App* sub : app.get_subcommands()) return chosen[sub]->run(options);
    } catch (const Failure& failure) {
        std::cout.flush();
        std::cerr << "qvrcat: " << failure.what() << '\n';
        return 1;
    } catch (const std::exception& failure) {
        std::cerr << "qvrcat: " << failure.what() << '\n';
        return 1;
    }
    return 2;
}
