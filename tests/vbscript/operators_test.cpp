// The operators hand their operands to the variant arithmetic, whose rules of types, overflow
// and Null have tables of their own; here each operator reaches its own function, from literals
// folded at compile time and from values met at run time, and its failures come back as the
// language's errors.
#include "eval_cases.h"

namespace qvr::vbscript::testing {
namespace {

TEST(VbscriptOperators, EachOperatorReachesItsArithmeticAndFailsAsTheLanguage) {
    expectCases({
        {"1 + 1", "2\t2"},
        {"32767 + 1", "3\t32768"},
        {"CByte(255) + CByte(1)", "2\t256"},
        {"#1/1/2000# + 1", "7\t2000-01-02T00:00:00"},
        {"#1/2/2000# - #1/1/2000#", "5\t1"},
        {"-32768 * -1", "3\t32768"},
        {"1 / 2", "5\t0.5"},
        {"7 \\ 2", "2\t3"},
        {"7.9 \\ 2", "3\t4"},
        {"-7 Mod 3", "2\t-1"},
        {"2 ^ 10", "5\t1024"},
        {"-\"5\"", "5\t-5"},
        {"\"1\" + \"2\"", "8\t\"12\""},
        {"\"1\" + 2", "5\t3"},
        {"1 & 2", "8\t\"12\""},
        {"Null & Null", "1\tNull"},
        {"Null + 1", "1\tNull"},
        {"12 And 10", "2\t8"},
        {"12 Or 3", "2\t15"},
        {"5 Xor 3", "2\t6"},
        {"Not 0", "2\t-1"},
        {"True Eqv False", "11\tFalse"},
        {"False Imp True", "11\tTrue"},
        {"Null And False", "11\tFalse"},
        {"Null Or False", "1\tNull"},
        {"Not Null", "1\tNull"},
        {"1 / 0", "error\t11\tDivision by zero"},
        {"5 Mod 0", "error\t11\tDivision by zero"},
        {"0 / 0", "error\t6\tOverflow"},
        {"1E308 * 10", "error\t6\tOverflow"},
        {"\"abc\" * 2", "error\t13\tType mismatch: '[string: \"abc\"]'"},
        {"\"abc\" And 1", "error\t13\tType mismatch: '[string: \"abc\"]'"},
    });
}

TEST(VbscriptOperators, ComparisonsFollowTheLiteralRule) {
    expectCases({
        {"\"a\" < \"b\"", "11\tTrue"},
        {"\"a\" < \"B\"", "11\tFalse"}, // binary comparison
        {"\"abc\" = \"ABC\"", "11\tFalse"},
        {"1 = 1.0", "11\tTrue"},
        {"2 >= 2", "11\tTrue"},
        {"1 <> 2", "11\tTrue"},
        {"Empty = 0", "11\tTrue"},
        {"Empty = \"\"", "11\tTrue"},
        {"Null = Null", "1\tNull"},
        {"Null <> 1", "1\tNull"},
        // A literal number makes the text a number; a literal text makes the number a text.
        {"\"10\" > 9", "11\tTrue"},
        {"\"1\" = 1", "11\tTrue"},
        {"Len(\"ab\") = \"2\"", "11\tTrue"},
        {"CStr(10) > 9", "11\tTrue"},
        {"CStr(10) > CInt(9)", "11\tTrue"}, // neither is a literal: the text is greater
        {"CStr(1) = CInt(1)", "11\tFalse"},
        // A Boolean is a number: a literal True reads the text as a number.
        {"\"-1\" = True", "11\tTrue"},
        {"\"True\" = True", "error\t13\tType mismatch: '[string: \"True\"]'"},
        {"\"True\" = (1 = 1)", "11\tTrue"},
        {"(1 = 1) < CStr(0)", "11\tTrue"},
        {"#1/1/2000# < #1/2/2000#", "11\tTrue"},
        // Is compares objects only.
        {"Nothing Is Nothing", "11\tTrue"},
        {"1 Is Nothing", "error\t424\tObject required"},
        {"Nothing + 1", "error\t91\tObject variable not set"},
    });
}

} // namespace
} // namespace qvr::vbscript::testing
