// Per-row costs of a table of N rows by 10 columns and a calculated column, for N = 10,000 and
// 100,000, each set beside plain libxml2 doing the same work in the same run:
//   build     every cell made by the table and appended to its column, against the same document
//             built with libxml2 calls (goal: within 5 times);
//   save      the model's save of the loaded table against xmlSaveFormatFileEnc of the plain
//             parse of the same file (goal: 0.8 of libxml2's throughput or better, i.e. at most
//             1.25 times its time);
//   save built the same for the table the build made, against the plain build. Its cells lie in
//             memory in the order they were made, row by row, while the file lists them column
//             by column: each cell the walk writes is on another page, on both sides alike. Its
//             growth has no goal of its own;
//   load      the model's load against libxml2 parsing the same file with the same options
//             (no blanks, no network, short texts kept in their node, no registration of ids)
//             (goal as for save);
//   memory    heap held after the load against the heap of the plain parse (goal: 1.2 times);
//   get_item  a row object found by key in the unique column's child list, 5,000 keys scattered,
//             per lookup;
//   freeze    the calculated column frozen, against a hand-written pipeline over the plain
//             document: read the row's three operand texts, paste them into the formula, evaluate
//             the text with the formula engine, write the result cell (goal: within 2 times);
//   calculate the calculated column by key, by index in order and by index in a scattered
//             order, each against the same pipeline without the write, its rows and cells found
//             in the same orders through hash tables made beforehand (goal: within 2 times);
// Last, the growth from 10,000 to 100,000 rows of every per-row figure (linear: 10; goal: 12),
// with plain libxml2's own growth beside it where it does the same work.
// Run with GLIBC_TUNABLES=glibc.malloc.hugetlb=1, glibc's allocator asks for large pages, for both
// sides alike: at 100,000 rows a table's nodes span some 600 MB, whose page tables no longer stay
// in the caches, so that a read of a node that misses the caches waits on a walk of the page
// tables too, which a table of 10,000 rows is spared. The first line says which pages are used.
// Times are processor time, each the best of several rounds, the rounds at the two sizes taking
// turns; memory is what malloc holds. Each timed phase starts on a heap with nothing free in it
// and with caches that hold nothing of the table (see cleanStart), and each save makes its file
// afresh, so that no phase is timed with work an earlier one left behind.
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>

#include <qvr/table.h>

#include "cpu_time.h"
#include "table_data.h"

#include "vbscript/parse_cache.h"
#include "vbscript/script_engine.h"

using namespace qvr;
using namespace qvr::bench;

namespace {

constexpr int kColumns = 10;
constexpr const char* kFormula = "Col1 * Col2 + Col3";
// Row objects looked up by key in each round.
constexpr int kLookups = 5000;

// Reads and writes a buffer of four times the processor's last cache, leaving none of what came
// before in the caches or the address translation buffers.
void evictCaches() {
    static std::vector<unsigned char> sweep(std::size_t(128) << 20, 1);
    unsigned sum = 0;
    for (std::size_t i = 0; i < sweep.size(); i += 64) sum += sweep[i]++;
    static volatile unsigned sink;
    sink = sink + sum;
}

// The clock started on a clean machine: no phase pays for, or profits from, what the one before
// it left behind.
// - The heap holds nothing free. Without it the figures measure the allocator's state: glibc
//   merges freed small blocks only at a later large request, which the next phase then pays for,
//   while a phase that finds a heap full of freed blocks of its own sizes allocates faster than
//   on fresh memory. The plain build alone took from 0.23 to 1.55 us per cell depending only on
//   what had been freed before it.
// - The caches hold nothing of the table. Without it a phase at 10,000 rows finds much of what
//   the phase before it read (the load, the lookup tables' making) still in a 32 MB cache, and
//   one at 100,000 rows finds none: the growth between them then measures the cache's size
//   against the table's, not the work per row.
double cleanStart() {
    malloc_trim(0);
    evictCaches();
    return cpuNow();
}

std::size_t heapInUse() {
    return mallinfo2().uordblks;
}

double asDouble(const Variant& value) {
    Variant number;
    changeType(&number, value, LCID_EN_US, 0, VT_R8);
    return number.vt() == VT_R8 ? number.r8() : -1;
}

// What the formula gives at row r.
double expectedAt(int r) {
    return (r * 0.5 + 1) * (r + 2) + (r * 0.5 + 3);
}

// Row numbers in a fixed scattered order.
std::vector<int> scattered(int rows) {
    std::vector<int> order(static_cast<std::size_t>(rows));
    for (int r = 0; r < rows; ++r) order[static_cast<std::size_t>(r)] = r;
    std::uint64_t state = 0x9E3779B97F4A7C15u;
    for (std::size_t i = order.size(); i > 1; --i) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        std::swap(order[i - 1], order[(state >> 33) % i]);
    }
    return order;
}

// The plain document: what the model writes, made with libxml2 calls alone.
xmlDocPtr buildPlain(int rows) {
    xmlDocPtr doc = plainTable(rows, kColumns);
    xmlNodePtr calculated =
        xmlNewChild(xmlDocGetRootElement(doc), nullptr, BAD_CAST "ColumnCalc", nullptr);
    xmlSetProp(calculated, BAD_CAST "expression", BAD_CAST kFormula);
    return doc;
}

// Parsed as the library parses: streamed from the file, no blanks, no network, short texts kept
// in their node, ids not registered.
int readFile(void* file, char* buffer, int length) {
    return static_cast<int>(
        std::fread(buffer, 1, static_cast<std::size_t>(length), static_cast<std::FILE*>(file)));
}
int closeFile(void* file) {
    return std::fclose(static_cast<std::FILE*>(file));
}
xmlDocPtr parsePlain(const std::string& path) {
    xmlParserCtxtPtr context =
        xmlCreateIOParserCtxt(nullptr, nullptr, &readFile, &closeFile,
                              std::fopen(path.c_str(), "rb"), XML_CHAR_ENCODING_NONE);
    xmlCtxtUseOptions(context, XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT);
    context->loadsubset |= XML_SKIP_IDS;
    xmlParseDocument(context);
    xmlDocPtr doc = context->myDoc;
    xmlFreeParserCtxt(context);
    return doc;
}

// The freeze by hand over the plain document: the operand cells walked in step, their texts
// pasted into the formula, the text evaluated, the value written as a cell of a new column.
void freezePlain(xmlDocPtr doc, int rows) {
    xmlNodePtr root = xmlDocGetRootElement(doc);
    std::vector<xmlNodePtr> operands; // the first cells of Col1, Col2, Col3
    xmlNodePtr calculated = nullptr;
    int index = 0;
    for (xmlNodePtr column = root->children; column; column = column->next) {
        if (xmlStrEqual(column->name, BAD_CAST "ColumnCalc")) calculated = column;
        if (!xmlStrEqual(column->name, BAD_CAST "Column")) continue;
        if (index >= 1 && index <= 3) operands.push_back(column->children);
        ++index;
    }
    xmlNodePtr frozen = xmlNewNode(nullptr, BAD_CAST "Column");
    xmlAddPrevSibling(calculated, frozen);
    vbscript::ScriptEngine engine;
    vbscript::ScriptException error;
    for (int r = 0; r < rows; ++r) {
        std::string texts[3];
        for (std::size_t k = 0; k < 3; ++k) {
            xmlChar* content = xmlNodeGetContent(operands[k]);
            texts[k] = reinterpret_cast<const char*>(content);
            xmlFree(content);
        }
        xmlChar* idref = xmlGetProp(operands[0], BAD_CAST "idref");
        const String text(texts[0] + " * " + texts[1] + " + " + texts[2]);
        Variant value;
        engine.evaluate(text, &value, &error);
        xmlNodePtr cell =
            xmlNewTextChild(frozen, nullptr, BAD_CAST "Row", BAD_CAST textOf(value).c_str());
        xmlSetProp(cell, BAD_CAST "idref", idref);
        xmlFree(idref);
        if (asDouble(value) != expectedAt(r)) std::printf("plain freeze differs at %d\n", r);
        for (auto& cell : operands) cell = cell->next;
    }
    xmlUnlinkNode(calculated);
    xmlFreeNode(calculated);
}

// Rows calculated by hand over the plain document in the given order: each row found by its key
// (or its position), its id read, its operand cells found by the id, their texts pasted into the
// formula and the text evaluated. The rows and cells are found through hash tables made
// beforehand, as the model's lookup tables are made before its figures are taken. Out of order,
// every row is a walk through memory here as in the model: this is the yardstick for it.
double calculatePlain(xmlDocPtr doc, const std::vector<int>& order,
                      const std::vector<std::string>& keys, bool byKey) {
    std::unordered_map<std::string, xmlNodePtr> rowsByKey;
    std::vector<xmlNodePtr> rowsInOrder;
    std::unordered_map<std::string, std::array<xmlNodePtr, 3>> operandsById;
    int index = 0;
    for (xmlNodePtr column = xmlDocGetRootElement(doc)->children; column; column = column->next) {
        if (xmlStrEqual(column->name, BAD_CAST "ColumnUnique")) {
            for (xmlNodePtr row = column->children; row; row = row->next) {
                rowsInOrder.push_back(row);
                rowsByKey.emplace(reinterpret_cast<const char*>(row->children->content), row);
            }
        }
        if (!xmlStrEqual(column->name, BAD_CAST "Column")) continue;
        if (index >= 1 && index <= 3) {
            for (xmlNodePtr cell = column->children; cell; cell = cell->next) {
                xmlChar* idref = xmlGetProp(cell, BAD_CAST "idref");
                operandsById[reinterpret_cast<const char*>(idref)]
                            [static_cast<std::size_t>(index - 1)] = cell;
                xmlFree(idref);
            }
        }
        ++index;
    }
    vbscript::ScriptEngine engine;
    vbscript::ScriptException error;
    vbscript::ParseCache::clear();
    const double start = cleanStart();
    int wrong = 0;
    for (int r : order) {
        const auto at = static_cast<std::size_t>(r);
        xmlNodePtr row = byKey ? rowsByKey.find(keys[at])->second : rowsInOrder[at];
        xmlChar* id = xmlGetProp(row, BAD_CAST "id");
        const auto& cells = operandsById.find(reinterpret_cast<const char*>(id))->second;
        xmlFree(id);
        std::string texts[3];
        for (std::size_t k = 0; k < 3; ++k) {
            xmlChar* content = xmlNodeGetContent(cells[k]);
            texts[k] = reinterpret_cast<const char*>(content);
            xmlFree(content);
        }
        Variant value;
        engine.evaluate(String(texts[0] + " * " + texts[1] + " + " + texts[2]), &value, &error);
        if (asDouble(value) != expectedAt(r)) ++wrong;
    }
    const double seconds = secondsSince(start);
    if (wrong) std::printf("plain calculate: %d rows wrong\n", wrong);
    return seconds;
}

struct Figures {
    // seconds for all rows (lookups for getItem), bytes for memory
    double build = 0, save = 0, load = 0, memory = 0, saveLoaded = 0;
    double byKey = 0, byIndex = 0, byScattered = 0, getItem = 0, freeze = 0;
    double plainBuild = 0, plainSave = 0, plainLoad = 0, plainMemory = 0, plainFreeze = 0;
    double plainSaveLoaded = 0;
    double plainByKey = 0, plainByIndex = 0, plainByScattered = 0;
};

void keepBest(double& best, double value) {
    best = best == 0 ? value : std::min(best, value);
}

Ref<IQVRCatalogTable> buildModel(int rows) {
    std::vector<Ref<IQVRTableColumn>> columns;
    Ref<IQVRCatalogTable> table = tableWithColumns(kColumns, &columns);
    Ref<IQVRTableCalculatedColumn> calculated;
    table->createCalculatedColumn(qvrDataTypeFloat, "Volume", kFormula, "", "", "", VARIANT_TRUE,
                                  &calculated);
    table->appendChild(calculated, nullptr);
    for (int r = 0; r < rows; ++r) {
        const String key(keyOfRow(r));
        for (int c = 0; c < kColumns; ++c) {
            Ref<IQVRTableCell> cell;
            table->createCell(key, valueAt(r, c), &cell);
            if (columns[static_cast<std::size_t>(c)]->appendChild(cell, nullptr) != S_OK)
                std::printf("append failed\n");
        }
    }
    return table;
}

// Calculates every row named by `name(r)` for r in `order`, checking each value.
template <class Name>
double calculateAll(IQVRTableCalculatedColumn* column, const std::vector<int>& order, Name&& name) {
    const double start = cleanStart();
    int wrong = 0;
    for (int r : order) {
        Variant value;
        if (column->calculate(name(r), &value) != S_OK || asDouble(value) != expectedAt(r)) ++wrong;
    }
    const double seconds = secondsSince(start);
    if (wrong) std::printf("calculate: %d rows wrong\n", wrong);
    return seconds;
}

void round(int rows, Figures& f) {
    // Named for the process: runs side by side must not write over each other's file.
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("qvr-scale-bench-" + std::to_string(::getpid()) + ".xml"))
                                 .string();
    const std::string again = path + ".again.xml";
    const std::vector<int> inOrder = [&] {
        std::vector<int> order(static_cast<std::size_t>(rows));
        for (int r = 0; r < rows; ++r) order[static_cast<std::size_t>(r)] = r;
        return order;
    }();
    const std::vector<int> mixed = scattered(rows);

    // Plain libxml2: build and save.
    double start = cleanStart();
    xmlDocPtr plain = buildPlain(rows);
    keepBest(f.plainBuild, secondsSince(start));
    start = cleanStart();
    xmlSaveFormatFileEnc(path.c_str(), plain, "UTF-8", 1);
    keepBest(f.plainSave, secondsSince(start));
    xmlFreeDoc(plain);

    // The model: build, save, load (with its heap).
    start = cleanStart();
    Ref<IQVRCatalogTable> built = buildModel(rows);
    keepBest(f.build, secondsSince(start));
    VARIANT_BOOL ok = VARIANT_FALSE;
    // Both saves make their file afresh: taking away the plain file is no part of saving.
    std::filesystem::remove(path);
    start = cleanStart();
    built->saveAs(Variant(path), &ok);
    keepBest(f.save, secondsSince(start));
    built = nullptr;

    // Both loads of the same file, one after the other, each with the heap it adds.
    std::size_t heap = heapInUse();
    start = cleanStart();
    plain = parsePlain(path);
    keepBest(f.plainLoad, secondsSince(start));
    keepBest(f.plainMemory, static_cast<double>(heapInUse() - heap));
    start = cleanStart();
    xmlSaveFormatFileEnc(again.c_str(), plain, "UTF-8", 1);
    keepBest(f.plainSaveLoaded, secondsSince(start));
    std::filesystem::remove(again);
    std::vector<std::string> keyTexts;
    for (int r = 0; r < rows; ++r) keyTexts.push_back(keyOfRow(r));
    keepBest(f.plainByKey, calculatePlain(plain, mixed, keyTexts, true));
    keepBest(f.plainByIndex, calculatePlain(plain, inOrder, keyTexts, false));
    keepBest(f.plainByScattered, calculatePlain(plain, mixed, keyTexts, false));
    start = cleanStart();
    freezePlain(plain, rows);
    keepBest(f.plainFreeze, secondsSince(start));
    xmlFreeDoc(plain);
    heap = heapInUse();
    start = cleanStart();
    Ref<IQVRCatalogTable> table;
    CreateCatalogTable(&table);
    table->load(Variant(path), 0, &ok);
    keepBest(f.load, secondsSince(start));
    keepBest(f.memory, static_cast<double>(heapInUse() - heap));
    if (ok != VARIANT_TRUE) std::printf("load failed\n");
    start = cleanStart();
    table->saveAs(Variant(again), &ok);
    keepBest(f.saveLoaded, secondsSince(start));
    std::filesystem::remove(again);

    // Rows by key and index. Each pass compiles its texts afresh.
    Ref<IQVRTableCalculatedColumn> volume = calculatedColumn(table);
    std::vector<Variant> keys;
    for (int r = 0; r < rows; ++r) keys.emplace_back(keyOfRow(r));
    auto byKey = [&](int r) { return keys[static_cast<std::size_t>(r)]; };
    auto byIndex = [](int r) { return Variant(static_cast<std::int32_t>(r + 1)); };
    // The first call after a load builds the lookup tables: paid once, outside the figures.
    Variant first;
    volume->calculate(keys[0], &first);
    vbscript::ParseCache::clear();
    keepBest(f.byKey, calculateAll(volume, mixed, byKey));
    vbscript::ParseCache::clear();
    keepBest(f.byIndex, calculateAll(volume, inOrder, byIndex));
    vbscript::ParseCache::clear();
    keepBest(f.byScattered, calculateAll(volume, mixed, byIndex));

    // Row objects by key from the unique column's children.
    Ref<IQVRTableUniqueColumn> unique;
    table->get_uniqueColumn(&unique);
    Ref<IQVRCatalogObjectList> list;
    unique->get_childNodes(&list);
    // The list remembers where its keys stand from its second lookup on: paid once, outside.
    Ref<IQVRCatalogObject> item;
    list->get_item(keys[0], &item);
    list->get_item(keys[0], &item);
    const std::vector<int> sample(mixed.begin(), mixed.begin() + kLookups);
    start = cleanStart();
    int missed = 0;
    for (int r : sample) {
        String key;
        if (list->get_item(keys[static_cast<std::size_t>(r)], &item) != S_OK ||
            item->get_key(&key) != S_OK || key != keys[static_cast<std::size_t>(r)].str())
            ++missed;
    }
    keepBest(f.getItem, secondsSince(start));
    if (missed) std::printf("get_item: %d keys missed\n", missed);
    list = nullptr;
    unique = nullptr;
    volume = nullptr;

    vbscript::ParseCache::clear();
    start = cleanStart();
    const HRESULT hr = table->freezeCalculatedColumns(&ok);
    keepBest(f.freeze, secondsSince(start));
    if (hr != S_OK || ok != VARIANT_TRUE) std::printf("freeze failed: %08x\n", hr);
    std::filesystem::remove(path);
}

struct Ratio {
    const char* label;
    double Figures::*model;
    double Figures::*plain; // null: no plain figure
    double goal;            // the ratio to stay within; 0: none
    const char* unit;       // per what
    bool growthGoal = true; // whether its growth is held to the goal
};

constexpr Ratio kRatios[] = {
    {"build", &Figures::build, &Figures::plainBuild, 5, "cell"},
    {"save", &Figures::saveLoaded, &Figures::plainSaveLoaded, 1.25, "cell"},
    {"save built", &Figures::save, &Figures::plainSave, 1.25, "cell", false},
    {"load", &Figures::load, &Figures::plainLoad, 1.25, "cell"},
    {"memory", &Figures::memory, &Figures::plainMemory, 1.2, "cell"},
    {"freeze", &Figures::freeze, &Figures::plainFreeze, 2, "row"},
    {"calc key", &Figures::byKey, &Figures::plainByKey, 2, "row"},
    {"calc index", &Figures::byIndex, &Figures::plainByIndex, 2, "row"},
    {"calc scattered", &Figures::byScattered, &Figures::plainByScattered, 2, "row"},
    {"get_item(key)", &Figures::getItem, nullptr, 0, "lookup"},
};

} // namespace

int main() {
    constexpr const char* kLargePages = "glibc.malloc.hugetlb=1";
    const char* tunables = std::getenv("GLIBC_TUNABLES");
    const bool largePages = tunables && std::strstr(tunables, kLargePages);
    std::printf("== the heap on %s\n",
                largePages ? "large pages (glibc.malloc.hugetlb=1)" : "the ordinary pages of 4 KB");
    constexpr int kSizes[] = {10000, 100000};
    // Rounds at the two sizes take turns, so that a spell of a busy machine falls on both alike;
    // as many at both, for a best of more rounds would favour one size.
    const int rounds = 5;
    std::vector<Figures> all(std::size(kSizes));
    for (int i = 0; i < rounds; ++i)
        for (std::size_t s = 0; s < std::size(kSizes); ++s) round(kSizes[s], all[s]);
    for (std::size_t s = 0; s < std::size(kSizes); ++s) {
        const int rows = kSizes[s];
        const Figures& f = all[s];
        std::printf("%d rows x %d columns, best of %d rounds\n", rows, kColumns, rounds);
        for (const Ratio& r : kRatios) {
            const double cells =
                r.model == &Figures::getItem
                    ? kLookups
                    : static_cast<double>(rows) * (r.unit[0] == 'c' ? kColumns : 1);
            const bool memory = r.model == &Figures::memory;
            const double each = f.*r.model / cells * (memory ? 1 : 1e6);
            std::printf("  %-15s %9.3f %s/%s", r.label, each, memory ? "B " : "us", r.unit);
            if (r.plain) {
                const double ratio = f.*r.model / (f.*r.plain);
                std::printf("   %6.2f x plain libxml2 (%.3f %s/%s)", ratio,
                            f.*r.plain / cells * (memory ? 1 : 1e6), memory ? "B " : "us", r.unit);
                if (r.goal > 0)
                    std::printf("  goal %.2f: %s", r.goal, ratio <= r.goal ? "met" : "NOT MET");
            }
            std::printf("\n");
        }
    }
    // Beside each, the growth of plain libxml2 doing the same work: the part of a growth that
    // comes from the machine (a larger tree walked through memory) rather than from the model.
    std::printf("100,000 rows against 10,000 (linear: 10, goal: within 12)\n");
    for (const Ratio& r : kRatios) {
        const double growth = all[1].*r.model / (all[0].*r.model);
        std::printf("  %-15s %6.1f  %-7s", r.label, growth,
                    !r.growthGoal  ? ""
                    : growth <= 12 ? "met"
                                   : "NOT MET");
        if (r.plain) {
            const double plain = all[1].*r.plain / (all[0].*r.plain);
            std::printf("  (plain libxml2: %4.1f; the model's beyond it: %.2f)", plain,
                        growth / plain);
        }
        std::printf("\n");
    }
    return 0;
}
