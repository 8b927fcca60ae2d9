#include <qvr/variant.h>

#include <gtest/gtest.h>

#include "variant_values.h"

namespace qvr {
namespace {

constexpr LCID US = LCID_EN_US;
constexpr LCID DE = LCID_DE_DE;
constexpr LCID FR = LCID_FR_FR;
constexpr LCID GB = LCID_EN_GB;

struct Case {
    int line;
    Variant src;
    LCID lcid;
    VARTYPE vt;
    HRESULT hr;
    Variant expected; // meaningful only on success
    std::uint16_t flags = 0;
};

void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "case at line " << c.line);
        Variant out = Str("untouched");
        HRESULT hr = changeType(&out, c.src, c.lcid, c.flags, c.vt);
        EXPECT_EQ(hr, c.hr);
        if (SUCCEEDED(c.hr))
            EXPECT_EQ(out, c.expected);
        else
            EXPECT_EQ(out, Str("untouched")); // a failure leaves the destination alone
    }
}

TEST(ChangeType, NumbersToText) {
    check({
        {__LINE__, R8(25.5), US, VT_BSTR, S_OK, Str("25.5")},
        {__LINE__, R8(25.5), DE, VT_BSTR, S_OK, Str("25,5")},
        {__LINE__, R8(-1.5), FR, VT_BSTR, S_OK, Str("-1,5")},
        {__LINE__, R8(0), US, VT_BSTR, S_OK, Str("0")},
        {__LINE__, R8(1.0 / 3), US, VT_BSTR, S_OK, Str("0.333333333333333")},
        {__LINE__, R8(2.0 / 3), US, VT_BSTR, S_OK, Str("0.666666666666667")},
        {__LINE__, R8(1e14), US, VT_BSTR, S_OK, Str("100000000000000")},
        {__LINE__, R8(1e15), US, VT_BSTR, S_OK, Str("1E+15")},
        {__LINE__, R8(1e20), US, VT_BSTR, S_OK, Str("1E+20")},
        {__LINE__, R8(1.5e100), DE, VT_BSTR, S_OK, Str("1,5E+100")},
        {__LINE__, R8(123456789012345678.0), US, VT_BSTR, S_OK, Str("1.23456789012346E+17")},
        {__LINE__, R8(0.0001), US, VT_BSTR, S_OK, Str("0.0001")},
        {__LINE__, R8(0.00001), US, VT_BSTR, S_OK, Str("1E-05")},
        {__LINE__, R8(-0.000012345), US, VT_BSTR, S_OK, Str("-1.2345E-05")},
        {__LINE__, R8(0.1 + 0.2), US, VT_BSTR, S_OK, Str("0.3")},
        {__LINE__, R4(1.0f / 3), US, VT_BSTR, S_OK, Str("0.3333333")},
        {__LINE__, R4(1234567.0f), US, VT_BSTR, S_OK, Str("1234567")},
        {__LINE__, R4(1e7f), US, VT_BSTR, S_OK, Str("1E+07")},
        {__LINE__, R4(25.5f), DE, VT_BSTR, S_OK, Str("25,5")},
        {__LINE__, Cy(1.5), US, VT_BSTR, S_OK, Str("1.5")},
        {__LINE__, Cy(12.3456), DE, VT_BSTR, S_OK, Str("12,3456")},
        {__LINE__, Cy(-0.05), US, VT_BSTR, S_OK, Str("-0.05")},
        {__LINE__, Cy(100), US, VT_BSTR, S_OK, Str("100")},
        {__LINE__, I2(-5), DE, VT_BSTR, S_OK, Str("-5")},
        {__LINE__, I4(1234567), DE, VT_BSTR, S_OK, Str("1234567")},
        {__LINE__, Byte(200), US, VT_BSTR, S_OK, Str("200")},
        {__LINE__, Empty(), US, VT_BSTR, S_OK, Str("")},
    });
}

TEST(ChangeType, BooleansToText) {
    check({
        {__LINE__, Bool(true), US, VT_BSTR, S_OK, Str("-1")},
        {__LINE__, Bool(false), DE, VT_BSTR, S_OK, Str("0")},
        {__LINE__, Bool(true), DE, VT_BSTR, S_OK, Str("True"), VARIANT_ALPHABOOL},
        {__LINE__, Bool(false), US, VT_BSTR, S_OK, Str("False"), VARIANT_ALPHABOOL},
        {__LINE__, Bool(true), US, VT_BSTR, S_OK, Str("True"), VARIANT_LOCALBOOL},
        {__LINE__, Bool(true), DE, VT_BSTR, S_OK, Str("Wahr"), VARIANT_LOCALBOOL},
        {__LINE__, Bool(false), DE, VT_BSTR, S_OK, Str("Falsch"), VARIANT_LOCALBOOL},
        {__LINE__, Bool(true), FR, VT_BSTR, S_OK, Str("Vrai"), VARIANT_LOCALBOOL},
        {__LINE__, Bool(false), FR, VT_BSTR, S_OK, Str("Faux"),
         VARIANT_LOCALBOOL | VARIANT_ALPHABOOL},
    });
}

TEST(ChangeType, TextToNumbers) {
    check({
        // Separators of the locale; the group separator is skipped wherever it stands.
        {__LINE__, Str("1.234,5"), DE, VT_R8, S_OK, R8(1234.5)},
        {__LINE__, Str("1.234,5"), US, VT_R8, S_OK, R8(1.2345)},
        {__LINE__, Str("1,234.5"), US, VT_R8, S_OK, R8(1234.5)},
        {__LINE__, Str("25,5"), DE, VT_R8, S_OK, R8(25.5)},
        {__LINE__, Str("25.5"), GB, VT_R8, S_OK, R8(25.5)},
        {__LINE__,
         Str("1\xC2\xA0"
             "234,5"),
         FR, VT_R8, S_OK, R8(1234.5)},
        {__LINE__, Str("1 234,5"), FR, VT_R8, S_OK, R8(1234.5)},
        {__LINE__, Str("1 234"), US, VT_R8, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("1.2.3"), US, VT_R8, DISP_E_TYPEMISMATCH, {}},
        // Blanks, signs, parentheses, currency and exponents.
        {__LINE__, Str("  12  "), US, VT_R8, S_OK, R8(12)},
        {__LINE__, Str("-3"), US, VT_R8, S_OK, R8(-3)},
        {__LINE__, Str("+3"), US, VT_I4, S_OK, I4(3)},
        {__LINE__, Str("5-"), US, VT_I2, S_OK, I2(-5)},
        {__LINE__, Str("(5)"), US, VT_I2, S_OK, I2(-5)},
        {__LINE__, Str("(5"), US, VT_I2, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("$5"), US, VT_R8, S_OK, R8(5)},
        {__LINE__, Str("5 \xE2\x82\xAC"), DE, VT_R8, S_OK, R8(5)},
        {__LINE__, Str(".5"), US, VT_R8, S_OK, R8(0.5)},
        {__LINE__, Str("5."), US, VT_R8, S_OK, R8(5)},
        {__LINE__, Str("1e3"), US, VT_R8, S_OK, R8(1000)},
        {__LINE__, Str("1,5E-2"), DE, VT_R8, S_OK, R8(0.015)},
        {__LINE__, Str("1e"), US, VT_R8, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("1e400"), US, VT_R8, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("1e-400"), US, VT_R8, S_OK, R8(0)},
        {__LINE__, Str("1e39"), US, VT_R4, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("0.1"), US, VT_R4, S_OK, R4(0.1f)},
        // Hexadecimal and octal.
        {__LINE__, Str("&H10"), US, VT_I4, S_OK, I4(16)},
        {__LINE__, Str("&o17"), US, VT_I2, S_OK, I2(15)},
        {__LINE__, Str("&HFFFF"), US, VT_I2, S_OK, I2(-1)},
        {__LINE__, Str("&HFFFF"), US, VT_I4, S_OK, I4(65535)},
        {__LINE__, Str("&HFFFFFFFF"), US, VT_I4, S_OK, I4(-1)},
        {__LINE__, Str("&H100000000"), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("&HFFFF"), US, VT_R8, S_OK, R8(-1)},
        {__LINE__, Str("&H"), US, VT_I4, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("&HG"), US, VT_I4, DISP_E_TYPEMISMATCH, {}},
        // Rounding half to even and ranges.
        {__LINE__, Str("2.5"), US, VT_I2, S_OK, I2(2)},
        {__LINE__, Str("3.5"), US, VT_I2, S_OK, I2(4)},
        {__LINE__, Str("-2.5"), US, VT_I2, S_OK, I2(-2)},
        {__LINE__, Str("2,5000001"), DE, VT_I2, S_OK, I2(3)},
        {__LINE__, Str("32767"), US, VT_I2, S_OK, I2(32767)},
        {__LINE__, Str("32767.5"), US, VT_I2, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("-32768"), US, VT_I2, S_OK, I2(-32768)},
        {__LINE__, Str("2147483648"), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("99999999999999999999999"), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("255"), US, VT_UI1, S_OK, Byte(255)},
        {__LINE__, Str("256"), US, VT_UI1, DISP_E_OVERFLOW, {}},
        {__LINE__, Str("-1"), US, VT_UI1, DISP_E_OVERFLOW, {}},
        // Currency keeps four decimals exactly, rounded half to even.
        {__LINE__, Str("1.23456"), US, VT_CY, S_OK, Cy(1.2346)},
        {__LINE__, Str("0.00005"), US, VT_CY, S_OK, Cy(0)},
        {__LINE__, Str("0.00015"), US, VT_CY, S_OK, Cy(0.0002)},
        {__LINE__, Str("-12,5"), DE, VT_CY, S_OK, Cy(-12.5)},
        {__LINE__, Str("9e14"), US, VT_CY, S_OK, Cy(9e14)},
        {__LINE__, Str("1e15"), US, VT_CY, DISP_E_OVERFLOW, {}},
        // Text that is no number.
        {__LINE__, Str(""), US, VT_R8, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("   "), US, VT_I2, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("abc"), US, VT_I4, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("12abc"), US, VT_I4, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("True"), US, VT_I2, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Variant(String()), US, VT_I2, DISP_E_TYPEMISMATCH, {}},
    });
}

TEST(ChangeType, TextToBoolean) {
    check({
        {__LINE__, Str("True"), US, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, Str(" false "), US, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Str("TRUE"), DE, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, Str("wahr"), DE, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, Str("Falsch"), DE, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Str("Vrai"), FR, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, Str("Wahr"), US, VT_BOOL, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Str("0"), US, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Str("2,5"), DE, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, Str("yes"), US, VT_BOOL, DISP_E_TYPEMISMATCH, {}},
    });
}

TEST(ChangeType, BetweenNumbers) {
    check({
        {__LINE__, R8(2.5), US, VT_I2, S_OK, I2(2)},
        {__LINE__, R8(3.5), US, VT_I2, S_OK, I2(4)},
        {__LINE__, R8(-2.5), US, VT_I2, S_OK, I2(-2)},
        {__LINE__, R8(-3.5), US, VT_I4, S_OK, I4(-4)},
        {__LINE__, R8(2.4999), US, VT_I4, S_OK, I4(2)},
        {__LINE__, R8(32767.4), US, VT_I2, S_OK, I2(32767)},
        {__LINE__, R8(32767.5), US, VT_I2, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(2147483647.5), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(-2147483648.0), US, VT_I4, S_OK, I4(-2147483647 - 1)},
        {__LINE__, R8(1e300), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(std::nan("")), US, VT_I4, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(1e39), US, VT_R4, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(0.5), US, VT_R4, S_OK, R4(0.5f)},
        {__LINE__, R4(2.5f), US, VT_I2, S_OK, I2(2)},
        {__LINE__, I4(70000), US, VT_I2, DISP_E_OVERFLOW, {}},
        {__LINE__, I4(-70000), US, VT_R8, S_OK, R8(-70000)},
        {__LINE__, I2(-1), US, VT_UI1, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(255.4), US, VT_UI1, S_OK, Byte(255)},
        {__LINE__, R8(-0.4), US, VT_UI1, S_OK, Byte(0)},
        {__LINE__, Byte(7), US, VT_I2, S_OK, I2(7)},
        // Currency: four decimals, half to even both ways.
        {__LINE__, R8(1.5), US, VT_CY, S_OK, Cy(1.5)},
        {__LINE__, R8(0.00005), US, VT_CY, S_OK, Cy(0)},
        {__LINE__, R8(-9e14), US, VT_CY, S_OK, Cy(-9e14)},
        {__LINE__, R8(1e15), US, VT_CY, DISP_E_OVERFLOW, {}},
        {__LINE__, Cy(2.5), US, VT_I2, S_OK, I2(2)},
        {__LINE__, Cy(3.5), US, VT_I4, S_OK, I4(4)},
        {__LINE__, Cy(-2.5), US, VT_I4, S_OK, I4(-2)},
        {__LINE__, Cy(-3.5001), US, VT_I4, S_OK, I4(-4)},
        {__LINE__, Cy(1.25), US, VT_R8, S_OK, R8(1.25)},
        {__LINE__, I2(3), US, VT_CY, S_OK, Cy(3)},
        // Booleans: True is -1, all bits set.
        {__LINE__, Bool(true), US, VT_I2, S_OK, I2(-1)},
        {__LINE__, Bool(true), US, VT_R8, S_OK, R8(-1)},
        {__LINE__, Bool(true), US, VT_CY, S_OK, Cy(-1)},
        {__LINE__, Bool(true), US, VT_UI1, S_OK, Byte(255)},
        {__LINE__, Bool(false), US, VT_I4, S_OK, I4(0)},
        {__LINE__, R8(0.1), US, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, I2(0), US, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Cy(0.0001), US, VT_BOOL, S_OK, Bool(true)},
        // Dates are numbers of days.
        {__LINE__, Date(1.75), US, VT_R8, S_OK, R8(1.75)},
        {__LINE__, Date(1.5), US, VT_I2, S_OK, I2(2)},
        {__LINE__, R8(36526.5), US, VT_DATE, S_OK, Date(36526.5)},
        {__LINE__, I4(3000000), US, VT_DATE, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(-700000), US, VT_DATE, DISP_E_OVERFLOW, {}},
        {__LINE__, Bool(true), US, VT_DATE, S_OK, Date(-1)},
    });
}

TEST(ChangeType, EmptyNullAndOthers) {
    IUnknown* nothing = nullptr;
    Variant array = Variant::array({I2(1), Str("a")});
    check({
        // Empty is 0, "" and False; Null converts to nothing but Null.
        {__LINE__, Empty(), US, VT_I2, S_OK, I2(0)},
        {__LINE__, Empty(), US, VT_R8, S_OK, R8(0)},
        {__LINE__, Empty(), US, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Empty(), US, VT_DATE, S_OK, Date(0)},
        {__LINE__, Empty(), US, VT_CY, S_OK, Cy(0)},
        {__LINE__, Empty(), US, VT_NULL, S_OK, Null()},
        {__LINE__, Null(), US, VT_I4, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Null(), US, VT_BSTR, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Null(), US, VT_BOOL, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Null(), US, VT_EMPTY, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Null(), US, VT_NULL, S_OK, Null()},
        {__LINE__, Null(), US, VT_VARIANT, S_OK, Null()},
        {__LINE__, I2(5), US, VT_EMPTY, S_OK, Empty()},
        {__LINE__, I2(5), US, VT_NULL, DISP_E_TYPEMISMATCH, {}},
        // The missing argument, objects and arrays.
        {__LINE__, Variant::missing(), US, VT_BSTR, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Variant::missing(), US, VT_I4, S_OK, I4(DISP_E_PARAMNOTFOUND)},
        {__LINE__, I4(DISP_E_PARAMNOTFOUND), US, VT_ERROR, S_OK, Variant::missing()},
        {__LINE__, Variant(nothing), US, VT_I2, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, Variant(nothing), US, VT_UNKNOWN, S_OK, Variant::unknown(nullptr)},
        {__LINE__, Empty(), US, VT_DISPATCH, S_OK, Variant(nothing)},
        {__LINE__, Str("x"), US, VT_DISPATCH, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, array, US, VT_BSTR, DISP_E_TYPEMISMATCH, {}},
        {__LINE__, array, US, VT_ARRAY | VT_VARIANT, S_OK, array},
        {__LINE__, Str("1"), US, VT_ARRAY | VT_VARIANT, DISP_E_TYPEMISMATCH, {}},
        // Types the variant cannot hold.
        {__LINE__, I2(1), US, VT_DECIMAL, DISP_E_BADVARTYPE, {}},
        {__LINE__, I2(1), US, VT_I8, DISP_E_BADVARTYPE, {}},
    });
}

TEST(ChangeType, InPlaceAndUserLocale) {
    Variant v = R8(25.5);
    EXPECT_EQ(changeType(&v, v, DE, 0, VT_BSTR), S_OK);
    EXPECT_EQ(v, Str("25,5"));
    EXPECT_EQ(changeType(nullptr, v, DE, 0, VT_BSTR), E_INVALIDARG);

    // LOCALE_USER_DEFAULT follows the process user locale; the table's locale 0 is en-US.
    LCID saved = GetUserLocale();
    EXPECT_EQ(saved, LCID_EN_US);
    SetUserLocale(LCID_DE_DE);
    EXPECT_EQ(GetUserLocale(), LCID_DE_DE);
    Variant out;
    EXPECT_EQ(changeType(&out, R8(1.5), LOCALE_USER_DEFAULT, 0, VT_BSTR), S_OK);
    EXPECT_EQ(out, Str("1,5"));
    EXPECT_EQ(changeType(&out, Str("1,5"), LOCALE_USER_DEFAULT, 0, VT_R8), S_OK);
    EXPECT_EQ(out, R8(1.5));
    EXPECT_EQ(changeType(&out, R8(1.5), LOCALE_NEUTRAL, 0, VT_BSTR), S_OK);
    EXPECT_EQ(out, Str("1.5"));
    // Another country of a known language reads as that language (de-AT).
    EXPECT_EQ(changeType(&out, R8(1.5), 0x0C07, 0, VT_BSTR), S_OK);
    EXPECT_EQ(out, Str("1,5"));
    SetUserLocale(saved);
}

} // namespace
} // namespace qvr
