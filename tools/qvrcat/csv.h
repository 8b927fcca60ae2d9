// Tables as comma-separated text, the form spreadsheets read and write.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace qvrcat {

// A record of a file and the line it starts on (a quoted field may run over several lines).
struct Record {
    std::size_t line = 0;
    std::vector<std::string> fields;
};

// The records of a CSV text: fields separated by commas, a field in double quotes may hold
// commas, line breaks and doubled quotes; spaces around a field are kept; blank lines are
// skipped; a UTF-8 byte-order mark ahead of the text is dropped. Throws Failure naming `where`
// and the line of a malformed record.
std::vector<Record> readCsv(std::string_view text, const std::string& where);

// A field as a CSV file holds it: in quotes when it has a comma, a quote, a line break or
// spaces at either end, which a reader would otherwise take apart or trim.
std::string csvField(const std::string& value);

} // namespace qvrcat
