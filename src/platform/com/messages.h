// The numbered messages of the library. Every failure a user should read names one of these
// numbers, or carries a text composed for the occasion.
#pragma once

#include <cstdint>
#include <string_view>

namespace qvr {

// The numbered messages by what they say. The numbers are part of what a failure tells its
// reader, so each name keeps its number exactly; the texts stand in
// messages.cpp. A message number converts to the std::uint32_t that report() takes.
enum Msg : std::uint32_t {
    msgCatalogNotInitialized = 102,
    msgXmlParseError = 103,
    msgOnlyChaptersOrParts = 105,
    msgOnlyChapters = 106,
    msgOnlyURLs = 108,
    msgTableNotInitialized = 110,
    msgIndexZero = 111,
    msgOnlyImages = 112,
    msgOnlyColumnsOrViews = 113,
    msgOnlyDrawings = 114,
    msgOnlyDocuments = 115,
    msgObjectNotInitialized = 116,
    msgDrawingAlreadyAttached = 117,
    msgOnlyCells = 118,
    msgCellAlreadyAttached = 119,
    msgOnlyClasses = 120,
    msgOnlyCountryCodes = 121,
    msgTableRefNotSet = 122,
    msgBadLanguageCode = 123,
    msgBadCountryCode = 124,
    msgBadOrderTarget = 125,
    msgUnknownOrderTargetName = 126,
    msgOnlyOrderMethods = 127,
    msgOnlyStreets = 128,
    msgOnlySupplierIDs = 129,
    msgOnlyECommerceCenterIDs = 130,
    msgOnlySupplierLocations = 131,
    msgDuplicateId = 134,
    msgIdNotFound = 135,
    msgLastChild = 136,
    msgRowIdNotFound = 137,
    msgIndexOutOfRange = 138,
    msgDownloadNotSupported = 141,
    msgUploadNotSupported = 142,
    msgCopyFileFailed = 143,
    msgCreateDirectoryFailed = 144,
    msgTableSaveFailed = 145,
    msgNotTableFile = 146,
    msgNotCatalogFile = 147,
    msgUnknownTableURL = 148,
    msgNoCellsHere = 149,
    msgOnlyInfoCells = 150,
    msgOnlyExtrinsics = 151,
    msgOnlyRecipes = 152,
    msgOnlyRefCells = 153,
};

// The text of a numbered message, or an empty view when the number is not in the table.
std::string_view messageText(std::uint32_t number);

} // namespace qvr
