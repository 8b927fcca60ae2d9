// The demo: what a client of the library does, from an empty folder to a catalog read back.
//
//   1. In a fresh temporary folder it builds a catalog of fasteners: chapters, parts, and for each
//      part a table with plain, const and calculated columns and a few rows; the catalog names
//      its supplier with the ways to order from it, and tells when and where its parts can be
//      ordered.
//   2. It edits the catalog while a listener hears every change, then saves the catalog, which
//      writes the open tables first.
//   3. It loads the files as a new client would and prints the tree, and each part's table with
//      the values its calculated columns compute.
//
// The folder is removed at the end; run with --keep to look at the files.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <qvr/qvr.h>
#include <qvr/table.h>

#include "counted.h"
#include "object_names.h"

using namespace qvr;
using namespace qvr::tools;

namespace {

// --- What the demo builds ------------------------------------------------------------------

enum class Kind { Plain, Const, Calculated };

// The columns of every part's table. A const column holds one value for all rows; a calculated
// column holds a formula over the other columns' names, worked out when asked.
struct DemoColumn {
    Kind kind;
    const char* name;
    QVRColumnDataType type;
    const char* unit;
    const char* text; // the constant or the formula
};
const DemoColumn demoColumns[] = {
    {Kind::Plain, "Thread", qvrDataTypeString, "", ""},
    {Kind::Plain, "Length", qvrDataTypeInt, "mm", ""},
    {Kind::Plain, "Diameter", qvrDataTypeFloat, "mm", ""},
    {Kind::Plain, "Stock", qvrDataTypeInt, "pcs", ""},
    {Kind::Const, "Density", qvrDataTypeFloat, "g/cm3", "7.85"},
    {Kind::Calculated, "Mass", qvrDataTypeFloat, "g",
     "Round(3.14159 * (Diameter / 2) ^ 2 * Length * Density / 1000, 1)"},
    {Kind::Calculated, "Designation", qvrDataTypeString, "", "Thread & \" x \" & Length"},
};

// The parts, by chapter, with the rows of their tables (one row per length).
struct DemoPart {
    const char* chapter;
    const char* name;
    const char* file;
    const char* thread;
    double diameter;
    std::vector<int> lengths;
};
const DemoPart demoParts[] = {
    {"Hexagon head bolts", "Hex bolt M8", "hex-bolt-m8.xml", "M8", 8.0, {20, 40, 60}},
    {"Hexagon head bolts", "Hex bolt M10", "hex-bolt-m10.xml", "M10", 10.0, {30, 50}},
    {"Socket head cap screws", "Socket screw M6", "socket-screw-m6.xml", "M6", 6.0, {16, 25}},
};

// When and where the catalog's parts can be ordered: ISO country code and name.
const DATE orderableFrom = 46082.0;  // 2026-03-01
const DATE orderableUntil = 46752.0; // 2027-12-31
const char* const availableIn[][2] = {{"DE", "Germany"}, {"AT", "Austria"}, {"CH", "Switzerland"}};

// --- Small helpers -------------------------------------------------------------------------

// A step that failed: the library's message is in the thread's error record.
void check(HRESULT hr, const std::string& step) {
    if (hr == S_OK) return;
    ErrorInfo info;
    std::string why = GetErrorInfo(&info) ? info.description.str() : "no message";
    char status[16];
    std::snprintf(status, sizeof status, "0x%08X", static_cast<unsigned>(hr));
    throw std::runtime_error(step + " failed (" + status + "): " + why);
}

std::string text(const Variant& value) {
    Variant shown;
    if (value.isEmpty() || changeType(&shown, value, LCID_EN_US, 0, VT_BSTR) != S_OK) return "";
    return shown.str().str();
}

// A listener at the catalog: it writes down each change, with what changed.
class Listener final : public Counted<IQVRCatalogEvents> {
public:
    std::vector<std::string> heard;

    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant&) override {
        return note("inserted", object);
    }
    HRESULT onObjectChanged(IQVRCatalogObject* object) override { return note("changed", object); }
    HRESULT onObjectRemoved(IQVRCatalogObject* object) override { return note("removed", object); }
    HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL) override {
        return note("query", object);
    }

private:
    HRESULT note(const char* what, IQVRCatalogObject* object) {
        std::string subject;
        switch (typeOf(object)) {
        case qvrChapter: subject = "chapter " + nameOf(object); break;
        case qvrPart: subject = "part " + nameOf(object); break;
        case qvrTable: subject = "a table"; break;
        case qvrCell: subject = "the cell of row " + keyOf(object); break;
        default: subject = "column " + nameOf(object); break;
        }
        heard.push_back(std::string(what) + " " + subject);
        return S_OK;
    }
};

// --- 1. Building ---------------------------------------------------------------------------

Ref<IQVRCatalogObject> newColumn(IQVRCatalogTable* table, const DemoColumn& plan) {
    HRESULT hr = E_FAIL;
    Ref<IQVRCatalogObject> column;
    if (plan.kind == Kind::Plain) {
        Ref<IQVRTableColumn> plain;
        hr = table->createColumn(plan.type, plan.name, "", "", plan.unit, VARIANT_TRUE, &plain);
        column = plain.get();
    } else if (plan.kind == Kind::Const) {
        Ref<IQVRTableConstColumn> constant;
        hr = table->createConstColumn(plan.type, plan.name, plan.text, "", "", plan.unit,
                                      VARIANT_TRUE, &constant);
        column = constant.get();
    } else {
        Ref<IQVRTableCalculatedColumn> calculated;
        hr = table->createCalculatedColumn(plan.type, plan.name, plan.text, "", "", plan.unit,
                                           VARIANT_TRUE, &calculated);
        column = calculated.get();
    }
    check(hr, std::string("create the column ") + plan.name);
    check(table->appendChild(column, nullptr), std::string("append the column ") + plan.name);
    return column;
}

// One cell: the value of row `row` in `column`.
void addCell(IQVRCatalogTable* table, IQVRCatalogObject* column, const std::string& row,
             const Variant& value) {
    Ref<IQVRTableCell> cell;
    check(table->createCell(row, value, &cell), "create a cell");
    check(column->appendChild(cell, nullptr), "add the cell of row " + row);
}

// The part's table, saved next to the catalog and attached to the part. The part then refers to
// it by a path relative to the catalog, so the folder can move as a whole.
void giveTable(IQVRCatalogPart* part, const DemoPart& plan, const std::string& folder) {
    Ref<IQVRCatalogTable> table;
    VARIANT_BOOL ok = VARIANT_FALSE;
    check(CreateCatalogTable(&table), "create a table");
    check(table->create(folder, std::string(plan.name) + ", steel, zinc plated", "en", &ok),
          "start the table");
    std::vector<Ref<IQVRCatalogObject>> columns;
    for (const DemoColumn& column : demoColumns) columns.push_back(newColumn(table, column));
    for (const int length : plan.lengths) {
        const std::string row = std::string(plan.thread) + "x" + std::to_string(length);
        addCell(table, columns[0], row, Variant(plan.thread));
        addCell(table, columns[1], row, Variant(std::int32_t{length}));
        addCell(table, columns[2], row, Variant(plan.diameter));
        addCell(table, columns[3], row, Variant(std::int32_t{500}));
    }
    check(table->saveAs(Variant(folder + plan.file), &ok), "save the table");
    check(part->attachTable(table), "attach the table");
    check(part->setTableLocation(folder, "", plan.file), "make the reference relative");
}

// The supplier: its identifiers and one location, an address reached by mail, web and phone.
void giveSupplier(IQVRCatalog* catalog) {
    Ref<IQVRCatalogStreet> street;
    Ref<IQVRCatalogPostalAddress> postal;
    Ref<IQVRCatalogEmail> email, orderEmail;
    Ref<IQVRCatalogTelephoneNumber> number, orderNumber;
    Ref<IQVRCatalogPhone> phone, orderPhone;
    Ref<IQVRCatalogAddress> address;
    check(catalog->createStreet("Werkstrasse 12", &street), "create the street");
    check(catalog->createPostalAddress("HQ", "Stuttgart", "Germany", "DE", street,
                                       "Baden-Wuerttemberg", "70173", &postal),
          "create the postal address");
    check(catalog->createEmail("Office", "office@fastener-works.example", &email),
          "create the e-mail address");
    check(catalog->createTelephoneNumber("49", "DE", "711", "5550100", "0", &number),
          "create the telephone number");
    check(catalog->createPhone("Office", number, &phone), "create the phone");
    check(catalog->createAddress("Fastener Works GmbH", "DE", postal, email, phone, nullptr,
                                 &address),
          "create the address");

    // One order method per way in: each target is its own element.
    Ref<IQVRCatalogURL> shop;
    check(catalog->createEmail("Orders", "orders@fastener-works.example", &orderEmail),
          "create the order e-mail address");
    check(catalog->createURL("https://shop.fastener-works.example/", "Web shop", "en", &shop),
          "create the shop's URL");
    check(catalog->createTelephoneNumber("49", "DE", "711", "5550100", "200", &orderNumber),
          "create the order line");
    check(catalog->createPhone("Order line", orderNumber, &orderPhone), "create the order phone");
    Ref<IQVRCatalogOrderMethods> methods;
    const std::pair<IQVRCatalogObject*, const char*> ways[] = {
        {orderEmail.get(), "SMTP"}, {shop.get(), "HTTPS"}, {orderPhone.get(), "Voice"}};
    for (const auto& [target, protocol] : ways) {
        Ref<IQVRCatalogOrderTarget> orderTarget;
        Ref<IQVRCatalogOrderMethod> method;
        check(catalog->createOrderTarget(target, &orderTarget), "create an order target");
        check(catalog->createOrderMethod(orderTarget, protocol, &method), "create an order method");
        if (!methods)
            check(catalog->createOrderMethods(method, &methods), "create the order methods");
        else
            check(methods->appendChild(method, nullptr), "add an order method");
    }
    Ref<IQVRCatalogSupplierLocation> location;
    check(catalog->createSupplierLocation(address, methods, &location), "create the location");

    Ref<IQVRCatalogSupplierID> duns;
    Ref<IQVRCatalogSupplierIDs> ids;
    Ref<IQVRCatalogECommerceCenterID> gln;
    Ref<IQVRCatalogECommerceCenterIDs> centerIds;
    check(catalog->createSupplierID("DUNS", "315843217", &duns), "create the supplier id");
    check(catalog->createSupplierIDs(duns, &ids), "create the supplier ids");
    check(catalog->createECommerceCenterID("GLN", "4012345000009", &gln), "create the GLN");
    check(catalog->createECommerceCenterIDs(gln, &centerIds), "create the e-commerce ids");
    Ref<IQVRCatalogSupplier> supplier;
    check(catalog->createSupplier("Fastener Works", "Bolts, nuts and screws since 1921", nullptr,
                                  nullptr, nullptr, ids, centerIds, location, &supplier),
          "create the supplier");
    check(catalog->putref_supplier(supplier), "give the catalog its supplier");
}

void giveOrderInfo(IQVRCatalog* catalog) {
    Ref<IQVRCatalogAvailability> availability;
    for (const auto& [code, country] : availableIn) {
        Ref<IQVRCatalogCountryCode> made;
        check(catalog->createCountryCode(code, country, &made), "create a country code");
        if (!availability)
            check(catalog->createAvailability(made, &availability), "create the availability");
        else
            check(availability->appendChild(made, nullptr), std::string("add ") + country);
    }
    Ref<IQVRCatalogOrderInfo> orderInfo;
    check(catalog->createOrderInfo(Variant::date(orderableFrom), Variant::date(orderableUntil),
                                   availability, &orderInfo),
          "create the order information");
    check(catalog->putref_orderInfo(orderInfo), "give the catalog its order information");
}

Ref<IQVRCatalog> buildCatalog(const std::string& folder) {
    Ref<IQVRCatalog> catalog;
    VARIANT_BOOL ok = VARIANT_FALSE;
    check(CreateCatalog(&catalog), "create the catalog");
    check(catalog->create(folder, "Fasteners", "en", &ok), "start the catalog");
    check(catalog->put_desc("Bolts and screws of the demo"), "describe the catalog");
    giveSupplier(catalog);
    giveOrderInfo(catalog);
    Ref<IQVRCatalogChapter> top;
    check(catalog->createChapter("Bolts and screws", &top), "create a chapter");
    check(catalog->appendChild(top, nullptr), "append the chapter");
    std::vector<Ref<IQVRCatalogChapter>> chapters;
    for (const DemoPart& plan : demoParts) {
        auto chapter = std::find_if(chapters.begin(), chapters.end(),
                                    [&](const auto& c) { return nameOf(c) == plan.chapter; });
        if (chapter == chapters.end()) {
            Ref<IQVRCatalogChapter> made;
            check(catalog->createChapter(plan.chapter, &made), "create a chapter");
            check(top->appendChild(made, nullptr), "append the chapter");
            chapter = chapters.insert(chapters.end(), made);
        }
        Ref<IQVRCatalogPart> part;
        check(catalog->createPart(plan.name, &part), "create a part");
        check((*chapter)->appendChild(part, nullptr), "append the part");
        giveTable(part, plan, folder);
    }
    return catalog;
}

// --- 2. Editing with a listener ------------------------------------------------------------

Ref<IQVRCatalogPart> partNamed(IQVRCatalogObject* parent, const std::string& name) {
    Ref<IQVRCatalogObjectList> children;
    if (parent->get_childNodes(&children) != S_OK || !children) return nullptr;
    for (Ref<IQVRCatalogObject> child : *children) {
        if (typeOf(child) == qvrPart && nameOf(child) == name) return query<IQVRCatalogPart>(child);
        if (Ref<IQVRCatalogPart> found = partNamed(child, name)) return found;
    }
    return nullptr;
}

Ref<IQVRCatalogObject> columnNamed(IQVRCatalogTable* table, const std::string& name) {
    Ref<IQVRCatalogObjectList> columns;
    check(table->get_childNodes(&columns), "list the columns");
    for (Ref<IQVRCatalogObject> column : *columns)
        if (nameOf(column) == name) return column;
    throw std::runtime_error("no column " + name);
}

// The cell of `row` in `column`, through the row object.
Ref<IQVRTableCell> cellAt(IQVRCatalogTable* table, IQVRCatalogObject* column,
                          const std::string& row) {
    Ref<IQVRTableUniqueColumn> rows;
    Ref<IQVRCatalogObjectList> rowList;
    check(table->get_uniqueColumn(&rows), "find the rows");
    check(rows->get_childNodes(&rowList), "list the rows");
    for (Ref<IQVRCatalogObject> each : *rowList) {
        Ref<IQVRTableCellObject> cell;
        if (keyOf(each) == row && query<IQVRTableInfoCell>(each)->getCell(column, &cell) == S_OK)
            return query<IQVRTableCell>(cell);
    }
    return nullptr;
}

void edit(IQVRCatalog* catalog) {
    // A value in a part's table: the change reaches the catalog's listener.
    Ref<IQVRCatalogPart> m8 = partNamed(catalog, "Hex bolt M8");
    Ref<IQVRCatalogTable> table;
    check(m8->getTable(0, &table), "open the table of Hex bolt M8");
    check(cellAt(table, columnNamed(table, "Stock"), "M8x40")->put_value(Variant(0)),
          "change the stock of M8x40");

    check(partNamed(catalog, "Hex bolt M10")->put_desc("Also sold in boxes of 100"),
          "describe a part");

    // A deep copy of a part takes a copy of its table along, under a new file name. The copy is
    // made silently; its table is written by the next save.
    Ref<IQVRCatalogObject> copy, chapter;
    check(m8->cloneNode(VARIANT_TRUE, &copy), "copy a part");
    Ref<IQVRCatalogPart> stainless = query<IQVRCatalogPart>(copy);
    check(stainless->put_name("Hex bolt M8 stainless"), "rename the copy");
    check(m8->get_parentNode(&chapter), "find the chapter");
    check(chapter->appendChild(copy, nullptr), "insert the copy");
    Ref<IQVRCatalogTable> copiedTable;
    check(stainless->getTable(0, &copiedTable), "open the copied table");
    check(copiedTable->put_desc("Hex bolt M8, stainless steel A2"), "describe the copied table");
    check(query<IQVRTableConstColumn>(columnNamed(copiedTable, "Density"))->put_constant("7.93"),
          "change the density of stainless steel");
}

// --- 3. Reading back -----------------------------------------------------------------------

void printTree(IQVRCatalogObject* object, int depth) {
    Ref<IQVRCatalogObjectList> children;
    if (object->get_childNodes(&children) != S_OK || !children) return;
    for (Ref<IQVRCatalogObject> child : *children) {
        std::string line = std::string(2 * depth, ' ') + nameOf(child);
        String reference;
        if (Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(child)) {
            part->get_tableRef(&reference);
            line.resize(std::max<std::size_t>(line.size() + 2, 36), ' ');
            line += "table " + reference.str();
        }
        std::printf("%s\n", line.c_str());
        printTree(child, depth + 1);
    }
}

// "DUNS 315843217" for each identifier of a list, joined by commas.
std::string identifiers(IQVRCatalogObject* list) {
    Ref<IQVRCatalogObjectList> items;
    std::string shown;
    if (!list || list->get_childNodes(&items) != S_OK) return shown;
    for (Ref<IQVRCatalogObject> item : *items) {
        Variant value;
        item->getValue(".", &value);
        shown += (shown.empty() ? "" : ", ") + keyOf(item) + " " + text(value);
    }
    return shown;
}

// How an order target is reached: the address, the URL or the number.
std::string reach(IQVRCatalogOrderTarget* target) {
    Ref<IQVRCatalogObject> object;
    String shown;
    if (target->get_target(&object) != S_OK) return "";
    if (auto email = query<IQVRCatalogEmail>(object)) email->get_value(&shown);
    if (auto url = query<IQVRCatalogURL>(object)) url->get_href(&shown);
    if (auto phone = query<IQVRCatalogPhone>(object)) {
        Ref<IQVRCatalogTelephoneNumber> number;
        String iso, country, area, local, extension;
        phone->get_telephoneNumber(&number);
        number->get_countryCode(&iso, &country);
        number->get_areaOrCityCode(&area);
        number->get_number(&local);
        number->get_extension(&extension);
        shown = "+" + country.str() + " " + area.str() + " " + local.str() + "-" + extension.str();
    }
    return shown.str();
}

void printSupplier(IQVRCatalog* catalog) {
    Ref<IQVRCatalogSupplier> supplier;
    if (catalog->get_supplier(&supplier) != S_OK) return;
    String name, desc;
    Ref<IQVRCatalogSupplierIDs> ids;
    Ref<IQVRCatalogECommerceCenterIDs> centerIds;
    supplier->get_name(&name);
    supplier->get_desc(&desc);
    supplier->get_supplierIDs(&ids);
    supplier->get_eCommerceCenterIDs(&centerIds);
    std::printf("  Supplier: %s, %s (%s; %s)\n", name.str().c_str(), desc.str().c_str(),
                identifiers(ids).c_str(), identifiers(centerIds).c_str());
    Ref<IQVRCatalogObjectList> locations;
    check(supplier->get_childNodes(&locations), "list the supplier's locations");
    for (Ref<IQVRCatalogObject> each : *locations) {
        auto location = query<IQVRCatalogSupplierLocation>(each);
        Ref<IQVRCatalogAddress> address;
        Ref<IQVRCatalogPostalAddress> postal;
        Ref<IQVRCatalogOrderMethods> methods;
        String addressName, city, code, country, postalCode;
        check(location->get_address(&address), "read the address");
        address->get_name(&addressName);
        address->get_postalAddress(&postal);
        postal->get_city(&city);
        postal->get_country(&code, &country);
        postal->get_postalCode(&postalCode);
        std::printf("    %s, %s %s, %s\n", addressName.str().c_str(), postalCode.str().c_str(),
                    city.str().c_str(), country.str().c_str());
        Ref<IQVRCatalogObjectList> list;
        check(location->get_orderMethods(&methods), "read the order methods");
        check(methods->get_childNodes(&list), "list the order methods");
        for (Ref<IQVRCatalogObject> item : *list) {
            auto method = query<IQVRCatalogOrderMethod>(item);
            Ref<IQVRCatalogOrderTarget> target;
            String protocol;
            method->get_orderProtocol(&protocol);
            check(method->get_orderTarget(&target), "read an order target");
            std::printf("    order by %-6s %s\n", protocol.str().c_str(), reach(target).c_str());
        }
    }
}

// When and where the catalog's parts can be ordered. The dates are stored under the user's
// locale, en-US by default.
void printOrderInfo(IQVRCatalog* catalog) {
    Ref<IQVRCatalogOrderInfo> orderInfo;
    if (catalog->get_orderInfo(&orderInfo) != S_OK) return;
    Variant from, until;
    check(orderInfo->get_effDate(&from), "read the effective date");
    check(orderInfo->get_expDate(&until), "read the expiry date");
    std::string countries;
    Ref<IQVRCatalogAvailability> availability;
    Ref<IQVRCatalogObjectList> codes;
    if (orderInfo->get_availability(&availability) == S_OK &&
        availability->get_childNodes(&codes) == S_OK) {
        for (Ref<IQVRCatalogObject> code : *codes) {
            String country;
            query<IQVRCatalogCountryCode>(code)->get_value(&country);
            countries += (countries.empty() ? "" : ", ") + country.str() + " (" + keyOf(code) + ")";
        }
    }
    std::printf("  Orderable from %s until %s in %s\n", text(from).c_str(), text(until).c_str(),
                countries.c_str());
}

// The value of `column` at `row`: a cell's value, the constant, or the computed value.
std::string valueAt(IQVRCatalogTable* table, IQVRCatalogObject* column, const std::string& row) {
    if (auto calculated = query<IQVRTableCalculatedColumn>(column)) {
        Variant value;
        check(calculated->calculate(Variant(row), &value), "calculate " + nameOf(column));
        return text(value);
    }
    if (auto constant = query<IQVRTableConstColumn>(column)) {
        String value;
        constant->get_constant(&value);
        return value.str();
    }
    Variant value;
    Ref<IQVRTableCell> cell = cellAt(table, column, row);
    if (cell) cell->get_value(&value);
    return text(value);
}

void printTable(IQVRCatalogPart* part) {
    Ref<IQVRCatalogTable> table;
    check(part->getTable(0, &table), "open the table of " + nameOf(part));
    String desc;
    table->get_desc(&desc);
    std::printf("\n%s: %s\n", nameOf(part).c_str(), desc.str().c_str());

    // One line per row, a column per table column; the unit (or "const", "calc") above.
    Ref<IQVRCatalogObjectList> columns, rowList;
    Ref<IQVRTableUniqueColumn> rows;
    check(table->get_childNodes(&columns), "list the columns");
    check(table->get_uniqueColumn(&rows), "find the rows");
    check(rows->get_childNodes(&rowList), "list the rows");
    std::vector<std::vector<std::string>> lines(2);
    lines[0].push_back("row");
    lines[1].push_back("");
    for (Ref<IQVRCatalogObject> column : *columns) {
        auto* columnObject = dynamic_cast<IQVRTableColumnObject*>(column.get());
        String unit;
        if (columnObject) columnObject->get_unit(&unit);
        const QVRObjectType type = typeOf(column);
        lines[0].push_back(nameOf(column));
        lines[1].push_back(type == qvrCalculatedColumn ? "calc " + unit.str()
                           : type == qvrConstColumn    ? "const " + unit.str()
                                                       : unit.str());
    }
    for (Ref<IQVRCatalogObject> row : *rowList) {
        std::vector<std::string> line{keyOf(row)};
        for (Ref<IQVRCatalogObject> column : *columns)
            line.push_back(valueAt(table, column, keyOf(row)));
        lines.push_back(line);
    }
    std::vector<std::size_t> widths(lines[0].size(), 0);
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    for (const auto& line : lines) {
        std::string shown = " ";
        for (std::size_t i = 0; i < line.size(); ++i)
            shown += " " + line[i] + std::string(widths[i] - line[i].size() + 1, ' ');
        while (!shown.empty() && shown.back() == ' ') shown.pop_back();
        std::printf("%s\n", shown.c_str());
    }
    for (Ref<IQVRCatalogObject> column : *columns)
        if (auto calculated = query<IQVRTableCalculatedColumn>(column)) {
            String formula;
            calculated->get_expression(&formula);
            std::printf("  %s = %s\n", nameOf(column).c_str(), formula.str().c_str());
        }
}

void printTables(IQVRCatalogObject* object) {
    Ref<IQVRCatalogObjectList> children;
    if (object->get_childNodes(&children) != S_OK || !children) return;
    for (Ref<IQVRCatalogObject> child : *children) {
        if (Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(child)) printTable(part);
        printTables(child);
    }
}

// --- The story -----------------------------------------------------------------------------

void run(const std::string& folder) {
    std::printf("Working in %s\n\n", folder.c_str());

    std::printf("1. Building a catalog of fasteners with a table per part\n");
    Ref<IQVRCatalog> catalog = buildCatalog(folder);
    Ref<IQVRCatalogObjectList> tables;
    std::int32_t open = 0;
    check(catalog->get_tables(&tables), "find the open tables");
    tables->get_count(&open);
    std::printf("   %zu parts, %d tables open in the catalog, %zu columns each\n\n",
                std::size(demoParts), open, std::size(demoColumns));

    std::printf("2. Editing it while a listener hears every change, then saving\n");
    Ref<Listener> listener(new Listener);
    std::uint32_t cookie = 0;
    check(catalog->advise(listener, &cookie), "advise the listener");
    edit(catalog);
    VARIANT_BOOL ok = VARIANT_FALSE;
    check(catalog->saveAs(Variant(folder + "catalog.xml"), &ok), "save the catalog");
    check(catalog->unadvise(cookie), "unadvise the listener");
    for (const std::string& event : listener->heard) std::printf("   heard: %s\n", event.c_str());
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files)
        std::printf("   saved: %s (%ju bytes)\n", file.filename().c_str(),
                    static_cast<std::uintmax_t>(std::filesystem::file_size(file)));
    catalog = nullptr;

    std::printf("\n3. Loading it back as a new client would\n\n");
    Ref<IQVRCatalog> reader;
    check(CreateCatalog(&reader), "create a catalog");
    check(reader->load(Variant(folder + "catalog.xml"), &ok), "load the catalog");
    String name, desc;
    reader->get_name(&name);
    reader->get_desc(&desc);
    std::printf("%s: %s\n", name.str().c_str(), desc.str().c_str());
    printSupplier(reader);
    printOrderInfo(reader);
    printTree(reader, 1);
    printTables(reader);
}

} // namespace

int main(int argc, char** argv) {
    const bool keep = argc > 1 && std::string(argv[1]) == "--keep";
    std::string pattern = (std::filesystem::temp_directory_path() / "qvr-demo-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::perror("qvr-demo: cannot make a temporary folder");
        return 1;
    }
    const std::string folder = pattern + "/";
    int status = 0;
    try {
        run(folder);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "qvr-demo: %s\n", failure.what());
        status = 1;
    }
    if (keep) {
        std::printf("\nThe files stay in %s\n", folder.c_str());
    } else {
        std::error_code ignored;
        std::filesystem::remove_all(pattern, ignored);
    }
    std::printf("\nEvery object released, the library can unload: %s\n",
                CanUnloadNow() == S_OK ? "yes" : "no");
    return status;
}
