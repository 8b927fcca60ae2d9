// Figures for a table of N rows by 10 columns, for N = 1,000, 10,000 and 100,000:
//   build  every cell made by the table and appended to its column (the column already stands in
//          the table, so each append registers or finds its row by the DOM layer's indexes);
//   read   every cell found from its row object (getCell) and read typed (get_value);
//   save   the document written to a file; load: that file read into a new table.
// Each is also given per cell and as a ratio to building the same document with plain libxml2
// calls in the same run; the growth of plain libxml2's own build and save is given beside. The goal
// is linear growth: the 100,000-row figures within 12 times the 10,000-row ones. Figures are
// processor time, each the best of several runs.
//
// A second table holds every kind with cells: a plain column, a view of drawings and a reference
// column of links, each row with one cell of each kind; beside it, in the same runs, a table of
// three plain columns. Their figures per cell at 1,000 and at 100,000 rows show that drawings and
// links are added, found and removed (the row going with its last cell) at the cost of plain
// cells, and that the cost per cell grows no more with the table than that of plain cells.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <libxml/tree.h>
#include <libxml/xmlsave.h>

#include <qvr/table.h>

#include "cpu_time.h"
#include "table_data.h"

using namespace qvr;
using namespace qvr::bench;

namespace {

constexpr int columnCount = 10;

// The same document as the model writes, made with libxml2 alone: ids and idrefs, a register of
// rows, ten columns of cells.
struct Plain {
    double build = 0, save = 0;
};

Plain withLibxml(int rows, const std::string& path) {
    const auto start = cpuNow();
    xmlDocPtr doc = plainTable(rows, columnCount);
    Plain plain;
    plain.build = secondsSince(start);
    const auto saving = cpuNow();
    xmlSaveFormatFileEnc(path.c_str(), doc, "UTF-8", 1);
    plain.save = secondsSince(saving);
    xmlFreeDoc(doc);
    std::filesystem::remove(path);
    return plain;
}

struct Figures {
    double build = 0, read = 0, save = 0, load = 0, libxml = 0, libxmlSave = 0;
};

Figures run(int rows) {
    Figures f;
    const std::string path =
        (std::filesystem::temp_directory_path() / "qvr-table-bench.xml").string();
    const Plain plain = withLibxml(rows, path);
    f.libxml = plain.build;
    f.libxmlSave = plain.save;

    std::vector<Ref<IQVRTableColumn>> columns;
    Ref<IQVRCatalogTable> table = tableWithColumns(columnCount, &columns);

    auto start = cpuNow();
    for (int r = 0; r < rows; ++r) {
        const String key(keyOfRow(r));
        for (int c = 0; c < columnCount; ++c) {
            Ref<IQVRTableCell> cell;
            table->createCell(key, valueAt(r, c), &cell);
            if (columns[c]->appendChild(cell, nullptr) != S_OK) std::printf("append failed\n");
        }
    }
    f.build = secondsSince(start);

    start = cpuNow();
    Ref<IQVRTableUniqueColumn> unique;
    table->get_uniqueColumn(&unique);
    Ref<IQVRCatalogObjectList> rowList;
    unique->get_childNodes(&rowList);
    std::int32_t found = 0, misread = 0;
    rowList->get_count(&found);
    for (std::int32_t r = 1; r <= found; ++r) {
        Ref<IQVRCatalogObject> item;
        rowList->getItem(r, &item);
        Ref<IQVRTableInfoCell> row = query<IQVRTableInfoCell>(item);
        for (int c = 0; c < columnCount; ++c) {
            Ref<IQVRTableCellObject> cell;
            Variant value;
            if (row->getCell(columns[c], &cell) != S_OK ||
                query<IQVRTableCell>(cell)->get_value(&value) != S_OK ||
                !(value == valueAt(r - 1, c)))
                ++misread;
        }
    }
    f.read = secondsSince(start);
    if (found != rows || misread)
        std::printf("read back %d rows, %d cells differ\n", found, misread);
    rowList = nullptr;

    VARIANT_BOOL ok = VARIANT_FALSE;
    start = cpuNow();
    table->saveAs(Variant(path), &ok);
    f.save = secondsSince(start);

    start = cpuNow();
    Ref<IQVRCatalogTable> loaded;
    CreateCatalogTable(&loaded);
    loaded->load(Variant(path), 0, &ok);
    f.load = secondsSince(start);
    if (ok != VARIANT_TRUE) std::printf("load failed\n");
    std::filesystem::remove(path);
    return f;
}

void print(const char* phase, double seconds, double cells, double libxml) {
    std::printf("  %-6s %8.3f s %7.2f us/cell %7.1f x libxml2\n", phase, seconds,
                seconds / cells * 1e6, seconds / libxml);
}

// The best of `repeats` runs, phase by phase: the least disturbed run tells the cost.
Figures best(int rows, int repeats) {
    Figures b = run(rows);
    for (int i = 1; i < repeats; ++i) {
        const Figures f = run(rows);
        b.build = std::min(b.build, f.build);
        b.read = std::min(b.read, f.read);
        b.save = std::min(b.save, f.save);
        b.load = std::min(b.load, f.load);
        b.libxml = std::min(b.libxml, f.libxml);
        b.libxmlSave = std::min(b.libxmlSave, f.libxmlSave);
    }
    return b;
}

// --- Every kind with cells ----------------------------------------------------------------------

struct KindFigures {
    double build = 0, read = 0, remove = 0;
};

// The cell of row `key` for holder `k`: a value in a plain column (every holder of the baseline),
// a drawing in the view, a link in the reference column. All three hold the same text.
Ref<IQVRCatalogObject> newCellOf(IQVRCatalogTable* table, bool baseline, int k, const String& key,
                                 const String& text) {
    Ref<IQVRCatalogObject> made;
    if (baseline || k == 0) {
        Ref<IQVRTableCell> cell;
        table->createCell(key, Variant(text), &cell);
        made = cell.get();
    } else if (k == 1) {
        Ref<IQVRTableDrawing> drawing;
        table->createDrawing(key, text, &drawing);
        made = drawing.get();
    } else {
        Ref<IQVRTableRefCell> link;
        table->createRefCell(key, text, "Data sheet", "", &link);
        made = link.get();
    }
    return made;
}

std::string textOf(IQVRTableCellObject* cell) {
    String text;
    Variant value;
    if (Ref<IQVRTableCell> plain = query<IQVRTableCell>(cell);
        plain && plain->get_value(&value) == S_OK)
        text = value.str();
    if (Ref<IQVRTableDrawing> drawing = query<IQVRTableDrawing>(cell)) drawing->get_value(&text);
    if (Ref<IQVRTableRefCell> link = query<IQVRTableRefCell>(cell)) link->get_value(&text);
    return text.str();
}

// A table of three holders of cells, each row with a cell in all three: a plain column, a view
// and a reference column, or as the baseline three plain columns. Every cell is added, then found
// from its row and read, then removed (the row going with its last cell).
KindFigures runKinds(int rows, bool baseline) {
    KindFigures f;
    Ref<IQVRCatalogTable> table;
    CreateCatalogTable(&table);
    VARIANT_BOOL ok = VARIANT_FALSE;
    table->create("/tmp/", "Kinds", "en", &ok);
    Ref<IQVRCatalogObject> holders[3];
    for (int k = 0; k < 3; ++k) {
        if (baseline || k == 0) {
            Ref<IQVRTableColumn> column;
            table->createColumn(qvrDataTypeString, "Col" + std::to_string(k), "", "", "",
                                VARIANT_TRUE, &column);
            holders[k] = column.get();
        } else if (k == 1) {
            Ref<IQVRTableView> view;
            table->createView(qvrViewFront, "Front", "", VARIANT_TRUE, &view);
            holders[k] = view.get();
        } else {
            Ref<IQVRTableRefColumn> docs;
            table->createRefColumn(qvrRoleBr, "Docs", "", qvrShowNew, qvrActuateOnRequest,
                                   VARIANT_TRUE, &docs);
            holders[k] = docs.get();
        }
        table->appendChild(holders[k], nullptr);
    }
    const auto textAt = [](int r) { return "drawings/" + keyOfRow(r) + ".pdf"; };

    int failed = 0;
    auto start = cpuNow();
    for (int r = 0; r < rows; ++r) {
        const String key(keyOfRow(r)), text(textAt(r));
        for (int k = 0; k < 3; ++k)
            failed +=
                holders[k]->appendChild(newCellOf(table, baseline, k, key, text), nullptr) != S_OK;
    }
    f.build = secondsSince(start);

    // Each row's three cells, found from the row and read; kept for the removal.
    start = cpuNow();
    std::vector<Ref<IQVRCatalogObject>> rowObjects;
    {
        Ref<IQVRTableUniqueColumn> unique;
        table->get_uniqueColumn(&unique);
        Ref<IQVRCatalogObjectList> list;
        unique->get_childNodes(&list);
        for (Ref<IQVRCatalogObject> row : *list) rowObjects.push_back(row);
    }
    std::vector<Ref<IQVRTableCellObject>> cells[3];
    for (int r = 0; r < static_cast<int>(rowObjects.size()); ++r) {
        Ref<IQVRTableInfoCell> row = query<IQVRTableInfoCell>(rowObjects[r]);
        for (int k = 0; k < 3; ++k) {
            Ref<IQVRTableCellObject> cell;
            row->getCell(holders[k], &cell);
            failed += textOf(cell) != textAt(r);
            cells[k].push_back(cell);
        }
    }
    f.read = secondsSince(start);
    rowObjects.clear();

    // The last two cells of each row go first; the row goes with its first.
    start = cpuNow();
    for (std::size_t r = 0; r < cells[0].size(); ++r)
        for (int k = 2; k >= 0; --k)
            failed += holders[k]->removeChild(cells[k][r], nullptr) != S_OK;
    f.remove = secondsSince(start);
    Ref<IQVRCatalogObjectList> left;
    std::int32_t remaining = -1;
    Ref<IQVRTableUniqueColumn> unique;
    table->get_uniqueColumn(&unique);
    unique->get_childNodes(&left);
    left->get_count(&remaining);
    if (failed || cells[0].size() != static_cast<std::size_t>(rows) || remaining != 0)
        std::printf("kinds: %d failures, %zu rows read, %d rows left\n", failed, cells[0].size(),
                    remaining);
    return f;
}

// The best of `repeats` runs, phase by phase.
KindFigures bestKinds(int rows, bool baseline, int repeats) {
    KindFigures b = runKinds(rows, baseline);
    for (int i = 1; i < repeats; ++i) {
        const KindFigures f = runKinds(rows, baseline);
        for (double KindFigures::*phase :
             {&KindFigures::build, &KindFigures::read, &KindFigures::remove})
            b.*phase = std::min(b.*phase, f.*phase);
    }
    return b;
}

void printKinds() {
    const int sizes[] = {1000, 100000};
    KindFigures kinds[2], plain[2];
    for (int i = 0; i < 2; ++i) {
        const int repeats = sizes[i] > 10000 ? 3 : 5;
        kinds[i] = bestKinds(sizes[i], false, repeats);
        plain[i] = bestKinds(sizes[i], true, repeats);
    }
    std::printf("A plain column, a view and a reference column (a cell, a drawing and a link a row)"
                ", us per cell,\nbeside three plain columns in the same runs:\n");
    std::printf("  %-7s %12s %12s %8s %12s %12s %8s\n", "", "kinds 1,000", "kinds 100k", "growth",
                "plain 1,000", "plain 100k", "growth");
    const auto line = [&](const char* phase, double KindFigures::*p) {
        const double k0 = kinds[0].*p / (sizes[0] * 3.0) * 1e6;
        const double k1 = kinds[1].*p / (sizes[1] * 3.0) * 1e6;
        const double p0 = plain[0].*p / (sizes[0] * 3.0) * 1e6;
        const double p1 = plain[1].*p / (sizes[1] * 3.0) * 1e6;
        std::printf("  %-7s %12.2f %12.2f %8.2f %12.2f %12.2f %8.2f\n", phase, k0, k1, k1 / k0, p0,
                    p1, p1 / p0);
    };
    line("build", &KindFigures::build);
    line("read", &KindFigures::read);
    line("remove", &KindFigures::remove);
    std::printf("(growth: the cost per cell at 100,000 rows over that at 1,000; flat is 1)\n");
}

} // namespace

int main() {
    std::vector<Figures> all;
    const int sizes[] = {1000, 10000, 100000};
    for (int rows : sizes) {
        const Figures f = best(rows, 5);
        const double cells = static_cast<double>(rows) * columnCount;
        std::printf("%d rows x %d columns (%g cells); plain libxml2 build %.3f s (%.2f us/cell)\n",
                    rows, columnCount, cells, f.libxml, f.libxml / cells * 1e6);
        print("build", f.build, cells, f.libxml);
        print("read", f.read, cells, f.libxml);
        print("save", f.save, cells, f.libxml);
        print("load", f.load, cells, f.libxml);
        all.push_back(f);
    }
    const Figures& a = all[1];
    const Figures& b = all[2];
    std::printf("100,000 rows against 10,000 rows (linear: 10, goal: within 12): build %.1f, "
                "read %.1f, save %.1f, load %.1f\n",
                b.build / a.build, b.read / a.read, b.save / a.save, b.load / a.load);
    std::printf("the same for plain libxml2 in the same runs: build %.1f, save %.1f\n",
                b.libxml / a.libxml, b.libxmlSave / a.libxmlSave);
    printKinds();
    return 0;
}
