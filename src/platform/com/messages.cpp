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
    Message{102, "The Catalog is not initialized yet.\n\nCall either create() or load() or "
                 "loadXML() to initialize the catalog."},
    Message{103, "XML parse error:\n\n%s\nFile: %s\nLine: %ld, Position: %ld, Code: "
                 "0x%08lX\n\n%s"},
    Message{105, "You can only append Chapters or Parts as a child of this object."},
    Message{106, "You can only append Chapters as a child of this object."},
    Message{108, "You can only append URL's as a child of this object."},
    Message{110, "The Table is not initialized yet.\n\nCall either create() or load() or "
                 "loadXML() to initialize the table."},
    Message{111, "Index must not be 0 (one - based index)."},
    Message{112, "You can only append an Image as a child of this object."},
    Message{113, "You can onyl append Columns or Views as a child of this object."},
    Message{114, "You can only append a Drawing as a child of this object."},
    Message{115, "You can only append a Document as a child of this object."},
    Message{116, "Internal error.\n\nObject not initialized."},
    Message{117, "The drawing is already attached to this object."},
    Message{118, "You can only append a Cell as a child of this object."},
    Message{119, "The cell is already attached to this object."},
    Message{120, "You can only append childs from type Class."},
    Message{121, "You can only append CountryCodes as a child of this object."},
    Message{122, "Before you try to get a table you have to set the table reference."},
    Message{123, "This is not a valid ISO 639 language code."},
    Message{124, "This is not a valid ISO 3166 country code."},
    Message{125, "This object is not a valid order target."},
    Message{126, "An unknown order target name was found."},
    Message{127, "You can only append OrderMethod as a child of this object."},
    Message{128, "You can only append Street-Objects as a child of this object."},
    Message{129, "You can only append SupplierID as a child of this object."},
    Message{130, "You can only append ECommerceCenterID as a child of this object."},
    Message{131, "You can only append SupplierLoation objects as a child of this object."},
    Message{134, "A child with the same id already exists."},
    Message{135, "No object with given id found."},
    Message{136, "You can't remove the last child of this object."},
    Message{137, "The Row id does not exist. "},
    Message{138, "Index is out of range."},
    Message{141, "Downloading file from internet is not yet supported."},
    Message{142, "Uploading file to internet is not yet supported."},
    Message{143, "Unable to copy file %1!S! from %2!S! to %3!S!."},
    Message{144, "Unable to create directory %1!S!."},
    Message{145, "Error while saving table"},
    Message{146, "The .xml file is not an vCATCatalogTable file."},
    Message{147, "The .xml file is not an vCATCatalog file."},
    Message{148, "You tried to attach a table with unknown URL."},
    Message{149, "Only views and columns have cells"},
    Message{150, "You can only append a TableInfoCell as child of this object."},
    Message{151, "You can only append a Extrinsic as child of this object."},
    Message{152, "You can only append a Recipe as a child of this object."},
    Message{153, "You can only append a reference rows as a child of this object."},
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
