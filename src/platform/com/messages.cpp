#include "platform/com/messages.h"

#include <algorithm>
#include <array>

namespace qvr {
namespace {

struct Message {
    std::uint32_t number;
    std::string_view text;
};

// Sorted by number. Spelling mistakes are part of the texts users have scripts compare against,
// so they stay.
constexpr std::array messages{
    Message{msgCatalogNotInitialized,
            "The Catalog is not initialized yet.\n\nCall either create() or load() or "
            "loadXML() to initialize the catalog."},
    Message{msgXmlParseError, "XML parse error:\n\n%s\nFile: %s\nLine: %ld, Position: %ld, Code: "
                              "0x%08lX\n\n%s"},
    Message{msgOnlyChaptersOrParts,
            "You can only append Chapters or Parts as a child of this object."},
    Message{msgOnlyChapters, "You can only append Chapters as a child of this object."},
    Message{msgOnlyURLs, "You can only append URL's as a child of this object."},
    Message{msgTableNotInitialized,
            "The Table is not initialized yet.\n\nCall either create() or load() or "
            "loadXML() to initialize the table."},
    Message{msgIndexZero, "Index must not be 0 (one - based index)."},
    Message{msgOnlyImages, "You can only append an Image as a child of this object."},
    Message{msgOnlyColumnsOrViews,
            "You can onyl append Columns or Views as a child of this object."},
    Message{msgOnlyDrawings, "You can only append a Drawing as a child of this object."},
    Message{msgOnlyDocuments, "You can only append a Document as a child of this object."},
    Message{msgObjectNotInitialized, "Internal error.\n\nObject not initialized."},
    Message{msgDrawingAlreadyAttached, "The drawing is already attached to this object."},
    Message{msgOnlyCells, "You can only append a Cell as a child of this object."},
    Message{msgCellAlreadyAttached, "The cell is already attached to this object."},
    Message{msgOnlyClasses, "You can only append childs from type Class."},
    Message{msgOnlyCountryCodes, "You can only append CountryCodes as a child of this object."},
    Message{msgTableRefNotSet,
            "Before you try to get a table you have to set the table reference."},
    Message{msgBadLanguageCode, "This is not a valid ISO 639 language code."},
    Message{msgBadCountryCode, "This is not a valid ISO 3166 country code."},
    Message{msgBadOrderTarget, "This object is not a valid order target."},
    Message{msgUnknownOrderTargetName, "An unknown order target name was found."},
    Message{msgOnlyOrderMethods, "You can only append OrderMethod as a child of this object."},
    Message{msgOnlyStreets, "You can only append Street-Objects as a child of this object."},
    Message{msgOnlySupplierIDs, "You can only append SupplierID as a child of this object."},
    Message{msgOnlyECommerceCenterIDs,
            "You can only append ECommerceCenterID as a child of this object."},
    Message{msgOnlySupplierLocations,
            "You can only append SupplierLoation objects as a child of this object."},
    Message{msgDuplicateId, "A child with the same id already exists."},
    Message{msgIdNotFound, "No object with given id found."},
    Message{msgLastChild, "You can't remove the last child of this object."},
    Message{msgRowIdNotFound, "The Row id does not exist. "},
    Message{msgIndexOutOfRange, "Index is out of range."},
    Message{msgDownloadNotSupported, "Downloading file from internet is not yet supported."},
    Message{msgUploadNotSupported, "Uploading file to internet is not yet supported."},
    Message{msgCopyFileFailed, "Unable to copy file %1!S! from %2!S! to %3!S!."},
    Message{msgCreateDirectoryFailed, "Unable to create directory %1!S!."},
    Message{msgTableSaveFailed, "Error while saving table"},
    Message{msgNotTableFile, "The .xml file is not an vCATCatalogTable file."},
    Message{msgNotCatalogFile, "The .xml file is not an vCATCatalog file."},
    Message{msgUnknownTableURL, "You tried to attach a table with unknown URL."},
    Message{msgNoCellsHere, "Only views and columns have cells"},
    Message{msgOnlyInfoCells, "You can only append a TableInfoCell as child of this object."},
    Message{msgOnlyExtrinsics, "You can only append a Extrinsic as child of this object."},
    Message{msgOnlyRecipes, "You can only append a Recipe as a child of this object."},
    Message{msgOnlyRefCells, "You can only append a reference rows as a child of this object."},
};

static_assert(std::is_sorted(messages.begin(), messages.end(),
                             [](const Message& a, const Message& b) {
                                 return a.number < b.number;
                             }));

} // namespace

std::string_view messageText(std::uint32_t number) {
    auto it = std::lower_bound(messages.begin(), messages.end(), number,
                               [](const Message& m, std::uint32_t n) { return m.number < n; });
    return it != messages.end() && it->number == number ? it->text : std::string_view();
}

} // namespace qvr
