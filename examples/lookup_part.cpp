#include <cstdio>
#include <string>

#include <qvr/qvr.h>
#include <qvr/table.h>

using namespace qvr;

// True when the call worked; otherwise prints the library's message.
bool worked(HRESULT hr, const char* what) {
    if (hr == S_OK) return true;
    ErrorInfo info;
    std::printf("%s failed: %s\n", what, GetErrorInfo(&info) ? info.description.c_str() : "");
    return false;
}

std::string nameOf(IQVRCatalogObject* object) {
    Variant name;
    return object->getValue("@name", &name) == S_OK ? name.str().str() : "";
}

int main(int argc, char** argv) {
    if (argc != 3) return 2; // catalog.xml and the id of a part
    VARIANT_BOOL done = VARIANT_FALSE;

    // 1. Load the catalog.
    Ref<IQVRCatalog> catalog;
    CreateCatalog(&catalog);
    if (!worked(catalog->load(Variant(argv[1]), &done), "load")) return 1;

    // 2. Find the part by its id.
    Ref<IQVRCatalogObject> found;
    if (!worked(catalog->findById(argv[2], &found), "findById")) return 1;
    Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(found);
    if (!part) return 1;

    // 3. Its table: loaded from the file that TableRef/URL names, relative to the catalog, and
    //    kept open in the catalog's table cache; the next getTable shares that document.
    Ref<IQVRCatalogTable> table;
    if (!worked(part->getTable(0, &table), "getTable")) return 1;

    // 4. The columns, in document order.
    Ref<IQVRCatalogObjectList> columns;
    table->get_childNodes(&columns);
    Ref<IQVRTableCalculatedColumn> mass;
    Ref<IQVRTableColumn> stock;
    for (Ref<IQVRCatalogObject> column : *columns) {
        QVRObjectType type;
        column->get_objectType(&type);
        std::printf("column %-12s type %d\n", nameOf(column).c_str(), type);
        if (nameOf(column) == "Mass") mass = query<IQVRTableCalculatedColumn>(column);
        if (nameOf(column) == "Stock") stock = query<IQVRTableColumn>(column);
    }
    if (!mass || !stock) return 1;

    // 5. A computed value: the formula with the row's values in place of the column names.
    Variant value, shown;
    if (!worked(mass->calculate(Variant("M8x40"), &value), "calculate")) return 1;
    changeType(&shown, value, LCID_EN_US, 0, VT_BSTR);
    std::printf("Mass of M8x40: %s g\n", shown.str().c_str());

    // 6. Change a cell: the row object finds the row's cell in a column. The change is told
    //    to the catalog's sinks.
    Ref<IQVRTableUniqueColumn> uniqueColumn;
    Ref<IQVRCatalogObjectList> rows;
    Ref<IQVRCatalogObject> row;
    Ref<IQVRTableCellObject> cell;
    table->get_uniqueColumn(&uniqueColumn);
    uniqueColumn->get_childNodes(&rows);
    if (!worked(rows->get_item(Variant("M8x40"), &row), "find the row")) return 1;
    if (!worked(query<IQVRTableInfoCell>(row)->getCell(stock, &cell), "getCell")) return 1;
    if (!worked(query<IQVRTableCell>(cell)->put_value(Variant(250)), "put_value")) return 1;

    // 7. Save: every open table whose part is still in the catalog, then the catalog.
    return worked(catalog->save(&done), "save") ? 0 : 1;
}
