// The tables that tell the classes of the model apart: what each object type is called, which tag
// it wraps, how its key is found, which routing its events take, and, for the classes that hold
// children, what they accept and how those children are selected. The shared operations of the
// frame read these rows instead of each class repeating them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include <qvr/object.h>

#include "platform/com/messages.h"

namespace qvr {

// How get_key finds an object's key.
enum class KeyFamily : std::uint8_t {
    Own,               // the class answers by itself (the two roots and the reference)
    Attribute,         // an attribute of the element; absent: S_FALSE
    WrapperGuid,       // a GUID text made when the wrapper was constructed, stored nowhere
    AttributeElseGuid, // an attribute if present, else the wrapper's GUID text
    OwnOperation,      // the answer of the class's first own operation (keyFromOwnOperation)
    RowKeyOfIdref,     // the key text of the row that `idref` names, else the wrapper's text
                       // (starts null)
    OwnText,           // the element's own text
};

// Which of the two freeze flags guards an object's events. Both move together, so the choice is
// invisible; it stays so that catalog code and table code keep to their own flag.
enum class EventSide : std::uint8_t { Catalog, Table };

struct ObjectTypeRow {
    QVRObjectType type;
    const char* tag;          // the element the class wraps; null for the roots and the reference
    KeyFamily key;            //
    const char* keyAttribute; // Attribute and AttributeElseGuid
    EventSide events;         //
    const char* source;       // the stable name under which the class reports failures
};

// One row per object type, in the order of the numbers.
inline constexpr ObjectTypeRow objectTypeTable[] = {
    {qvrCatalog, nullptr, KeyFamily::Own, nullptr, EventSide::Catalog, "QVRCatalog.Catalog"},
    {qvrChapter, "Chapter", KeyFamily::Attribute, "id", EventSide::Catalog, "QVRCatalog.Chapter"},
    {qvrPart, "Part", KeyFamily::Attribute, "id", EventSide::Catalog, "QVRCatalog.Part"},
    {qvrImage, "Image", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog, "QVRCatalog.Image"},
    {qvrLink, "Link", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog, "QVRCatalog.Link"},
    {qvrClass, "Class", KeyFamily::Attribute, "domain", EventSide::Catalog, "QVRCatalog.Class"},
    {qvrClassifications, "Classifications", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.Classifications"},
    {qvrOrderInfo, "OrderInfo", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.OrderInfo"},
    {qvrAvailability, "Availability", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.Availability"},
    {qvrCountryCode, "CountryCode", KeyFamily::AttributeElseGuid, "isoCountryCode",
     EventSide::Catalog, "QVRCatalog.CountryCode"},
    {qvrOrderMethod, "OrderMethod", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.OrderMethod"},
    {qvrOrderMethods, "OrderMethods", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.OrderMethods"},
    {qvrOrderTarget, "OrderTarget", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.OrderTarget"},
    {qvrPhone, "Phone", KeyFamily::Attribute, "name", EventSide::Catalog, "QVRCatalog.Phone"},
    {qvrEmail, "Email", KeyFamily::Attribute, "name", EventSide::Catalog, "QVRCatalog.Email"},
    {qvrFax, "Fax", KeyFamily::Attribute, "name", EventSide::Catalog, "QVRCatalog.Fax"},
    {qvrTelephoneNumber, "TelephoneNumber", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.TelephoneNumber"},
    {qvrStreet, "Street", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog, "QVRCatalog.Street"},
    {qvrPostalAddress, "PostalAddress", KeyFamily::Attribute, "id", EventSide::Catalog,
     "QVRCatalog.PostalAddress"},
    {qvrAddress, "Address", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.Address"},
    {qvrSupplierLocation, "SupplierLocation", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.SupplierLocation"},
    {qvrSupplierID, "SupplierID", KeyFamily::Attribute, "domain", EventSide::Catalog,
     "QVRCatalog.SupplierID"},
    {qvrSupplierIDs, "SupplierIDs", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.SupplierIDs"},
    {qvrECommerceCenterID, "ECommerceCenterID", KeyFamily::Attribute, "domain", EventSide::Catalog,
     "QVRCatalog.ECommerceCenterID"},
    {qvrECommerceCenterIDs, "ECommerceCenterIDs", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.ECommerceCenterIDs"},
    {qvrSupplier, "Supplier", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.Supplier"},
    {qvrExtrinsics, "Extrinsics", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.Extrinsics"},
    {qvrExtrinsic, "Extrinsic", KeyFamily::OwnOperation, nullptr, EventSide::Catalog,
     "QVRCatalog.Extrinsic"},
    {qvrDocument, "Document", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.Document"},
    {qvrDocuments, "Documents", KeyFamily::WrapperGuid, nullptr, EventSide::Catalog,
     "QVRCatalog.Documents"},
    {qvrURL, "URL", KeyFamily::AttributeElseGuid, "xml:lang", EventSide::Catalog, "QVRCatalog.URL"},
    {qvrTable, nullptr, KeyFamily::Own, nullptr, EventSide::Table, "QVRCatalog.Table"},
    {qvrImages, "Images", KeyFamily::WrapperGuid, nullptr, EventSide::Table, "QVRCatalog.Images"},
    {qvrReferencedFiles, "XRefFiles", KeyFamily::WrapperGuid, nullptr, EventSide::Table,
     "QVRCatalog.ReferencedFiles"},
    {qvrTableColumn, "Column", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.TableColumn"},
    {qvrRefColumn, "ColumnRef", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.RefColumn"},
    {qvrConstColumn, "ColumnConst", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.ConstColumn"},
    {qvrCalculatedColumn, "ColumnCalc", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.CalculatedColumn"},
    {qvrUniqueColumn, "ColumnUnique", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.UniqueColumn"},
    {qvrView, "ColumnView", KeyFamily::Attribute, "id", EventSide::Table, "QVRCatalog.View"},
    {qvrConstView, "ColumnConstView", KeyFamily::Attribute, "id", EventSide::Table,
     "QVRCatalog.ConstView"},
    {qvrDrawing, "Drawing", KeyFamily::RowKeyOfIdref, nullptr, EventSide::Table,
     "QVRCatalog.Drawing"},
    {qvrCell, "Row", KeyFamily::RowKeyOfIdref, nullptr, EventSide::Table, "QVRCatalog.Cell"},
    {qvrRefCell, "RowRef", KeyFamily::RowKeyOfIdref, nullptr, EventSide::Table,
     "QVRCatalog.RefCell"},
    {qvrInfoCell, "RowUnique", KeyFamily::OwnText, nullptr, EventSide::Table,
     "QVRCatalog.InfoCell"},
    {qvrReference, nullptr, KeyFamily::Own, nullptr, EventSide::Catalog, "QVRCatalog.Reference"},
    {qvrRecipe, "Recipe", KeyFamily::OwnOperation, nullptr, EventSide::Table, "QVRCatalog.Recipe"},
};

constexpr bool objectTypeTableInOrder() {
    for (std::size_t i = 0; i < std::size(objectTypeTable); ++i)
        if (objectTypeTable[i].type != static_cast<QVRObjectType>(i)) return false;
    return true;
}
static_assert(objectTypeTableInOrder(), "rows stand at the index of their number");

constexpr const ObjectTypeRow& objectTypeRow(QVRObjectType type) {
    return objectTypeTable[type];
}

// A set of object types, one bit per number.
using TypeSet = std::uint64_t;
constexpr TypeSet typeSet(std::initializer_list<QVRObjectType> types) {
    TypeSet set = 0;
    for (QVRObjectType t : types) set |= TypeSet{1} << t;
    return set;
}
constexpr bool contains(TypeSet set, QVRObjectType type) {
    return type >= 0 && type < 64 && (set >> type & 1) != 0;
}

// Whether removeChild refuses to take the last child of its tag.
enum class LastChildGuard : std::uint8_t {
    No,
    Yes,
    Own, // the class has a removal of its own
};

// The classes that hold children. `keyAttribute` must be unique among the children ("NA" is an
// attribute no element has: the check passes); `childSelection` selects the children, for
// insertion positions and for get_childNodes alike.
struct ContainerRow {
    QVRObjectType owner;
    TypeSet accepted;
    const char* keyAttribute;
    const char* childSelection;
    Msg wrongTypeMessage;
    LastChildGuard guard;
    bool reportsDuplicate; // a duplicate key: msgDuplicateId and E_FAIL, or QVR_E_DUPLICATE alone
};

inline constexpr ContainerRow containerTable[] = {
    {qvrCatalog, typeSet({qvrChapter}), "id", "Chapter", msgOnlyChapters, LastChildGuard::No, true},
    {qvrChapter, typeSet({qvrChapter, qvrPart}), "id", "(Chapter | Part)", msgOnlyChaptersOrParts,
     LastChildGuard::No, true},
    {qvrAvailability, typeSet({qvrCountryCode}), "isoCountryCode", "CountryCode",
     msgOnlyCountryCodes, LastChildGuard::Yes, true},
    {qvrClassifications, typeSet({qvrClass}), "domain", "Class", msgOnlyClasses,
     LastChildGuard::Yes, true},
    {qvrDocument, typeSet({qvrURL}), "xml:lang", "URL", msgOnlyURLs, LastChildGuard::Yes, true},
    {qvrDocuments, typeSet({qvrDocument}), "NA", "Document", msgOnlyDocuments, LastChildGuard::Yes,
     true},
    {qvrECommerceCenterIDs, typeSet({qvrECommerceCenterID}), "domain", "ECommerceCenterID",
     msgOnlyECommerceCenterIDs, LastChildGuard::Yes, true},
    {qvrExtrinsics, typeSet({qvrExtrinsic}), "NA", "Extrinsic", msgOnlyExtrinsics,
     LastChildGuard::No, true},
    {qvrImage, typeSet({qvrURL}), "xml:lang", "URL", msgOnlyURLs, LastChildGuard::Yes, false},
    {qvrImages, typeSet({qvrImage}), "NA", "Image", msgOnlyImages, LastChildGuard::Yes, true},
    {qvrLink, typeSet({qvrURL}), "xml:lang", "URL", msgOnlyURLs, LastChildGuard::Yes, true},
    {qvrOrderMethods, typeSet({qvrOrderMethod}), "NA", "OrderMethod", msgOnlyOrderMethods,
     LastChildGuard::No, true},
    {qvrPostalAddress, typeSet({qvrStreet}), "NA", "Street", msgOnlyStreets, LastChildGuard::Yes,
     true},
    {qvrReferencedFiles, typeSet({qvrURL}), "xml:lang", "URL", msgOnlyURLs, LastChildGuard::Yes,
     true},
    {qvrSupplier, typeSet({qvrSupplierLocation}), "NA", "SupplierLocation",
     msgOnlySupplierLocations, LastChildGuard::No, true},
    {qvrSupplierIDs, typeSet({qvrSupplierID}), "domain", "SupplierID", msgOnlySupplierIDs,
     LastChildGuard::Yes, true},
    {qvrTableColumn, typeSet({qvrCell}), "NA", "Row", msgOnlyCells, LastChildGuard::Own, true},
    {qvrRefColumn, typeSet({qvrRefCell}), "NA", "RowRef", msgOnlyRefCells, LastChildGuard::Own,
     true},
    {qvrView, typeSet({qvrDrawing}), "NA", "Drawing", msgOnlyDrawings, LastChildGuard::Own, true},
    {qvrConstView, typeSet({qvrRecipe}), "application", "Recipe", msgOnlyRecipes,
     LastChildGuard::Yes, true},
    {qvrUniqueColumn, typeSet({qvrInfoCell}), "id", "RowUnique", msgOnlyInfoCells,
     LastChildGuard::Own, true},
    {qvrTable,
     typeSet({qvrTableColumn, qvrRefColumn, qvrConstColumn, qvrCalculatedColumn, qvrView,
              qvrConstView}),
     "id", "(Column | ColumnConst | ColumnCalc | ColumnView | ColumnConstView | ColumnRef)",
     msgOnlyColumnsOrViews, LastChildGuard::Own, true},
};

// The container row of a class, or null for a class that takes no children.
constexpr const ContainerRow* containerRow(QVRObjectType type) {
    for (const ContainerRow& row : containerTable)
        if (row.owner == type) return &row;
    return nullptr;
}

// The same questions answered without pointers, for compile-time choices.
constexpr bool hasContainerRow(QVRObjectType type) {
    for (const ContainerRow& row : containerTable)
        if (row.owner == type) return true;
    return false;
}
constexpr LastChildGuard lastChildGuard(QVRObjectType type) {
    for (const ContainerRow& row : containerTable)
        if (row.owner == type) return row.guard;
    return LastChildGuard::No;
}

// Everything the shared operations need to know of a class.
struct ClassInfo {
    const ObjectTypeRow& type;
    const ContainerRow* container;
};

constexpr ClassInfo classInfo(QVRObjectType type) {
    return ClassInfo{objectTypeRow(type), containerRow(type)};
}

} // namespace qvr
