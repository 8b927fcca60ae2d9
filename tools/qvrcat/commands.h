// The commands of qvrcat. Each returns the exit status: 0 done, 1 a problem found or an operation
// refused (a Failure thrown inside means the same).
#pragma once

#include <string>
#include <vector>

namespace qvrcat {

// What the command line gave; each command reads the fields it declared.
struct Options {
    std::string catalog; // --catalog: the catalog whose part PART-OR-FILE names
    std::string target;  // CATALOG, or PART-OR-FILE
    std::string column;
    std::vector<std::string> rows;
    std::string input;       // the file import reads
    std::string destination; // copy's new folder
    std::string output;      // export's file; standard output when empty
    bool json = false, csv = false, computed = false;
};

int runInfo(const Options& options);
int runTree(const Options& options);
int runFiles(const Options& options);
int runCheck(const Options& options);
int runCopy(const Options& options);

int runTable(const Options& options);
int runCalc(const Options& options);
int runFreeze(const Options& options);
int runExport(const Options& options);
int runImport(const Options& options);

} // namespace qvrcat
