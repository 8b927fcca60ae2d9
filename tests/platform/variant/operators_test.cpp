#include <qvr/variant.h>

#include <gtest/gtest.h>

#include "common/user_locale.h"
#include "variant_values.h"

namespace qvr {
namespace {

using Binary = HRESULT (*)(const Variant&, const Variant&, Variant*);
using Unary = HRESULT (*)(const Variant&, Variant*);

struct BinaryCase {
    int line;
    Variant l, r;
    HRESULT hr;
    Variant expected;
};
struct UnaryCase {
    int line;
    Variant v;
    HRESULT hr;
    Variant expected;
};

// Runs each case through `call`; a failure leaves the result as it was.
template <class Case, class Call>
void run(const std::vector<Case>& cases, Call call) {
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "case at line " << c.line);
        Variant out = Str("untouched");
        EXPECT_EQ(call(c, &out), c.hr);
        EXPECT_EQ(out, SUCCEEDED(c.hr) ? c.expected : Str("untouched"));
    }
}
void check(Binary op, const std::vector<BinaryCase>& cases) {
    run(cases, [&](const BinaryCase& c, Variant* out) { return op(c.l, c.r, out); });
}
void check(Unary op, const std::vector<UnaryCase>& cases) {
    run(cases, [&](const UnaryCase& c, Variant* out) { return op(c.v, out); });
}

const Variant kMissing = Variant::missing();
const Variant kArray = Variant::array({I2(1)});

TEST(Operators, Add) {
    check(varAdd,
          {
              // Integer types grow on overflow: Byte to Integer to Long to Double.
              {__LINE__, I2(1), I2(2), S_OK, I2(3)},
              {__LINE__, I2(32767), I2(1), S_OK, I4(32768)},
              {__LINE__, I2(-32768), I2(-1), S_OK, I4(-32769)},
              {__LINE__, I4(2147483647), I2(1), S_OK, R8(2147483648.0)},
              {__LINE__, Byte(200), Byte(55), S_OK, Byte(255)},
              {__LINE__, Byte(200), Byte(56), S_OK, I2(256)},
              {__LINE__, Byte(1), I2(1), S_OK, I2(2)},
              {__LINE__, Bool(true), Bool(true), S_OK, I2(-2)},
              {__LINE__, Bool(true), Byte(1), S_OK, I2(0)},
              // Floating types.
              {__LINE__, R4(1.5f), I2(1), S_OK, R4(2.5f)},
              {__LINE__, R4(1.5f), I4(1), S_OK, R8(2.5)},
              {__LINE__, R4(3e38f), R4(3e38f), S_OK, R8(double(3e38f) * 2)},
              {__LINE__, R8(0.5), I4(1), S_OK, R8(1.5)},
              {__LINE__, R8(1e308), R8(1e308), DISP_E_OVERFLOW, {}},
              {__LINE__, Cy(1.5), R8(0.25), S_OK, Cy(1.75)},
              {__LINE__, Cy(900000000000000.0), Cy(100000000000000.0), DISP_E_OVERFLOW, {}},
              // Text: two texts join, a text and a number add as Doubles.
              {__LINE__, Str("10"), Str("5"), S_OK, Str("105")},
              {__LINE__, Str("10"), I2(5), S_OK, R8(15)},
              {__LINE__, I2(5), Str("1.5"), S_OK, R8(6.5)},
              {__LINE__, Str("abc"), I2(1), DISP_E_TYPEMISMATCH, {}},
              // Dates: a date and a number make a date.
              {__LINE__, Date(36526), I2(1), S_OK, Date(36527)},
              {__LINE__, R8(0.5), Date(36526), S_OK, Date(36526.5)},
              {__LINE__, Date(36526), Str("1"), S_OK, Date(36527)},
              {__LINE__, Date(2958465), I2(1), DISP_E_OVERFLOW, {}},
              // Empty is 0 or "", Null spreads.
              {__LINE__, Empty(), Empty(), S_OK, I2(0)},
              {__LINE__, Empty(), I4(7), S_OK, I4(7)},
              {__LINE__, Empty(), Byte(7), S_OK, Byte(7)},
              {__LINE__, Empty(), Bool(true), S_OK, I2(-1)},
              {__LINE__, Empty(), Str("a"), S_OK, Str("a")},
              {__LINE__, Str("a"), Empty(), S_OK, Str("a")},
              {__LINE__, Null(), I2(1), S_OK, Null()},
              {__LINE__, Str("a"), Null(), S_OK, Null()},
              // Objects, arrays and the missing argument are no operands.
              {__LINE__, kMissing, I2(1), DISP_E_TYPEMISMATCH, {}},
              {__LINE__, kArray, I2(1), DISP_E_TYPEMISMATCH, {}},
              {__LINE__, Variant(static_cast<IUnknown*>(nullptr)), I2(1), DISP_E_TYPEMISMATCH, {}},
          });
}

TEST(Operators, SubtractAndMultiply) {
    check(varSub, {
                      {__LINE__, I2(-32768), I2(1), S_OK, I4(-32769)},
                      {__LINE__, Byte(0), Byte(1), S_OK, I2(-1)},
                      {__LINE__, Str("10"), Str("4"), S_OK, R8(6)},
                      {__LINE__, Date(36527.5), Date(36526), S_OK, R8(1.5)},
                      {__LINE__, Date(36527), I2(1), S_OK, Date(36526)},
                      {__LINE__, Empty(), Empty(), S_OK, I2(0)},
                      {__LINE__, Cy(1), R8(0.00004), S_OK, Cy(1)},
                      {__LINE__, Null(), Empty(), S_OK, Null()},
                  });
    check(varMul,
          {
              {__LINE__, I2(200), I2(200), S_OK, I4(40000)},
              {__LINE__, I4(65536), I4(65536), S_OK, R8(4294967296.0)},
              {__LINE__, Byte(16), Byte(16), S_OK, I2(256)},
              {__LINE__, Bool(true), I2(3), S_OK, I2(-3)},
              {__LINE__, Date(2), I2(3), S_OK, R8(6)},
              {__LINE__, Str("2,5"), I2(2), S_OK, R8(50)}, // en-US: "," groups and is skipped
              {__LINE__, Cy(1.5), Cy(1.5), S_OK, Cy(2.25)},
              {__LINE__, Cy(1.5), I4(3), S_OK, Cy(4.5)},
              {__LINE__, Cy(1.5), R8(2.5), S_OK, R8(3.75)}, // as precise as the Double
              {__LINE__, Str("2"), Cy(1.5), S_OK, R8(3)},
              {__LINE__, Cy(0.0001), Cy(0.5), S_OK, Cy(0)},      // 0.00005 rounds half to even
              {__LINE__, Cy(0.0003), Cy(0.5), S_OK, Cy(0.0002)}, // 0.00015 too
              {__LINE__, R4(2), R4(0.5f), S_OK, R4(1)},
              {__LINE__, Empty(), Empty(), S_OK, I2(0)},
              {__LINE__, R8(1e200), R8(1e200), DISP_E_OVERFLOW, {}},
          });
}

TEST(Operators, Divide) {
    check(varDiv, {
                      {__LINE__, I2(1), I2(2), S_OK, R8(0.5)},
                      // A Single with a Single or a narrower whole number gives a Single.
                      {__LINE__, R4(1), R4(4), S_OK, R4(0.25f)},
                      {__LINE__, I2(1), R4(4), S_OK, R4(0.25f)},
                      {__LINE__, R4(1), Bool(true), S_OK, R4(-1)},
                      {__LINE__, Empty(), R4(4), S_OK, R4(0)},
                      {__LINE__, R4(1), I4(4), S_OK, R8(0.25)},
                      {__LINE__, R4(3e38f), R4(0.5f), S_OK, R8(double(3e38f) * 2)},
                      {__LINE__, Cy(1), I2(8), S_OK, R8(0.125)},
                      {__LINE__, Str("9"), Str("3"), S_OK, R8(3)},
                      {__LINE__, I2(1), I2(0), DISP_E_DIVBYZERO, {}},
                      {__LINE__, I2(0), I2(0), DISP_E_OVERFLOW, {}},
                      {__LINE__, I2(1), Empty(), DISP_E_DIVBYZERO, {}},
                      {__LINE__, Empty(), I2(5), S_OK, R8(0)},
                      {__LINE__, Empty(), Empty(), DISP_E_OVERFLOW, {}},
                      {__LINE__, R8(1e300), R8(1e-300), DISP_E_OVERFLOW, {}},
                      {__LINE__, Null(), I2(0), S_OK, Null()},
                  });
    check(varIdiv,
          {
              {__LINE__, I2(7), I2(2), S_OK, I2(3)},
              {__LINE__, I2(-7), I2(2), S_OK, I2(-3)},
              {__LINE__, R8(7.5), I2(2), S_OK, I4(4)},   // 8 \ 2: operands round half to even
              {__LINE__, R8(6.5), R8(2.5), S_OK, I4(3)}, // 6 \ 2
              {__LINE__, Byte(9), Byte(2), S_OK, Byte(4)},
              {__LINE__, Bool(true), Byte(1), S_OK, I2(-1)},
              {__LINE__, Str("9"), I2(2), S_OK, I4(4)},
              {__LINE__, I2(-32768), I2(-1), S_OK, I4(32768)},
              {__LINE__, I2(1), I2(0), DISP_E_DIVBYZERO, {}},
              {__LINE__, R8(0.4), I2(1), S_OK, I4(0)},
              {__LINE__, I2(1), R8(0.4), DISP_E_DIVBYZERO, {}},
              {__LINE__, Empty(), Empty(), DISP_E_DIVBYZERO, {}},
              {__LINE__, R8(1e10), I2(2), DISP_E_OVERFLOW, {}},
              {__LINE__, Null(), I2(0), S_OK, Null()},
          });
    check(varMod, {
                      {__LINE__, I2(7), I2(3), S_OK, I2(1)},
                      {__LINE__, I2(-7), I2(3), S_OK, I2(-1)},
                      {__LINE__, I2(7), I2(-3), S_OK, I2(1)},
                      {__LINE__, R8(5.5), I2(2), S_OK, I4(0)}, // 6 Mod 2
                      {__LINE__, I4(10), I2(0), DISP_E_DIVBYZERO, {}},
                      {__LINE__, Empty(), I2(3), S_OK, I2(0)},
                      {__LINE__, Null(), Null(), S_OK, Null()},
                  });
}

TEST(Operators, PowerAndConcatenate) {
    check(varPow, {
                      {__LINE__, I2(2), I2(10), S_OK, R8(1024)},
                      {__LINE__, I2(2), I2(-1), S_OK, R8(0.5)},
                      {__LINE__, Empty(), Empty(), S_OK, R8(1)},
                      {__LINE__, R8(10), I2(400), DISP_E_OVERFLOW, {}},
                      {__LINE__, I2(0), I2(-1), DISP_E_DIVBYZERO, {}},
                      {__LINE__, I2(-8), R8(1.0 / 3), E_INVALIDARG, {}},
                      {__LINE__, Null(), I2(0), S_OK, Null()},
                  });
    check(varCat, {
                      {__LINE__, Str("10"), I2(5), S_OK, Str("105")},
                      {__LINE__, R8(1.5), Str("x"), S_OK, Str("1.5x")},
                      {__LINE__, Bool(true), Str(""), S_OK, Str("True")},
                      {__LINE__, Null(), Str("a"), S_OK, Str("a")},
                      {__LINE__, Str("a"), Null(), S_OK, Str("a")},
                      {__LINE__, Null(), Null(), S_OK, Null()},
                      {__LINE__, Empty(), Empty(), S_OK, Str("")},
                      {__LINE__, Date(36527), Str(""), S_OK, Str("1/2/2000")},
                      {__LINE__, kMissing, Str(""), DISP_E_TYPEMISMATCH, {}},
                  });
    // Under a German user locale numbers and booleans join in German.
    testing::UserLocale german(LCID_DE_DE);
    Variant out;
    EXPECT_EQ(varCat(R8(25.5), Bool(false), &out), S_OK);
    EXPECT_EQ(out, Str("25,5Falsch"));
    EXPECT_EQ(varAdd(Str("1,5"), I2(1), &out), S_OK);
    EXPECT_EQ(out, R8(2.5));
}

TEST(Operators, ConcatenateIntoTheLeftOperand) {
    // Joining into the left operand's own slot (how running text is built) gives what a
    // separate result would, and leaves the operand as it was on failure.
    Variant text = Str("M");
    for (const Variant& piece : {I2(8), Str("x"), Null(), R8(1.5), Bool(true), Empty()})
        ASSERT_EQ(varCat(text, piece, &text), S_OK);
    EXPECT_EQ(text, Str("M8x1.5True"));
    EXPECT_EQ(varCat(text, kMissing, &text), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(text, Str("M8x1.5True"));
    EXPECT_EQ(varCat(text, Date(-1e9), &text), E_INVALIDARG);
    EXPECT_EQ(text, Str("M8x1.5True"));
    Variant nullText = Variant(String());
    ASSERT_EQ(varCat(nullText, Str("a"), &nullText), S_OK);
    EXPECT_EQ(nullText, Str("a")); // no longer the null string
    Variant number = I2(5);
    ASSERT_EQ(varCat(number, Str("0"), &number), S_OK);
    EXPECT_EQ(number, Str("50"));
}

TEST(Operators, Unary) {
    check(varNeg, {
                      {__LINE__, I2(5), S_OK, I2(-5)},
                      {__LINE__, I2(-32768), S_OK, I4(32768)},
                      {__LINE__, I4(-2147483647 - 1), S_OK, R8(2147483648.0)},
                      {__LINE__, Byte(5), S_OK, I2(-5)},
                      {__LINE__, Bool(true), S_OK, I2(1)},
                      {__LINE__, R4(1.5f), S_OK, R4(-1.5f)},
                      {__LINE__, Cy(2.5), S_OK, Cy(-2.5)},
                      {__LINE__, Date(1.5), S_OK, Date(-1.5)},
                      {__LINE__, Str("3"), S_OK, R8(-3)},
                      {__LINE__, Str("x"), DISP_E_TYPEMISMATCH, {}},
                      {__LINE__, Empty(), S_OK, I2(0)},
                      {__LINE__, Null(), S_OK, Null()},
                      {__LINE__, kMissing, DISP_E_TYPEMISMATCH, {}},
                  });
    check(varAbs, {
                      {__LINE__, I2(-32768), S_OK, I4(32768)},
                      {__LINE__, Bool(true), S_OK, I2(1)},
                      {__LINE__, R8(-2.5), S_OK, R8(2.5)},
                      {__LINE__, Date(-1.5), S_OK, Date(1.5)},
                      {__LINE__, Cy(-1), S_OK, Cy(1)},
                      {__LINE__, Str("-4"), S_OK, R8(4)},
                      {__LINE__, Null(), S_OK, Null()},
                  });
    check(varFix, {
                      {__LINE__, R8(-2.7), S_OK, R8(-2)},
                      {__LINE__, R4(2.7f), S_OK, R4(2)},
                      {__LINE__, Cy(-2.7), S_OK, Cy(-2)},
                      {__LINE__, Date(36526.75), S_OK, Date(36526)},
                      {__LINE__, Str("-2.7"), S_OK, R8(-2)},
                      {__LINE__, I2(7), S_OK, I2(7)},
                      {__LINE__, Bool(true), S_OK, I2(-1)},
                      {__LINE__, Empty(), S_OK, I2(0)},
                  });
    check(varInt, {
                      {__LINE__, R8(-2.2), S_OK, R8(-3)},
                      {__LINE__, R8(2.7), S_OK, R8(2)},
                      {__LINE__, Cy(-2.2), S_OK, Cy(-3)},
                      {__LINE__, Cy(2.7), S_OK, Cy(2)},
                      {__LINE__, Byte(9), S_OK, Byte(9)},
                      {__LINE__, Variant::currency(CY{INT64_MIN}), DISP_E_OVERFLOW, {}},
                      {__LINE__, Null(), S_OK, Null()},
                  });
    check(varNot, {
                      {__LINE__, Bool(true), S_OK, Bool(false)},
                      {__LINE__, I2(0), S_OK, I2(-1)},
                      {__LINE__, I4(5), S_OK, I4(-6)},
                      {__LINE__, Byte(0x0F), S_OK, Byte(0xF0)},
                      {__LINE__, R8(2.5), S_OK, I4(-3)}, // rounded to 2 first
                      {__LINE__, Str("True"), S_OK, Bool(false)},
                      {__LINE__, Str("7"), S_OK, I4(-8)},
                      {__LINE__, Empty(), S_OK, I2(-1)},
                      {__LINE__, Null(), S_OK, Null()},
                      {__LINE__, R8(1e10), DISP_E_OVERFLOW, {}},
                      {__LINE__, Str("x"), DISP_E_TYPEMISMATCH, {}},
                  });
}

TEST(Operators, Round) {
    struct Row {
        int line;
        Variant v;
        int decimals;
        HRESULT hr;
        Variant expected;
    };
    const std::vector<Row> rows = {
        {__LINE__, R8(2.5), 0, S_OK, R8(2)},
        {__LINE__, R8(3.5), 0, S_OK, R8(4)},
        {__LINE__, R8(-2.5), 0, S_OK, R8(-2)},
        {__LINE__, R8(2.675), 2, S_OK, R8(2.68)}, // as written, not as stored
        {__LINE__, R8(0.125), 2, S_OK, R8(0.12)},
        {__LINE__, R8(1.23456), 3, S_OK, R8(1.235)},
        {__LINE__, R8(0.0004), 2, S_OK, R8(0)},
        {__LINE__, R8(9.995), 2, S_OK, R8(10)},
        {__LINE__, R8(123.456), 10, S_OK, R8(123.456)},
        {__LINE__, R4(2.5f), 0, S_OK, R4(2)},
        {__LINE__, Cy(2.345), 2, S_OK, Cy(2.34)},
        {__LINE__, Cy(2.355), 2, S_OK, Cy(2.36)},
        {__LINE__, Cy(-2.5), 0, S_OK, Cy(-2)},
        {__LINE__, Variant::currency(CY{INT64_MAX}), 0, DISP_E_OVERFLOW, {}},
        {__LINE__, Date(36526.5), 0, S_OK, Date(36526)},
        {__LINE__, Str("2.5"), 0, S_OK, R8(2)},
        {__LINE__, I2(7), 2, S_OK, I2(7)},
        {__LINE__, Bool(true), 0, S_OK, I2(-1)},
        {__LINE__, Empty(), 0, S_OK, I2(0)},
        {__LINE__, Null(), 0, S_OK, Null()},
        {__LINE__, R8(1.5), -1, E_INVALIDARG, {}},
    };
    run(rows, [](const Row& r, Variant* out) { return varRound(r.v, r.decimals, out); });
}

TEST(Operators, LogicalWithNull) {
    const Variant T = Bool(true), F = Bool(false), N = Null();
    check(varAnd, {
                      {__LINE__, T, T, S_OK, T},
                      {__LINE__, T, F, S_OK, F},
                      {__LINE__, T, N, S_OK, N},
                      {__LINE__, N, F, S_OK, F},
                      {__LINE__, F, N, S_OK, F},
                      {__LINE__, N, N, S_OK, N},
                      {__LINE__, N, I2(0), S_OK, I2(0)},
                      {__LINE__, N, I2(5), S_OK, N},
                      {__LINE__, I2(12), I2(10), S_OK, I2(8)},
                      {__LINE__, Byte(12), Byte(10), S_OK, Byte(8)},
                      {__LINE__, Byte(12), T, S_OK, I2(12)},
                      {__LINE__, I4(12), T, S_OK, I4(12)},
                      {__LINE__, R8(12.5), I2(15), S_OK, I4(12)},
                      {__LINE__, Str("True"), T, S_OK, T},
                      {__LINE__, Str("12"), I2(10), S_OK, I4(8)},
                      {__LINE__, Empty(), T, S_OK, I2(0)},
                      {__LINE__, Str("x"), T, DISP_E_TYPEMISMATCH, {}},
                      {__LINE__, kMissing, T, DISP_E_TYPEMISMATCH, {}},
                  });
    check(varOr, {
                     {__LINE__, T, N, S_OK, T},
                     {__LINE__, N, T, S_OK, T},
                     {__LINE__, F, N, S_OK, N},
                     {__LINE__, N, F, S_OK, N},
                     {__LINE__, N, N, S_OK, N},
                     {__LINE__, F, F, S_OK, F},
                     {__LINE__, N, I2(-1), S_OK, I2(-1)},
                     {__LINE__, N, Byte(255), S_OK, Byte(255)},
                     {__LINE__, I2(12), I2(3), S_OK, I2(15)},
                 });
    check(varXor, {
                      {__LINE__, T, F, S_OK, T},
                      {__LINE__, T, T, S_OK, F},
                      {__LINE__, T, N, S_OK, N},
                      {__LINE__, I2(12), I2(10), S_OK, I2(6)},
                  });
    check(varEqv, {
                      {__LINE__, T, T, S_OK, T},
                      {__LINE__, F, F, S_OK, T},
                      {__LINE__, T, F, S_OK, F},
                      {__LINE__, F, N, S_OK, N},
                      {__LINE__, Byte(0xF0), Byte(0xFF), S_OK, Byte(0xF0)},
                      {__LINE__, I2(0), I2(0), S_OK, I2(-1)},
                  });
    check(varImp, {
                      {__LINE__, T, T, S_OK, T},
                      {__LINE__, T, F, S_OK, F},
                      {__LINE__, T, N, S_OK, N},
                      {__LINE__, F, T, S_OK, T},
                      {__LINE__, F, F, S_OK, T},
                      {__LINE__, F, N, S_OK, T},
                      {__LINE__, N, T, S_OK, T},
                      {__LINE__, N, F, S_OK, N},
                      {__LINE__, N, N, S_OK, N},
                      {__LINE__, I2(0), I2(5), S_OK, I2(-1)},
                      {__LINE__, Byte(0xF0), Byte(0x0F), S_OK, Byte(0x0F)},
                  });
}

TEST(Operators, Compare) {
    struct Row {
        int line;
        Variant l, r;
        HRESULT expected;
        std::uint32_t flags = 0;
    } const rows[] = {
        {__LINE__, I2(1), I2(2), VARCMP_LT},
        {__LINE__, I4(2), I2(2), VARCMP_EQ},
        {__LINE__, R8(2.5), I2(2), VARCMP_GT},
        {__LINE__, Bool(true), I2(0), VARCMP_LT},
        {__LINE__, Cy(0.0001), I2(0), VARCMP_GT},
        {__LINE__, Cy(1), R8(1.00001), VARCMP_LT},
        {__LINE__, Date(36526), R8(36526), VARCMP_EQ},
        {__LINE__, R4(0.5f), R8(0.5), VARCMP_EQ},
        {__LINE__, Empty(), I2(0), VARCMP_EQ},
        {__LINE__, Empty(), Empty(), VARCMP_EQ},
        {__LINE__, Str("abc"), Str("abd"), VARCMP_LT},
        {__LINE__, Str("B"), Str("a"), VARCMP_LT}, // by code points
        {__LINE__, Str("B"), Str("a"), VARCMP_GT, NORM_IGNORECASE},
        {__LINE__, Str("ABC"), Str("abc"), VARCMP_EQ, NORM_IGNORECASE},
        {__LINE__, Str("ABC"), Str("abc"), VARCMP_LT},
        {__LINE__, Empty(), Str(""), VARCMP_EQ},
        {__LINE__, Str("a"), Empty(), VARCMP_GT},
        {__LINE__, Str("1"), I2(5), VARCMP_GT}, // numbers sort before text
        {__LINE__, I2(5), Str("1"), VARCMP_LT},
        {__LINE__, Bool(false), Str(""), VARCMP_LT},
        {__LINE__, Null(), I2(1), VARCMP_NULL},
        {__LINE__, Str("a"), Null(), VARCMP_NULL},
        {__LINE__, Null(), Null(), VARCMP_NULL},
        {__LINE__, kMissing, I2(1), DISP_E_TYPEMISMATCH},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(::testing::Message() << "case at line " << r.line);
        EXPECT_EQ(varCmp(r.l, r.r, LCID_EN_US, r.flags), r.expected);
    }
}

TEST(Operators, NullOutPointer) {
    EXPECT_EQ(varAdd(I2(1), I2(1), nullptr), E_INVALIDARG);
    EXPECT_EQ(varAnd(I2(1), I2(1), nullptr), E_INVALIDARG);
    EXPECT_EQ(varNot(I2(1), nullptr), E_INVALIDARG);
    EXPECT_EQ(varRound(I2(1), 0, nullptr), E_INVALIDARG);
}

} // namespace
} // namespace qvr
