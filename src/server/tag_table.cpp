// The factory's tag table: the one place that knows every class of the model. It stands above
// the classes so that the frame below them names none; the frame reaches it through
// creatorOfTag. A new class is one row here, its creator in place of the null.
#include "content/chapter.h"
#include "content/classification.h"
#include "content/contact.h"
#include "content/media.h"
#include "content/order_info.h"
#include "content/order_method.h"
#include "content/part.h"
#include "content/supplier.h"
#include "content/url.h"
#include "core/object_factory.h"
#include "core/object_types.h"
#include "formulas/calculated_column.h"
#include "tables/const_column.h"
#include "tables/const_view.h"
#include "tables/drawing.h"
#include "tables/info_cell.h"
#include "tables/recipe.h"
#include "tables/ref_cell.h"
#include "tables/ref_column.h"
#include "tables/table_cell.h"
#include "tables/table_column.h"
#include "tables/unique_column.h"
#include "tables/view.h"

namespace qvr {
namespace {

struct TagRow {
    const char* tag;
    QVRObjectType type;
    Creator create; // null until the class is built: the tag is then refused like a foreign one
};

// Tested in this order; the first equal tag chooses the class.
constexpr TagRow tagTable[] = {
    {"Chapter", qvrChapter, &createWrapper<CQVRCatalogChapter>},
    {"Image", qvrImage, &createWrapper<CQVRCatalogImage>},
    {"URL", qvrURL, &createWrapper<CQVRCatalogURL>},
    {"Link", qvrLink, &createWrapper<CQVRCatalogLink>},
    {"Class", qvrClass, &createWrapper<CQVRCatalogClass>},
    {"Classifications", qvrClassifications, &createWrapper<CQVRCatalogClassifications>},
    {"OrderInfo", qvrOrderInfo, &createWrapper<CQVRCatalogOrderInfo>},
    {"Availability", qvrAvailability, &createWrapper<CQVRCatalogAvailability>},
    {"CountryCode", qvrCountryCode, &createWrapper<CQVRCatalogCountryCode>},
    {"Document", qvrDocument, &createWrapper<CQVRCatalogDocument>},
    {"Documents", qvrDocuments, &createWrapper<CQVRCatalogDocuments>},
    {"Part", qvrPart, &createWrapper<CQVRCatalogPart>},
    {"Images", qvrImages, &createWrapper<CQVRCatalogImages>},
    {"XRefFiles", qvrReferencedFiles, &createWrapper<CQVRCatalogReferencedFiles>},
    {"ColumnView", qvrView, &createWrapper<CQVRTableView>},
    {"Drawing", qvrDrawing, &createWrapper<CQVRTableDrawing>},
    {"Row", qvrCell, &createWrapper<CQVRTableCell>},
    {"Column", qvrTableColumn, &createWrapper<CQVRTableColumn>},
    {"ColumnConstView", qvrConstView, &createWrapper<CQVRTableConstView>},
    {"ColumnConst", qvrConstColumn, &createWrapper<CQVRTableConstColumn>},
    {"ColumnCalc", qvrCalculatedColumn, &createWrapper<CQVRTableCalculatedColumn>},
    {"OrderTarget", qvrOrderTarget, &createWrapper<CQVRCatalogOrderTarget>},
    {"OrderMethod", qvrOrderMethod, &createWrapper<CQVRCatalogOrderMethod>},
    {"OrderMethods", qvrOrderMethods, &createWrapper<CQVRCatalogOrderMethods>},
    {"TelephoneNumber", qvrTelephoneNumber, &createWrapper<CQVRCatalogTelephoneNumber>},
    {"Phone", qvrPhone, &createWrapper<CQVRCatalogPhone>},
    {"Fax", qvrFax, &createWrapper<CQVRCatalogFax>},
    {"Email", qvrEmail, &createWrapper<CQVRCatalogEmail>},
    {"Street", qvrStreet, &createWrapper<CQVRCatalogStreet>},
    {"PostalAddress", qvrPostalAddress, &createWrapper<CQVRCatalogPostalAddress>},
    {"Address", qvrAddress, &createWrapper<CQVRCatalogAddress>},
    {"SupplierLocation", qvrSupplierLocation, &createWrapper<CQVRCatalogSupplierLocation>},
    {"SupplierID", qvrSupplierID, &createWrapper<CQVRCatalogSupplierID>},
    {"SupplierIDs", qvrSupplierIDs, &createWrapper<CQVRCatalogSupplierIDs>},
    {"ECommerceCenterID", qvrECommerceCenterID, &createWrapper<CQVRCatalogECommerceCenterID>},
    {"ECommerceCenterIDs", qvrECommerceCenterIDs, &createWrapper<CQVRCatalogECommerceCenterIDs>},
    {"Supplier", qvrSupplier, &createWrapper<CQVRCatalogSupplier>},
    {"ColumnUnique", qvrUniqueColumn, &createWrapper<CQVRTableUniqueColumn>},
    {"RowUnique", qvrInfoCell, &createWrapper<CQVRTableInfoCell>},
    {"Extrinsics", qvrExtrinsics, &createWrapper<CQVRCatalogExtrinsics>},
    {"Extrinsic", qvrExtrinsic, &createWrapper<CQVRCatalogExtrinsic>},
    {"Recipe", qvrRecipe, &createWrapper<CQVRTableRecipe>},
    {"ColumnRef", qvrRefColumn, &createWrapper<CQVRTableRefColumn>},
    {"RowRef", qvrRefCell, &createWrapper<CQVRTableRefCell>},
};

constexpr bool tagsMatchTypes() {
    for (const TagRow& row : tagTable)
        if (std::string_view(row.tag) != objectTypeRow(row.type).tag) return false;
    return std::size(tagTable) == 44;
}
static_assert(tagsMatchTypes(), "every tag names the class of its object type, all 44 of them");

} // namespace

Creator creatorOfTag(std::string_view tag) {
    for (const TagRow& row : tagTable)
        if (tag == row.tag) return row.create;
    return nullptr;
}

} // namespace qvr
