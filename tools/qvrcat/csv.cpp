#include "csv.h"

#include <csv.h>

#include "model.h"

namespace qvrcat {

namespace {

struct Collector {
    std::vector<Record> records;
    Record current;
};

void onField(void* data, std::size_t length, void* collector) {
    static_cast<Collector*>(collector)->current.fields.emplace_back(
        data ? static_cast<const char*>(data) : "", length);
}

void onRecordEnd(int, void* collector) {
    auto* self = static_cast<Collector*>(collector);
    self->records.push_back(std::move(self->current));
    self->current = Record{};
}

// Every byte belongs to the field: a value's own spaces survive the round trip.
int noSpace(unsigned char) {
    return 0;
}

bool blank(std::string_view line) {
    return line.find_first_not_of("\r\n") == std::string_view::npos;
}

} // namespace

std::vector<Record> readCsv(std::string_view text, const std::string& where) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw Failure(where, "out of memory");
    csv_set_space_func(&parser, noSpace);
    Collector collector;
    std::size_t line = 0;
    // Fed a line at a time, so that each record knows the line it starts on.
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        const std::string_view piece = text.substr(at, end - at);
        ++line;
        if (collector.current.line == 0 && !blank(piece)) collector.current.line = line;
        if (csv_parse(&parser, piece.data(), piece.size(), onField, onRecordEnd, &collector) !=
            piece.size()) {
            csv_free(&parser);
            throw Failure(where, "line " + std::to_string(line) +
                                     ": a quote inside a field that does not start with one");
        }
        at = end;
    }
    const std::size_t started = collector.current.line;
    const int finished = csv_fini(&parser, onField, onRecordEnd, &collector);
    csv_free(&parser);
    if (finished != 0)
        throw Failure(where, "line " + std::to_string(started) + ": a quoted field is not closed");
    return std::move(collector.records);
}

std::string csvField(const std::string& value) {
    const bool quoted = value.find_first_of(",\"\r\n") != std::string::npos ||
                        (!value.empty() && (value.front() == ' ' || value.back() == ' ' ||
                                            value.front() == '\t' || value.back() == '\t'));
    if (!quoted) return value;
    std::string field = "\"";
    for (const char c : value) field += c == '"' ? std::string("\"\"") : std::string(1, c);
    return field + "\"";
}

} // namespace qvrcat
