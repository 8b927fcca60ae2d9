#include "eval_cases.h"

namespace qvr::vbscript::testing {
namespace {

TEST(VbscriptGrammar, LiteralsTakeTheirTypeFromTheirSize) {
    expectCases({
        {"1", "2\t1"},
        {"32767", "2\t32767"},
        {"32768", "3\t32768"},
        {"2147483647", "3\t2147483647"},
        {"2147483648", "5\t2147483648"},
        {"-32768", "3\t-32768"}, // negation of a Long literal
        {"&HFF", "2\t255"},
        {"&HFFFF", "2\t-1"},
        {"&H8000", "2\t-32768"},
        {"&HFFFF&", "3\t65535"},
        {"&H10000", "3\t65536"},
        // A radix literal's type follows its value, whatever the suffix.
        {"&HFFFFFFFF", "2\t-1"},
        {"&HFF&", "2\t255"},
        {"&HFFFFFFFF&", "2\t-1"},
        {"&O177777&", "3\t65535"},
        {"&hff", "2\t255"},
        {"&O17", "2\t15"},
        {"&O177777", "2\t-1"},
        {"1.5", "5\t1.5"},
        {".5", "5\t0.5"},
        {"1E3", "5\t1000"},
        {"1.5e-3", "5\t0.0015"},
        {"1E-400", "5\t0"},
        {"\"a\"\"b\"", "8\t\"a\"\"b\""},
        {"\"\"", "8\t\"\""},
        {"#1/2/2003#", "7\t2003-01-02T00:00:00"},
        {"#2003-01-02 10:30#", "7\t2003-01-02T10:30:00"},
        {"#10:30:15 PM#", "7\t1899-12-30T22:30:15"},
        {"True", "11\tTrue"},
        {"false", "11\tFalse"},
        {"Empty", "0\tEmpty"},
        {"Null", "1\tNull"},
        {"Nothing", "9\tNothing"},
        {"", "0\tEmpty"},
        {"   ", "0\tEmpty"},
    });
}

TEST(VbscriptGrammar, PrecedenceAndAssociativity) {
    expectCases({
        // A sign binds tighter than ^, in the base as in the exponent.
        {"-2^2", "5\t4"},
        {"-(2^2)", "5\t-4"},
        {"2^-1", "5\t0.5"},
        {"-2^-2", "5\t0.25"},
        {"2 * -3^2", "5\t18"},
        {"2^3^2", "5\t64"},
        {"2+3*4", "2\t14"},
        {"10-4-3", "2\t3"},
        {"7\\2*3", "2\t1"},
        {"10 Mod 3*2", "2\t4"},
        {"7 Mod 4 \\ 2", "2\t1"},
        {"-3 Mod 2", "2\t-1"},
        {"1+2 & 3+4", "8\t\"37\""},
        {"1 = 1 And 2 = 2", "11\tTrue"},
        {"Not 1 = 2", "11\tTrue"},
        {"Not True Or True", "11\tTrue"},
        {"True Imp False Eqv True", "11\tFalse"},
        {"1 Or 2 And 0", "2\t1"},
        {"True Xor True Or True", "11\tFalse"},
        // Comparisons chain from the left.
        {"1 < 2 < 3", "11\tTrue"},
        // Two-sign comparisons are taken in either order.
        {"1 =< 2", "11\tTrue"},
        {"1 => 2", "11\tFalse"},
        {"1 >< 2", "11\tTrue"},
        {"3 > 2 > 1", "11\tFalse"},
        {"+5", "2\t5"},
        {"- -5", "2\t5"},
        {"-Not 1", "2\t2"},
    });
}

TEST(VbscriptGrammar, NamesCallsAndLayout) {
    expectCases({
        {"LEN(\"ab\")", "3\t2"},
        {"len (\"ab\")", "3\t2"},
        {"[Len]", "0\tEmpty"}, // a bracketed name is never a function
        {"[a b]", "0\tEmpty"},
        {"UnknownName", "0\tEmpty"},
        {"Länge", "0\tEmpty"},
        {"Now() > #1/1/2000#", "11\tTrue"},
        {"1 + _\n 2", "2\t3"},
        {"1 + 2 ' a comment", "2\t3"},
        {"1 + 2 Rem a comment", "2\t3"},
        {"\n1 + 2\n", "2\t3"},
        {"Mid(\"abcdef\", 2, )", "8\t\"bcdef\""},
        {"Split(\"a b\")(1)", "8\t\"b\""},
    });
}

TEST(VbscriptGrammar, CompileErrorsCarryTheLanguageNumbers) {
    expectCases({
        {"1 +", "error\t1023\tExpected expression"},
        {"* 2", "error\t1023\tExpected expression"},
        {"Dim x", "error\t1023\tExpected expression"},
        {"(1 + 2", "error\t1006\tExpected ')'"},
        {"Len(1, 2", "error\t1006\tExpected ')'"},
        {"\"abc", "error\t1033\tUnterminated string constant"},
        {"\"ab\ncd\"", "error\t1033\tUnterminated string constant"},
        {"1 2", "error\t1025\tExpected end of statement"},
        {"1 : 2", "error\t1025\tExpected end of statement"},
        {"1\n2", "error\t1025\tExpected end of statement"},
        {"x = 1 Then", "error\t1025\tExpected end of statement"},
        {"@", "error\t1032\tInvalid character"},
        {"1 $ 2", "error\t1032\tInvalid character"},
        {"&HFFFF%", "error\t1032\tInvalid character"}, // no type characters but "&"
        {"1 = < 2", "error\t1023\tExpected expression"},
        // Text that is not UTF-8 is refused wherever it stands.
        {"\"a\xFF\"", "error\t1032\tInvalid character"},
        {"\"\xED\xA0\x80\"", "error\t1032\tInvalid character"}, // an encoded surrogate
        {"\"\xC0\xAF\"", "error\t1032\tInvalid character"},     // an overlong form
        {"1 ' \xE2\x82", "error\t1032\tInvalid character"},
        {"\"\xE2\x82\xAC\"", "8\t\"\xE2\x82\xAC\""},
        {"1E", "error\t1031\tInvalid number"},
        {"1E999", "error\t1031\tInvalid number"},
        {"&H123456789", "error\t1031\tInvalid number"},
        {"x.", "error\t1010\tExpected identifier"},
        {"[abc", "error\t1007\tExpected ']'"},
        {"#1/2/2003", "error\t1002\tSyntax error"},
        {"#not a date#", "error\t1002\tSyntax error"},
        {std::string(300, 'a').c_str(), "error\t1030\tIdentifier too long"},
    });
}

TEST(VbscriptGrammar, DeepNestingIsRefusedNotCrashed) {
    std::string deep(5000, '(');
    deep += "1";
    deep += std::string(5000, ')');
    EXPECT_EQ(evaluateLine(deep), "error\t28\tOut of stack space");
    std::string minus(5000, '-');
    EXPECT_EQ(evaluateLine(minus + "1"), "error\t28\tOut of stack space");
    std::string fine(100, '(');
    EXPECT_EQ(evaluateLine(fine + "1" + std::string(100, ')')), "2\t1");
}

} // namespace
} // namespace qvr::vbscript::testing
