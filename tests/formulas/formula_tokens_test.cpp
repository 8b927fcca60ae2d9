#include <gtest/gtest.h>

#include <string>

#include "formulas/formula_tokens.h"

namespace qvr {
namespace {

std::string replaced(const char* text, const char* name, const char* value) {
    return FormulaTokens::replace(text, name, value).str();
}

TEST(FormulaTokens, TheDelimiterSet) {
    for (char32_t c : std::u32string(U"\"'$_aZ09\u00E4\u00A8"))
        EXPECT_FALSE(FormulaTokens::isDelimiter(c)) << std::hex << static_cast<std::uint32_t>(c);

    // Every delimiter ends a token, the two beyond ASCII included.
    EXPECT_EQ(replaced("L\u00A7L\u00B4L^L!L%L&L/L(L)L=L?L`L{L[L]L}L\\L@L+L*L~L#L<L>L|L,L;L.L:L-L",
                       "L", "1"),
              "1\u00A71\u00B41^1!1%1&1/1(1)1=1?1`1{1[1]1}1\\1@1+1*1~1#1<1>1|1,1;1.1:1-1");
    EXPECT_EQ(replaced("L L\tL\nL\rL", "L", "x"), "x x\tx\nx\rx");
    // Underscore, dollar sign, apostrophe and letters belong to a token.
    EXPECT_EQ(replaced("L_1 $L L' L2 L", "L", "9"), "L_1 $L L' L2 9");
}

TEST(FormulaTokens, StringsAndQuotes) {
    // Inside a quoted string the name stays; outside it is replaced, in the same formula.
    EXPECT_EQ(replaced("Length & \" Length \" & Length", "Length", "25"), "25 & \" Length \" & 25");
    // A token that opens and closes flips twice and is compared, but never equals a bare name.
    EXPECT_EQ(replaced("\"Length\" + Length", "Length", "2"), "\"Length\" + 2");
    // A lone quote flips once: everything behind it is inside a string.
    EXPECT_EQ(replaced("Length & \" & Length", "Length", "2"), "2 & \" & Length");
    // A quote in the middle of a token flips nothing.
    EXPECT_EQ(replaced("a\"b Length", "Length", "2"), "a\"b 2");
    // The string closes on the token that ends with a quote, and the state is fresh per search.
    EXPECT_EQ(replaced("\"a b\" L \"c", "L", "1"), "\"a b\" 1 \"c");
}

TEST(FormulaTokens, NamesMatchWholeTokensWithCaseIgnored) {
    EXPECT_EQ(replaced("length + LENGTH + Length2 + xLength", "Length", "3"),
              "3 + 3 + Length2 + xLength");
    EXPECT_EQ(replaced("\u00E4rger*2", "\u00C4RGER", "5"), "5*2");
    // A name holding a delimiter can never match.
    EXPECT_EQ(replaced("Outer Diameter", "Outer Diameter", "1"), "Outer Diameter");

    const FormulaTokens::Hit hit = FormulaTokens::find("a + Bb", "bB");
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit.position, 4u);
    EXPECT_EQ(hit.length, 2u);
    EXPECT_FALSE(FormulaTokens::find("a + b", "c"));
    EXPECT_FALSE(FormulaTokens::find("", "c"));
    // A search from an offset starts outside a string.
    EXPECT_EQ(FormulaTokens::find("\" x", "x", 1).position, 2u);
}

TEST(FormulaTokens, ReplacementNeverEmptiesTheText) {
    // A value much shorter than the text still replaces every token.
    EXPECT_EQ(replaced("L", "L", "1"), "1");
    EXPECT_EQ(replaced("Length*Length", "Length", "2"), "2*2");
    // Longer values, and values that hold the name: inserted text is not searched again.
    EXPECT_EQ(replaced("L+L", "L", "(L+L)"), "(L+L)+(L+L)");
    // Nothing found: a copy, null stays null; an empty name gives null.
    EXPECT_EQ(replaced("a+b", "c", "1"), "a+b");
    EXPECT_TRUE(FormulaTokens::replace(String(), "c", "1").isNull());
    EXPECT_TRUE(FormulaTokens::replace("a", "", "1").isNull());
    EXPECT_EQ(replaced("a", "a", ""), "");
}

} // namespace
} // namespace qvr
