#include <qvr/variant.h>

#include <gtest/gtest.h>

#include <array>

#include "platform/variant/locale_info.h"
#include "platform/variant/ole_date.h"
#include "variant_values.h"

namespace qvr {
namespace {

constexpr LCID US = LCID_EN_US;
constexpr LCID DE = LCID_DE_DE;

double seconds(int h, int m, int s) {
    return (h * 3600 + m * 60 + s) / 86400.0;
}

// The parts a date is read into, with its day of the week.
std::array<int, 8> fields(const DateParts& p) {
    return {p.year, p.month, p.day, p.hour, p.minute, p.second, p.millisecond, p.dayOfWeek};
}

TEST(OleDate, PartsBothWays) {
    struct Row {
        DATE date;
        DateParts parts;
    };
    const Row rows[] = {
        {0.0, {1899, 12, 30, 0, 0, 0, 0, 6}},
        {1.5, {1899, 12, 31, 12, 0, 0, 0, 0}},
        {-1.5, {1899, 12, 29, 12, 0, 0, 0, 5}}, // the fraction counts forward
        {-1.25, {1899, 12, 29, 6, 0, 0, 0, 5}},
        {36526.0, {2000, 1, 1, 0, 0, 0, 0, 6}},
        {36585.0, {2000, 2, 29, 0, 0, 0, 0, 2}},
        {36527 + seconds(15, 4, 5), {2000, 1, 2, 15, 4, 5, 0, 0}},
        {-657434.0, {100, 1, 1, 0, 0, 0, 0, 5}},
        {2958465 + seconds(23, 59, 59), {9999, 12, 31, 23, 59, 59, 0, 5}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.date);
        DateParts p;
        ASSERT_TRUE(dateToParts(r.date, &p));
        EXPECT_EQ(fields(p), fields(r.parts));
        DATE back;
        ASSERT_TRUE(dateFromParts(r.parts, &back));
        EXPECT_NEAR(back, r.date, 1e-9);
    }

    // Times round to the nearest second; the last half second of a day rolls into the next.
    DateParts p;
    ASSERT_TRUE(dateToParts(1 + 0.9999999, &p));
    EXPECT_EQ(p.day, 1);
    EXPECT_EQ(p.hour, 0);

    // Parts past their ends roll over; years outside 100..9999 are refused.
    DATE d;
    ASSERT_TRUE(dateFromParts({2000, 13, 1}, &d));
    EXPECT_EQ(d, 36892.0); // 2001-01-01
    ASSERT_TRUE(dateFromParts({2000, 3, 0}, &d));
    EXPECT_EQ(d, 36585.0); // the day before March 1st
    EXPECT_FALSE(dateFromParts({99, 12, 31}, &d));
    EXPECT_FALSE(dateFromParts({10000, 1, 1}, &d));
    EXPECT_FALSE(dateFromParts({9999, 13, 1}, &d));
    EXPECT_FALSE(dateToParts(3e6, &p));
    EXPECT_FALSE(dateToParts(std::nan(""), &p));
}

TEST(OleDate, ToText) {
    struct Row {
        DATE date;
        LCID lcid;
        const char* text;
    } const rows[] = {
        {1.5, US, "12/31/1899 12:00:00 PM"},
        {1.5, DE, "31.12.1899 12:00:00"},
        {0.0, US, "12:00:00 AM"},
        {0.0, DE, "00:00:00"},
        {seconds(15, 4, 5), US, "3:04:05 PM"},
        {36527.0, US, "1/2/2000"},
        {36527.0, DE, "02.01.2000"},
        {36527.0, LCID_EN_GB, "02/01/2000"},
        {36527.0, LCID_FR_FR, "02/01/2000"},
        {-1.5, US, "12/29/1899 12:00:00 PM"},
        {-657434.0, US, "1/1/0100"},
        {36527 + seconds(0, 0, 1), DE, "02.01.2000 00:00:01"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.text);
        Variant out;
        EXPECT_EQ(changeType(&out, Date(r.date), r.lcid, 0, VT_BSTR), S_OK);
        EXPECT_EQ(out, Str(r.text));
    }
    EXPECT_EQ(formatDate(36527.0, US, DateForm::LongDate), "Sunday, January 2, 2000");
    EXPECT_EQ(formatDate(36527.0, DE, DateForm::LongDate), "Sonntag, 2. Januar 2000");
    EXPECT_EQ(formatDate(36586.0, LCID_FR_FR, DateForm::LongDate), "mercredi 1 mars 2000");
    EXPECT_EQ(formatDate(36527 + seconds(15, 4, 0), US, DateForm::ShortTime), "3:04 PM");
    EXPECT_EQ(formatDate(36527 + seconds(15, 4, 0), DE, DateForm::ShortTime), "15:04");
    DateParts p;
    dateToParts(36527.0, &p);
    EXPECT_EQ(formatDatePicture(p, "ddd d MMM yy 'at' H 'o''clock'", localeInfo(US)),
              "Sun 2 Jan 00 at 0 o'clock");
    Variant out = Str("untouched");
    EXPECT_EQ(changeType(&out, Date(1e7), US, 0, VT_BSTR), E_INVALIDARG);
}

TEST(OleDate, FromText) {
    struct Row {
        const char* text;
        LCID lcid;
        HRESULT hr;
        DATE date;
    } const rows[] = {
        {"1/2/2000", US, S_OK, 36527},
        {"1/2/2000 3:04:05 PM", US, S_OK, 36527 + seconds(15, 4, 5)},
        {"1/2/2000 12:30 am", US, S_OK, 36527 + seconds(0, 30, 0)},
        {"January 2, 2000", US, S_OK, 36527},
        {"Sunday, January 2, 2000", US, S_OK, 36527},
        {"2 Jan 2000", US, S_OK, 36527},
        {"2000-01-02", US, S_OK, 36527},
        {"2000-01-02", DE, S_OK, 36527},
        {"13/1/2000", US, S_OK, 36538}, // no 13th month: read day first
        {"1/2/2000", LCID_EN_GB, S_OK, 36557},
        {"02.01.2000", DE, S_OK, 36527},
        {"2.1.2000 15:04", DE, S_OK, 36527 + seconds(15, 4, 0)},
        {"2. Januar 2000", DE, S_OK, 36527},
        {"Sonntag, 2. Januar 2000", DE, S_OK, 36527},
        {"2 mars 2000", LCID_FR_FR, S_OK, 36587},
        {"15:04", US, S_OK, seconds(15, 4, 0)},
        {"3:04 PM", US, S_OK, seconds(15, 4, 0)},
        {"3 PM", US, S_OK, seconds(15, 0, 0)},
        {"12:00:00 AM", US, S_OK, 0},
        {"12/31/1899 12:00:00 PM", US, S_OK, 1.5},
        {"12/29/1899 12:00:00 PM", US, S_OK, -1.5},
        {"1/2/30", US, S_OK, 10960}, // 1930-01-02
        {"1/2/29", US, S_OK, 47120}, // 2029-01-02
        {"2/30/2000", US, DISP_E_TYPEMISMATCH, 0},
        {"25:00", US, DISP_E_TYPEMISMATCH, 0},
        {"10:61", US, DISP_E_TYPEMISMATCH, 0},
        {"13:00 PM", US, DISP_E_TYPEMISMATCH, 0},
        {"1/2/2000 x", US, DISP_E_TYPEMISMATCH, 0},
        {"36526", US, DISP_E_TYPEMISMATCH, 0},
        {"1/2/3/4", US, DISP_E_TYPEMISMATCH, 0},
        {"", US, DISP_E_TYPEMISMATCH, 0},
        {"abc", US, DISP_E_TYPEMISMATCH, 0},
        {"1/1/10000", US, DISP_E_TYPEMISMATCH, 0},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.text);
        Variant out = Str("untouched");
        EXPECT_EQ(changeType(&out, Str(r.text), r.lcid, 0, VT_DATE), r.hr);
        if (SUCCEEDED(r.hr)) {
            ASSERT_EQ(out.vt(), VT_DATE);
            EXPECT_NEAR(out.dateValue(), r.date, 1e-9);
        }
    }
    // What a locale writes, it reads back.
    for (LCID lcid : {US, DE, LCID_EN_GB, LCID_FR_FR}) {
        for (DATE d : {36527.0, 36527 + seconds(15, 4, 5), seconds(9, 8, 7), -1.5, 2958465.0}) {
            Variant text, back;
            ASSERT_EQ(changeType(&text, Date(d), lcid, 0, VT_BSTR), S_OK);
            ASSERT_EQ(changeType(&back, text, lcid, 0, VT_DATE), S_OK) << text.str();
            EXPECT_NEAR(back.dateValue(), d, 1e-9) << text.str();
            EXPECT_EQ(changeType(&back, Date(d), lcid, 0, VT_DATE), S_OK);
        }
    }
}

} // namespace
} // namespace qvr
