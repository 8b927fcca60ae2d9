// Figures for calculated columns over tables of 1,000, 10,000 and 100,000 rows with the formula
// "Length * Width + Height" over three columns: calculate for every row by its key, freezing the
// column into a plain one, and, as the lower bound, the same arithmetic in a plain loop over the
// values read once. Cells are found through the DOM layer's indexes, so both model figures should
// grow linearly with the rows. Times are processor time, the best of several runs, so that other
// work on the machine does not blur them.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <qvr/table.h>

#include "cpu_time.h"
#include "table_data.h"
#include "vbscript/parse_cache.h"

using namespace qvr;
using namespace qvr::bench;

namespace {

// A table document of `rows` rows, each with a distinct length, so that no two substituted
// formulas are the same text.
std::string tableText(int rows) {
    std::string rowsText, length, width, height;
    for (int i = 0; i < rows; ++i) {
        const std::string id = "R" + std::to_string(i);
        const std::string ref = "<Row idref=\"" + id + "\">";
        rowsText += "<RowUnique id=\"" + id + "\">K" + std::to_string(i) + "</RowUnique>";
        length += ref + std::to_string(10 + i) + ".5</Row>";
        width += ref + std::to_string(1 + i % 7) + "</Row>";
        height += ref + std::to_string(i % 13) + ".25</Row>";
    }
    auto column = [](const char* id, const char* name, const char* type, const std::string& rows) {
        return std::string("<Column id=\"") + id + "\" dataType=\"" + type + "\" name=\"" + name +
               "\" attrib=\"\">" + rows + "</Column>";
    };
    return "<vCATTable version=\"1.2\"><ColumnUnique id=\"C0\" dataType=\"string\" "
           "name=\"row_id\">" +
           rowsText + "</ColumnUnique>" + column("C1", "Length", "float", length) +
           column("C2", "Width", "int", width) + column("C3", "Height", "float", height) +
           "<ColumnCalc id=\"C4\" expression=\"Length * Width + Height\" dataType=\"float\" "
           "name=\"Volume\" attrib=\"\"/></vCATTable>";
}

Ref<IQVRCatalogTable> loadTable(const std::string& text) {
    Ref<IQVRCatalogTable> table;
    CreateCatalogTable(&table);
    VARIANT_BOOL ok = VARIANT_FALSE;
    table->loadXML(text, "", 0, &ok);
    return table;
}

// The values of column `name` by row, read once through the DOM.
std::vector<double> valuesOf(IQVRCatalogTable* table, const char* name, int rows) {
    Ref<IXMLDOMElement> root;
    table->get_domNode(&root);
    Ref<IXMLDOMNodeList> cells;
    root->selectNodes(String("Column[@name = '") + name + "']/Row", &cells);
    std::vector<double> values(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) {
        Ref<IXMLDOMNode> cell;
        String text;
        cells->get_item(i, &cell);
        cell->get_text(&text);
        values[static_cast<std::size_t>(i)] = std::stod(text.str());
    }
    return values;
}

struct Figures {
    double calculate; // seconds for all rows
    double freeze;    // seconds
    double readOnce;  // seconds to read the three columns' values
    double plainLoop; // seconds for the arithmetic alone
    double checksum;
};

Figures run(int rows) {
    const std::string text = tableText(rows);
    Figures f{};
    // Each run compiles its texts afresh, as the first run does.
    vbscript::ParseCache::clear();

    Ref<IQVRCatalogTable> table = loadTable(text);
    Ref<IQVRTableCalculatedColumn> volume = calculatedColumn(table);
    std::vector<String> keys;
    for (int i = 0; i < rows; ++i) keys.push_back("K" + std::to_string(i));
    double start = cpuNow();
    for (const String& key : keys) {
        Variant value;
        if (volume->calculate(Variant(key), &value) != S_OK) std::printf("calculate failed\n");
        f.checksum += value.r8();
    }
    f.calculate = secondsSince(start);

    start = cpuNow();
    const std::vector<double> length = valuesOf(table, "Length", rows);
    const std::vector<double> width = valuesOf(table, "Width", rows);
    const std::vector<double> height = valuesOf(table, "Height", rows);
    f.readOnce = secondsSince(start);
    start = cpuNow();
    std::vector<double> plain(static_cast<std::size_t>(rows));
    for (std::size_t i = 0; i < plain.size(); ++i) plain[i] = length[i] * width[i] + height[i];
    f.plainLoop = secondsSince(start);
    double plainSum = 0;
    for (double v : plain) plainSum += v;
    if (plainSum != f.checksum) std::printf("values differ: %.17g %.17g\n", plainSum, f.checksum);

    vbscript::ParseCache::clear();
    Ref<IQVRCatalogTable> fresh = loadTable(text);
    VARIANT_BOOL ok = VARIANT_FALSE;
    start = cpuNow();
    const HRESULT hr = fresh->freezeCalculatedColumns(&ok);
    f.freeze = secondsSince(start);
    if (hr != S_OK || ok != VARIANT_TRUE) std::printf("freezing failed: %08x\n", hr);
    return f;
}

// The best of `runs` runs, figure by figure.
Figures best(int rows, int runs) {
    Figures b = run(rows);
    for (int i = 1; i < runs; ++i) {
        const Figures f = run(rows);
        b.calculate = std::min(b.calculate, f.calculate);
        b.freeze = std::min(b.freeze, f.freeze);
        b.readOnce = std::min(b.readOnce, f.readOnce);
        b.plainLoop = std::min(b.plainLoop, f.plainLoop);
    }
    return b;
}

} // namespace

int main() {
    std::printf("formula \"Length * Width + Height\", every row a distinct text; processor time, "
                "best of 3 runs (2 for 100,000 rows)\n");
    double freeze10k = 0;
    for (int rows : {1000, 10000, 100000}) {
        const Figures f = best(rows, rows < 100000 ? 3 : 2);
        std::printf("%7d rows: calculate %.2f us/row (%.3f s), freeze %.3f s (%.2f us/row); "
                    "plain loop %.4f us/row (values read once in %.3f s)\n",
                    rows, f.calculate / rows * 1e6, f.calculate, f.freeze, f.freeze / rows * 1e6,
                    f.plainLoop / rows * 1e6, f.readOnce);
        if (rows == 10000) freeze10k = f.freeze;
        if (rows == 100000 && freeze10k > 0)
            std::printf("freeze 100,000 / 10,000 rows: %.1fx\n", f.freeze / freeze10k);
    }
    return 0;
}
