#include <qvr/variant.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "common/user_locale.h"
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
        SCOPED_TRACE(::testing::Message() << "case at line " << c.line);
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
        {__LINE__, Cy(12.3456), DE, VT_BSTR, S_OK, Str("12,3456")},
        {__LINE__, Cy(-0.05), US, VT_BSTR, S_OK, Str("-0.05")},
        {__LINE__, Cy(100), US, VT_BSTR, S_OK, Str("100")},
    });
}

TEST(ChangeType, BooleansToText) {
    check({
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
        {__LINE__, R8(255.4), US, VT_UI1, S_OK, Byte(255)},
        {__LINE__, R8(-0.4), US, VT_UI1, S_OK, Byte(0)},
        // Currency: four decimals, half to even both ways. A Double rounds as its exact binary
        // value does: 0.00005 and 1.23465 lie just above the half.
        {__LINE__, R8(1.5), US, VT_CY, S_OK, Cy(1.5)},
        {__LINE__, R8(0.00005), US, VT_CY, S_OK, Cy(0.0001)},
        {__LINE__, R8(1.23465), US, VT_CY, S_OK, Cy(1.2347)},
        {__LINE__, R8(-9e14), US, VT_CY, S_OK, Cy(-9e14)},
        {__LINE__, R8(1e15), US, VT_CY, DISP_E_OVERFLOW, {}},
        {__LINE__, Cy(2.5), US, VT_I2, S_OK, I2(2)},
        {__LINE__, Cy(-2.5), US, VT_I4, S_OK, I4(-2)},
        {__LINE__, Cy(-3.5001), US, VT_I4, S_OK, I4(-4)},
        // Booleans: True is -1, all bits set.
        {__LINE__, Bool(false), US, VT_I4, S_OK, I4(0)},
        {__LINE__, R8(0.1), US, VT_BOOL, S_OK, Bool(true)},
        {__LINE__, I2(0), US, VT_BOOL, S_OK, Bool(false)},
        {__LINE__, Cy(0.0001), US, VT_BOOL, S_OK, Bool(true)},
        // Dates are numbers of days, within their range.
        {__LINE__, I4(3000000), US, VT_DATE, DISP_E_OVERFLOW, {}},
        {__LINE__, R8(-700000), US, VT_DATE, DISP_E_OVERFLOW, {}},
    });
}

TEST(ChangeType, EmptyNullAndOthers) {
    IUnknown* nothing = nullptr;
    Variant array = Variant::array({I2(1), Str("a")});
    check({
        // Empty is 0, "" and False; Null converts to nothing but Null.
        {__LINE__, Empty(), US, VT_NULL, S_OK, Null()},
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

    // LOCALE_USER_DEFAULT follows the process user locale (en-US until set); locale 0 is en-US;
    // another country of a known language reads as that language (de-AT).
    EXPECT_EQ(GetUserLocale(), LCID_EN_US);
    testing::UserLocale german(DE);
    check({
        {__LINE__, R8(1.5), LOCALE_USER_DEFAULT, VT_BSTR, S_OK, Str("1,5")},
        {__LINE__, Str("1,5"), LOCALE_USER_DEFAULT, VT_R8, S_OK, R8(1.5)},
        {__LINE__, R8(1.5), LOCALE_NEUTRAL, VT_BSTR, S_OK, Str("1.5")},
        {__LINE__, R8(1.5), 0x0C07, VT_BSTR, S_OK, Str("1,5")},
    });
}

// Every source type to every target type the model and the formula language use, under en-US
// and de-DE. Only text differs between the two locales. The tables above hold the edges of each
// conversion; a plain case of a pair stands here only.
struct Expect {
    HRESULT hr;
    Variant value;
    bool checked = true;
};
Expect ok(Variant v) {
    return {S_OK, std::move(v)};
}
const Expect kOverflow{DISP_E_OVERFLOW, {}};
const Expect kMismatch{DISP_E_TYPEMISMATCH, {}};
const Expect kDependsOnToday{S_OK, {}, false};

TEST(ChangeType, EveryTypePair) {
    const VARTYPE targets[] = {VT_I2,   VT_I4,   VT_R4,  VT_R8,  VT_CY,
                               VT_DATE, VT_BOOL, VT_UI1, VT_BSTR};
    struct Row {
        int line;
        Variant src;
        std::array<Expect, 9> us, de; // in the order of `targets`
    };
    // A source that is no text converts alike under both locales, but to text.
    auto alike = [](int line, Variant src, const std::array<Expect, 8>& row, Expect us, Expect de) {
        Row r{line, std::move(src), {}, {}};
        std::copy(row.begin(), row.end(), r.us.begin());
        std::copy(row.begin(), row.end(), r.de.begin());
        r.us[8] = std::move(us);
        r.de[8] = std::move(de);
        return r;
    };
    const Expect M = kMismatch, O = kOverflow;
    const Row rows[] = {
        alike(__LINE__, Empty(),
              {ok(I2(0)), ok(I4(0)), ok(R4(0)), ok(R8(0)), ok(Cy(0)), ok(Date(0)), ok(Bool(false)),
               ok(Byte(0))},
              ok(Str("")), ok(Str(""))),
        alike(__LINE__, Null(), {M, M, M, M, M, M, M, M}, M, M),
        alike(__LINE__, I2(-3),
              {ok(I2(-3)), ok(I4(-3)), ok(R4(-3)), ok(R8(-3)), ok(Cy(-3)), ok(Date(-3)),
               ok(Bool(true)), O},
              ok(Str("-3")), ok(Str("-3"))),
        alike(__LINE__, I4(70000),
              {O, ok(I4(70000)), ok(R4(70000)), ok(R8(70000)), ok(Cy(70000)), ok(Date(70000)),
               ok(Bool(true)), O},
              ok(Str("70000")), ok(Str("70000"))),
        alike(__LINE__, R4(2.5f),
              {ok(I2(2)), ok(I4(2)), ok(R4(2.5f)), ok(R8(2.5)), ok(Cy(2.5)), ok(Date(2.5)),
               ok(Bool(true)), ok(Byte(2))},
              ok(Str("2.5")), ok(Str("2,5"))),
        alike(__LINE__, R8(1234.5),
              {ok(I2(1234)), ok(I4(1234)), ok(R4(1234.5f)), ok(R8(1234.5)), ok(Cy(1234.5)),
               ok(Date(1234.5)), ok(Bool(true)), O},
              ok(Str("1234.5")), ok(Str("1234,5"))),
        alike(__LINE__, Cy(3.5),
              {ok(I2(4)), ok(I4(4)), ok(R4(3.5f)), ok(R8(3.5)), ok(Cy(3.5)), ok(Date(3.5)),
               ok(Bool(true)), ok(Byte(4))},
              ok(Str("3.5")), ok(Str("3,5"))),
        alike(__LINE__, Date(1.5),
              {ok(I2(2)), ok(I4(2)), ok(R4(1.5f)), ok(R8(1.5)), ok(Cy(1.5)), ok(Date(1.5)),
               ok(Bool(true)), ok(Byte(2))},
              ok(Str("12/31/1899 12:00:00 PM")), ok(Str("31.12.1899 12:00:00"))),
        alike(__LINE__, Bool(true),
              {ok(I2(-1)), ok(I4(-1)), ok(R4(-1)), ok(R8(-1)), ok(Cy(-1)), ok(Date(-1)),
               ok(Bool(true)), ok(Byte(255))},
              ok(Str("-1")), ok(Str("-1"))),
        alike(__LINE__, Byte(200),
              {ok(I2(200)), ok(I4(200)), ok(R4(200)), ok(R8(200)), ok(Cy(200)), ok(Date(200)),
               ok(Bool(true)), ok(Byte(200))},
              ok(Str("200")), ok(Str("200"))),
        // Text is read in the locale: "1.234,5" is 1.2345 in en-US and 1234.5 in de-DE.
        {__LINE__,
         Str("1.234,5"),
         {ok(I2(1)), ok(I4(1)), ok(R4(1.2345f)), ok(R8(1.2345)), ok(Cy(1.2345)), M, ok(Bool(true)),
          ok(Byte(1)), ok(Str("1.234,5"))},
         {ok(I2(1234)), ok(I4(1234)), ok(R4(1234.5f)), ok(R8(1234.5)), ok(Cy(1234.5)), M,
          ok(Bool(true)), O, ok(Str("1.234,5"))}},
        {__LINE__,
         Str("2,5"),
         {ok(I2(25)), ok(I4(25)), ok(R4(25)), ok(R8(25)), ok(Cy(25)), kDependsOnToday,
          ok(Bool(true)), ok(Byte(25)), ok(Str("2,5"))},
         {ok(I2(2)), ok(I4(2)), ok(R4(2.5f)), ok(R8(2.5)), ok(Cy(2.5)), kDependsOnToday,
          ok(Bool(true)), ok(Byte(2)), ok(Str("2,5"))}},
        // In de-DE the points group digits: the text is also the number 2012000.
        {__LINE__,
         Str("02.01.2000"),
         {M, M, M, M, M, ok(Date(36557)), M, M, ok(Str("02.01.2000"))},
         {O, ok(I4(2012000)), ok(R4(2012000)), ok(R8(2012000)), ok(Cy(2012000)), ok(Date(36527)),
          ok(Bool(true)), O, ok(Str("02.01.2000"))}},
    };
    for (const Row& row : rows) {
        for (int locale = 0; locale < 2; ++locale) {
            LCID lcid = locale == 0 ? LCID_EN_US : LCID_DE_DE;
            const auto& expected = locale == 0 ? row.us : row.de;
            for (std::size_t t = 0; t < std::size(targets); ++t) {
                if (!expected[t].checked) continue;
                SCOPED_TRACE(::testing::Message() << "row at line " << row.line << ", lcid " << lcid
                                                  << ", vt " << targets[t]);
                Variant out;
                EXPECT_EQ(changeType(&out, row.src, lcid, 0, targets[t]), expected[t].hr);
                if (SUCCEEDED(expected[t].hr)) {
                    EXPECT_EQ(out, expected[t].value);
                }
            }
        }
    }
}

} // namespace
} // namespace qvr
