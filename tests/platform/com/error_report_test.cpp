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

TEST(ReportError, StatusAndRecordOfEachKindOfReport) {
    EXPECT_EQ(reportError(from, 116, E_FAIL), E_FAIL);
    ErrorInfo info = take();
    EXPECT_EQ(info.description, String("Internal error.\n\nObject not initialized."));
    EXPECT_EQ(info.source, String("QVRCatalog.Part"));
    EXPECT_EQ(info.interface, String("IQVRCatalogPart"));
    EXPECT_TRUE(info.helpFile.isNull());
    EXPECT_EQ(info.helpContext, 0u);
    EXPECT_FALSE(GetErrorInfo(&info)); // reading clears the record

    // A given status stays. Status 0 becomes the interface facility of a number that fits in
    // 16 bits, DISP_E_EXCEPTION otherwise and for texts; a number not in the table reads as
    // "Unknown Error".
    const struct {
        std::uint32_t number;
        const char* text; // reported instead of the number when set
        HRESULT given, status;
        const char* description;
    } reports[] = {
        {134, nullptr, 0, makeStatus(0x80040000u | 134),
         "A child with the same id already exists."},
        {999, nullptr, 0, makeStatus(0x80040000u | 999), "Unknown Error"},
        {0, nullptr, 0, makeStatus(0x80040000u), "Unknown Error"},
        {70000, nullptr, 0, DISP_E_EXCEPTION, "Unknown Error"},
        {70000, nullptr, E_INVALIDARG, E_INVALIDARG, "Unknown Error"},
        {0, "Error while saving table /x.xml", 0, DISP_E_EXCEPTION,
         "Error while saving table /x.xml"},
        {0, "composed", QVR_E_NOTTABLE, QVR_E_NOTTABLE, "composed"},
    };
    for (const auto& r : reports) {
        SCOPED_TRACE(r.number);
        EXPECT_EQ(r.text ? reportError(from, String(r.text), r.given)
                         : reportError(from, r.number, r.given),
                  r.status);
        EXPECT_EQ(take().description, String(r.description));
    }

    // Help is recorded only with both a file and a context.
    reportError(from, 116, E_FAIL, 42, String("help.chm"));
    info = take();
    EXPECT_EQ(info.helpContext, 42u);
    EXPECT_EQ(info.helpFile, String("help.chm"));
    reportError(from, 116, E_FAIL, 42, String());
    info = take();
    EXPECT_EQ(info.helpContext, 0u);
    EXPECT_TRUE(info.helpFile.isNull());
    reportError(from, 116, E_FAIL, 0, String("help.chm"));
    EXPECT_TRUE(take().helpFile.isNull());

    // The source may be left out; the latest report wins.
    reportError({nullptr, IID{"IQVRCatalog"}}, 102, E_FAIL);
    reportError(from, 136, E_FAIL);
    EXPECT_EQ(take().description, String("You can't remove the last child of this object."));
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

// The texts themselves are checked where the model reports them; here a number without a text,
// and the inserts.
TEST(Messages, TableTextsAndInserts) {
    EXPECT_TRUE(messageText(104).empty());
    EXPECT_EQ(formatInserts(messageText(144), {"file:///d/"}),
              String("Unable to create directory file:///d/."));
    EXPECT_EQ(formatInserts("%2 and %1, %3", {"a", "b"}), String("b and a, "));
}

} // namespace
} // namespace qvr
