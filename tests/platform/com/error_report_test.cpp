#include "platform/com/error_report.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/com/messages.h"

namespace qvr {
namespace {

const ErrorSource from{"QVRCatalog.Part", IID{"IQVRCatalogPart"}};

ErrorInfo take() {
    ErrorInfo info;
    EXPECT_TRUE(GetErrorInfo(&info));
    return info;
}

TEST(ReportError, NumberedMessageKeepsGivenStatusAndFillsRecord) {
    EXPECT_EQ(reportError(from, 116, E_FAIL), E_FAIL);
    ErrorInfo info = take();
    EXPECT_EQ(info.description, String("Internal error.\n\nObject not initialized."));
    EXPECT_EQ(info.source, String("QVRCatalog.Part"));
    EXPECT_EQ(info.interface, String("IQVRCatalogPart"));
    EXPECT_TRUE(info.helpFile.isNull());
    EXPECT_EQ(info.helpContext, 0u);
    // Reading clears the record.
    EXPECT_FALSE(GetErrorInfo(&info));
}

TEST(ReportError, StatusZeroBecomesInterfaceFacilityOfTheNumber) {
    EXPECT_EQ(reportError(from, 134, 0), makeStatus(0x80040000u | 134));
    EXPECT_EQ(take().description, String("A child with the same id already exists."));
    // A number not in the table: "Unknown Error", same status rule.
    EXPECT_EQ(reportError(from, 999, 0), makeStatus(0x80040000u | 999));
    EXPECT_EQ(take().description, String("Unknown Error"));
    EXPECT_EQ(reportError(from, 0, 0), makeStatus(0x80040000u));
    EXPECT_EQ(take().description, String("Unknown Error"));
}

TEST(ReportError, LargeNumbersAndTextsKeepTheirStatusOrGiveDispException) {
    EXPECT_EQ(reportError(from, 70000, 0), DISP_E_EXCEPTION);
    EXPECT_EQ(take().description, String("Unknown Error"));
    EXPECT_EQ(reportError(from, 70000, E_INVALIDARG), E_INVALIDARG);
    take();

    EXPECT_EQ(reportError(from, String("Error while saving table /x.xml"), 0), DISP_E_EXCEPTION);
    EXPECT_EQ(take().description, String("Error while saving table /x.xml"));
    EXPECT_EQ(reportError(from, String("composed"), QVR_E_NOTTABLE), QVR_E_NOTTABLE);
    take();
}

TEST(ReportError, HelpIsRecordedOnlyWithBothFileAndContext) {
    reportError(from, 116, E_FAIL, 42, String("help.chm"));
    ErrorInfo info = take();
    EXPECT_EQ(info.helpContext, 42u);
    EXPECT_EQ(info.helpFile, String("help.chm"));

    reportError(from, 116, E_FAIL, 42, String());
    info = take();
    EXPECT_EQ(info.helpContext, 0u);
    EXPECT_TRUE(info.helpFile.isNull());

    reportError(from, 116, E_FAIL, 0, String("help.chm"));
    EXPECT_TRUE(take().helpFile.isNull());
}

TEST(ReportError, SourceMayBeLeftOutAndLatestReportWins) {
    reportError({nullptr, IID{"IQVRCatalog"}}, 102, E_FAIL);
    reportError(from, 136, E_FAIL);
    ErrorInfo info = take();
    EXPECT_EQ(info.description, String("You can't remove the last child of this object."));
    reportError({nullptr, IID{"IQVRCatalog"}}, 102, E_FAIL);
    EXPECT_TRUE(take().source.isNull());
}

TEST(ReportError, RecordIsPerThread) {
    reportError(from, 116, E_FAIL);
    bool seenElsewhere = true;
    std::thread([&] { seenElsewhere = GetErrorInfo(nullptr); }).join();
    EXPECT_FALSE(seenElsewhere);
    EXPECT_TRUE(GetErrorInfo(nullptr));
}

TEST(Messages, TableTextsAndInserts) {
    EXPECT_EQ(messageText(113), "You can onyl append Columns or Views as a child of this object.");
    EXPECT_EQ(messageText(137), "The Row id does not exist. ");
    EXPECT_TRUE(messageText(104).empty());
    EXPECT_EQ(formatInserts(messageText(143), {"a.xml", "file:///x/", "file:///y/"}),
              String("Unable to copy file a.xml from file:///x/ to file:///y/."));
    EXPECT_EQ(formatInserts(messageText(144), {"file:///d/"}),
              String("Unable to create directory file:///d/."));
    EXPECT_EQ(formatInserts("%2 and %1, %3", {"a", "b"}), String("b and a, "));
}

} // namespace
} // namespace qvr
