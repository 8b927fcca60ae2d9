#include <qvr/variant.h>

#include <gtest/gtest.h>

#include "common/user_locale.h"
#include "platform/variant/locale_info.h"
#include "platform/variant/number_text.h"

namespace qvr {
namespace {

TEST(Locale, TableAndResolution) {
    EXPECT_STREQ(localeInfo(LCID_DE_DE).monthNames[2], "M\xC3\xA4rz");
    EXPECT_STREQ(localeInfo(LCID_FR_FR).dayNames[0], "dimanche");
    EXPECT_STREQ(localeInfo(LCID_EN_GB).currencySymbol, "\xC2\xA3");
    EXPECT_STREQ(localeInfo(LCID_DE_DE).trueName, "Wahr");
    EXPECT_EQ(resolveLocale(LOCALE_NEUTRAL), LCID_EN_US);
    EXPECT_EQ(resolveLocale(LOCALE_SYSTEM_DEFAULT), LCID_EN_US);
    EXPECT_EQ(resolveLocale(0x0C09), LCID_EN_US); // en-AU reads as English
    EXPECT_EQ(resolveLocale(0x0411), LCID_EN_US); // an unknown language falls back to en-US
    EXPECT_STREQ(localeInfo(LOCALE_INVARIANT).shortDate, "MM/dd/yyyy");

    testing::UserLocale french(LCID_FR_FR);
    EXPECT_EQ(resolveLocale(LOCALE_USER_DEFAULT), LCID_FR_FR);
    SetUserLocale(0x0807); // de-CH is kept as given and reads as the German entry
    EXPECT_EQ(GetUserLocale(), 0x0807u);
    EXPECT_EQ(resolveLocale(LOCALE_USER_DEFAULT), LCID_DE_DE);
    SetUserLocale(LOCALE_USER_DEFAULT); // no change
    EXPECT_EQ(GetUserLocale(), 0x0807u);
}

TEST(Locale, FixedNumbers) {
    const LocaleInfo& us = localeInfo(LCID_EN_US);
    const LocaleInfo& de = localeInfo(LCID_DE_DE);
    const LocaleInfo& fr = localeInfo(LCID_FR_FR);
    EXPECT_EQ(formatFixed(1234567.891, 2, true, true, us), "1,234,567.89");
    EXPECT_EQ(formatFixed(1234567.891, 2, true, true, de), "1.234.567,89");
    EXPECT_EQ(formatFixed(1234.5, 1, true, true, fr), "1\xC2\xA0"
                                                      "234,5");
    EXPECT_EQ(formatFixed(1234.5, 0, true, false, us), "1235"); // half away from zero
    EXPECT_EQ(formatFixed(0.125, 2, true, false, us), "0.13");
    EXPECT_EQ(formatFixed(-0.5, 2, false, false, us), ".50"); // the magnitude, no sign
    EXPECT_EQ(formatFixed(999.996, 2, true, true, us), "1,000.00");
    EXPECT_EQ(formatFixed(0, 3, true, true, us), "0.000");
    EXPECT_EQ(formatFixed(123, 0, false, true, us), "123");
    EXPECT_EQ(formatFixed(1e20, 0, true, true, us), "100,000,000,000,000,000,000");
    EXPECT_EQ(roundHalfEven(2.5), 2);
    EXPECT_EQ(roundHalfEven(-3.5), -4);
    EXPECT_EQ(formatCurrency(CY{-12345}, LCID_DE_DE), "-1,2345");
}

} // namespace
} // namespace qvr
