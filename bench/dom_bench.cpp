// Figures of the DOM layer on generated table documents: load and save against plain libxml2 on
// the same file in the same run, and the cost of the lookups the model makes for every row and
// cell, answered from the lookup tables and by plain XPath.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <qvr/dom.h>

#include "platform/dom/indexed_selection.h"

namespace {

using namespace qvr;
using Clock = std::chrono::steady_clock;

constexpr int kColumns = 20;

std::string rowId(int row) {
    char id[32];
    std::snprintf(id, sizeof id, "R1dc9a1e2f5%06x", row);
    return id;
}

std::string rowKey(int row) {
    return "K-" + std::to_string(100000 + row);
}

std::string makeTable(int rows) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vCATTable id=\"T\">\n"
                      "  <ColumnUnique id=\"C0\">\n";
    for (int r = 0; r < rows; ++r)
        xml += "    <RowUnique id=\"" + rowId(r) + "\">" + rowKey(r) + "</RowUnique>\n";
    xml += "  </ColumnUnique>\n";
    for (int c = 1; c <= kColumns; ++c) {
        xml += "  <Column id=\"C" + std::to_string(c) + "\" name=\"col" + std::to_string(c) +
               "\" dataType=\"float\">\n";
        for (int r = 0; r < rows; ++r)
            xml += "    <Row idref=\"" + rowId(r) + "\">" + std::to_string(r * c) + ".5</Row>\n";
        xml += "  </Column>\n";
    }
    xml += "</vCATTable>\n";
    return xml;
}

template <class F>
double seconds(F&& f) {
    const auto start = Clock::now();
    f();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Mean cost in microseconds of selecting each of `xpaths` from `context`.
double lookupMicros(IXMLDOMNode* context, const std::vector<std::string>& xpaths, bool index) {
    dom::IndexedSelection::setEnabled(index);
    int found = 0;
    const double total = seconds([&] {
        for (const auto& xpath : xpaths) {
            Ref<IXMLDOMNode> node;
            if (context->selectSingleNode(xpath, &node) == S_OK) ++found;
        }
    });
    dom::IndexedSelection::setEnabled(true);
    if (found != static_cast<int>(xpaths.size())) std::printf("  (lookups missed!)\n");
    return total * 1e6 / static_cast<double>(xpaths.size());
}

std::vector<std::string> queries(const char* prefix, int rows, int count, bool byKey,
                                 std::mt19937& random) {
    std::vector<std::string> out;
    std::uniform_int_distribution<int> pick(0, rows - 1);
    for (int i = 0; i < count; ++i) {
        const int r = pick(random);
        out.push_back(std::string(prefix) + (byKey ? rowKey(r) : rowId(r)) + "']");
    }
    return out;
}

void run(int rows, const std::filesystem::path& dir) {
    const std::string in = (dir / "table.xml").string();
    const std::string out = (dir / "saved.xml").string();
    {
        const std::string xml = makeTable(rows);
        std::ofstream(in, std::ios::binary) << xml;
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(in)) / 1e6;
    std::printf("%d rows x %d columns, %.1f MB\n", rows, kColumns, megabytes);

    // Plain libxml2: the same options, the same file, the same kind of output. Best of three,
    // alternating with the layer, so that neither gains from a warmer cache.
    Ref<IXMLDOMDocument> doc;
    double plainParse = 1e9, plainSave = 1e9, load = 1e9, save = 1e9;
    for (int round = 0; round < 3; ++round) {
        xmlDocPtr plain = nullptr;
        plainParse = std::min(plainParse, seconds([&] {
                                  plain = xmlReadFile(in.c_str(), nullptr,
                                                      XML_PARSE_NOBLANKS | XML_PARSE_NONET);
                              }));
        plainSave = std::min(
            plainSave, seconds([&] { xmlSaveFormatFileEnc(out.c_str(), plain, "UTF-8", 1); }));
        xmlFreeDoc(plain);
        doc = nullptr;
        CreateDOMDocument(&doc);
        VARIANT_BOOL ok = VARIANT_FALSE;
        load = std::min(load, seconds([&] { doc->load(Variant(in), &ok); }));
        save = std::min(save, seconds([&] { doc->save(Variant(out)); }));
    }
    std::printf("  load  %7.3f s (%5.1f MB/s), libxml2 parse %7.3f s: ratio %.2f\n", load,
                megabytes / load, plainParse, load / plainParse);
    std::printf("  save  %7.3f s (%5.1f MB/s), libxml2 save  %7.3f s: ratio %.2f\n", save,
                megabytes / save, plainSave, save / plainSave);

    std::mt19937 random(7);
    Ref<IXMLDOMNode> column;
    doc->selectSingleNode("/vCATTable/Column[7]", &column);
    Ref<IXMLDOMNode> first;
    const double rowTables = seconds([&] {
        doc->selectSingleNode("/vCATTable/ColumnUnique/RowUnique[. = '" + rowKey(0) + "']", &first);
    });
    const double idTables =
        seconds([&] { column->selectSingleNode("*[@idref = '" + rowId(0) + "']", &first); });
    std::printf("  tables built on first use: rows %.3f s, id/idref %.3f s\n", rowTables, idTables);

    const char* byKey = "/vCATTable/ColumnUnique/RowUnique[. = '";
    const char* byId = "*[@idref = '";
    const int slow = rows > 20000 ? 10 : 40;
    const double keyIndexed = lookupMicros(doc, queries(byKey, rows, 20000, true, random), true);
    const double keyPlain = lookupMicros(doc, queries(byKey, rows, slow, true, random), false);
    const double cellIndexed =
        lookupMicros(column, queries(byId, rows, 20000, false, random), true);
    const double cellPlain = lookupMicros(column, queries(byId, rows, slow, false, random), false);
    std::printf("  row by key:             tables %8.2f us, XPath %10.1f us (x%.0f)\n", keyIndexed,
                keyPlain, keyPlain / keyIndexed);
    std::printf("  cell by row id (column): tables %8.2f us, XPath %10.1f us (x%.0f)\n",
                cellIndexed, cellPlain, cellPlain / cellIndexed);
}

} // namespace

int main(int argc, char** argv) {
    const auto dir =
        std::filesystem::temp_directory_path() / ("qvr-dom-bench-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    std::vector<int> sizes = {10000, 100000};
    if (argc > 1) sizes.assign(1, std::atoi(argv[1]));
    for (int rows : sizes) run(rows, dir);
    std::filesystem::remove_all(dir);
    return 0;
}
