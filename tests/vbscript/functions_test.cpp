#include "eval_cases.h"

namespace qvr::vbscript::testing {
namespace {

TEST(VbscriptFunctions, Math) {
    expectCases({
        {"Abs(-5)", "2\t5"},
        {"Abs(\"-2.5\")", "5\t2.5"},
        {"Abs(Null)", "1\tNull"},
        {"Atn(1) * 4", "5\t3.14159265358979"},
        {"Cos(0)", "5\t1"},
        {"Sin(0)", "5\t0"},
        {"Tan(0)", "5\t0"},
        {"Exp(0)", "5\t1"},
        {"Exp(1000)", "error\t6\tOverflow: 'Exp'"},
        {"Log(1)", "5\t0"},
        {"Log(0)", "error\t5\tInvalid procedure call or argument: 'Log'"},
        {"Sqr(16)", "5\t4"},
        {"Sqr(-1)", "error\t5\tInvalid procedure call or argument: 'Sqr'"},
        {"Sqr(Null)", "error\t94\tInvalid use of Null: 'Sqr'"},
        {"Fix(-2.5)", "5\t-2"},
        {"Int(-2.5)", "5\t-3"},
        {"Int(7)", "2\t7"},
        {"Round(2.5)", "5\t2"},
        {"Round(3.5)", "5\t4"},
        {"Round(-2.5)", "5\t-2"},
        {"Round(2.345, 2)", "5\t2.34"},
        {"Round(7)", "2\t7"},
        {"Round(\"2.5\")", "5\t2"},
        {"Round(Null)", "1\tNull"},
        {"Round(1, -1)", "error\t5\tInvalid procedure call or argument: 'Round'"},
        {"Round(Sqr(3^2 + 4^2), 2)", "5\t5"},
        {"Sgn(-3)", "2\t-1"},
        {"Sgn(0)", "2\t0"},
        {"Sgn(\"x\")", "error\t13\tType mismatch: 'Sgn'"},
        {"Rnd(0)", "4\t0.01953125"},
        {"Rnd(-1) = Rnd(-1)", "11\tTrue"},
        {"Round(True)", "11\tTrue"},
        // Randomize is a statement: it has no value to give.
        {"Randomize", "error\t13\tType mismatch: 'Randomize'"},
    });
}

TEST(VbscriptFunctions, Conversions) {
    expectCases({
        {"CBool(1)", "11\tTrue"},
        {"CBool(\"False\")", "11\tFalse"},
        {"CBool(\"x\")", "error\t13\tType mismatch: 'CBool'"},
        {"CByte(254.5)", "17\t254"},
        {"CByte(256)", "error\t6\tOverflow: 'CByte'"},
        {"CDate(\"1/2/2003\")", "7\t2003-01-02T00:00:00"},
        {"CDate(1.5)", "7\t1899-12-31T12:00:00"},
        {"CDbl(\"1.5\")", "5\t1.5"},
        {"CInt(2.5)", "2\t2"},
        {"CInt(3.5)", "2\t4"},
        {"CInt(\"abc\")", "error\t13\tType mismatch: 'CInt'"},
        {"CInt(40000)", "error\t6\tOverflow: 'CInt'"},
        {"CInt(Null)", "error\t94\tInvalid use of Null: 'CInt'"},
        {"CLng(\"&HFFFF\")", "3\t65535"},
        {"CSng(1.5)", "4\t1.5"},
        {"CStr(True)", "8\t\"True\""},
        {"CStr(Empty)", "8\t\"\""},
        {"CStr(1E20)", "8\t\"1E+20\""},
        {"CStr(0.000005)", "8\t\"5E-06\""},
        {"CStr(Null)", "error\t94\tInvalid use of Null: 'CStr'"},
        {"Hex(255)", "8\t\"FF\""},
        {"Hex(-1)", "8\t\"FFFF\""},
        {"Hex(-32769)", "8\t\"FFFF7FFF\""},
        {"Hex(Null)", "1\tNull"},
        {"RGB(255, 30, 30)", "3\t1974015"},
        {"RGB(300, 0, 1.5)", "3\t131327"}, // above 255 is 255; parts round half to even
        {"RGB(0, -1, 0)", "error\t5\tInvalid procedure call or argument: 'RGB'"},
        {"RGB(Null, 0, 0)", "error\t94\tInvalid use of Null: 'RGB'"},
        {"Oct(8)", "8\t\"10\""},
        {"Asc(\"A\")", "2\t65"},
        {"Asc(\"€\")", "2\t128"},
        {"Asc(\"\")", "error\t5\tInvalid procedure call or argument: 'Asc'"},
        {"AscW(\"€\")", "2\t8364"},
        {"AscB(\"A\")", "2\t65"},
        {"Chr(65)", "8\t\"A\""},
        {"Chr(128)", "8\t\"€\""},
        {"Chr(256)", "error\t5\tInvalid procedure call or argument: 'Chr'"},
        {"ChrW(8364)", "8\t\"€\""},
        {"ChrW(-1) = ChrW(65535)", "11\tTrue"},
        {"ChrW(70000)", "error\t5\tInvalid procedure call or argument: 'ChrW'"},
        {"ChrB(65)", "8\t\"A\""},
    });
}

TEST(VbscriptFunctions, Strings) {
    expectCases({
        {"Len(\"héllo\")", "3\t5"},
        {"Len(\"😀\")", "3\t2"}, // two UTF-16 units
        {"Len(123)", "3\t3"},
        {"Len(Null)", "1\tNull"},
        {"LenB(\"ab\")", "3\t4"},
        {"Left(\"abc\", 2)", "8\t\"ab\""},
        {"Left(\"abc\", 5)", "8\t\"abc\""},
        {"Left(\"abc\", -1)", "error\t5\tInvalid procedure call or argument: 'Left'"},
        {"Left(Null, 1)", "1\tNull"},
        {"Left(\"abc\", Null)", "error\t94\tInvalid use of Null: 'Left'"},
        {"Right(\"abcdef\", 2)", "8\t\"ef\""},
        {"Right(\"héllo\", 4)", "8\t\"éllo\""},
        {"Mid(\"abcdef\", 2, 3)", "8\t\"bcd\""},
        {"Mid(\"abcdef\", 5)", "8\t\"ef\""},
        {"Mid(\"abc\", 9)", "8\t\"\""},
        {"LeftB(\"abcd\", 4)", "8\t\"ab\""},
        {"MidB(\"abcd\", 3, 2)", "8\t\"b\""},
        {"RightB(\"abcd\", 2)", "8\t\"d\""},
        {"LCase(\"ÄBC\")", "8\t\"äbc\""},
        {"UCase(\"straße\")", "8\t\"STRAßE\""},
        {"Trim(\"  a b  \")", "8\t\"a b\""},
        {"LTrim(\"  a  \")", "8\t\"a  \""},
        {"RTrim(\"  a  \")", "8\t\"  a\""},
        {"Trim(vbTab & \"a\")", "8\t\"\ta\""},
        {"Space(3) & \"x\"", "8\t\"   x\""},
        {"Space(-1)", "error\t5\tInvalid procedure call or argument: 'Space'"},
        {"Space(2000000000)", "error\t14\tOut of string space: 'Space'"},
        // The limit holds for "&" as for the functions.
        {"Len(Space(16777216) & \"\")", "3\t16777216"},
        {"Space(16777216) & 1", "error\t14\tOut of string space"},
        {"String(3, \"ab\")", "8\t\"aaa\""},
        {"String(2, 65)", "8\t\"AA\""},
        {"String(2, 321)", "8\t\"AA\""},
        {"String(2, \"\")", "error\t5\tInvalid procedure call or argument: 'String'"},
        {"StrReverse(\"abc\")", "8\t\"cba\""},
        {"InStr(\"abcabc\", \"c\")", "3\t3"},
        {"InStr(4, \"abcabc\", \"c\")", "3\t6"},
        {"InStr(\"abc\", \"C\")", "3\t0"},
        {"InStr(1, \"abc\", \"C\", 1)", "3\t3"},
        {"InStr(\"abc\", \"\")", "3\t1"},
        {"InStr(\"\", \"a\")", "3\t0"},
        {"InStr(Null, \"a\")", "1\tNull"},
        {"InStr(0, \"a\", \"a\")", "error\t5\tInvalid procedure call or argument: 'InStr'"},
        {"InStrRev(\"abcabc\", \"c\")", "3\t6"},
        {"InStrRev(\"abcabc\", \"c\", 5)", "3\t3"},
        {"InStrRev(\"abc\", \"x\")", "3\t0"},
        {"Replace(\"aXbXc\", \"X\", \"-\")", "8\t\"a-b-c\""},
        {"Replace(\"aXbXc\", \"x\", \"-\", 1, -1, 1)", "8\t\"a-b-c\""},
        {"Replace(\"aXbXc\", \"X\", \"-\", 3)", "8\t\"b-c\""},
        {"Replace(\"aXbXc\", \"X\", \"-\", 1, 1)", "8\t\"a-bXc\""},
        {"Replace(Null, \"a\", \"b\")", "error\t94\tInvalid use of Null: 'Replace'"},
        {"StrComp(\"a\", \"B\")", "2\t1"},
        {"StrComp(\"a\", \"B\", 1)", "2\t-1"},
        {"StrComp(\"a\", \"a\")", "2\t0"},
        {"StrComp(\"a\", Null)", "1\tNull"},
        {"Join(Array(1, 2, 3), \"-\")", "8\t\"1-2-3\""},
        {"Join(Array(\"a\", \"b\"))", "8\t\"a b\""},
        {"Join(1)", "error\t13\tType mismatch: 'Join'"},
        {"Join(Array(\"a\", Null, \"b\"), \"-\")", "8\t\"a--b\""},
        {"Split(\"a,b,c\", \",\")", "8204\tArray(\"a\", \"b\", \"c\")"},
        {"Split(\"a,b,c\", \",\", 2)", "8204\tArray(\"a\", \"b,c\")"},
        {"Split(\"aXbxc\", \"x\", -1, 1)", "8204\tArray(\"a\", \"b\", \"c\")"},
        {"UBound(Split(\"\"))", "3\t-1"},
        {"Split(\"a b\", \"\")", "8204\tArray(\"a b\")"},
        {"Filter(Array(\"ab\", \"cd\", \"abc\"), \"ab\")", "8204\tArray(\"ab\", \"abc\")"},
        {"Filter(Array(\"ab\", \"cd\"), \"ab\", False)", "8204\tArray(\"cd\")"},
    });
}

TEST(VbscriptFunctions, InspectionAndArrays) {
    expectCases({
        {"IsArray(Array())", "11\tTrue"},
        {"IsDate(\"1/2/2003\")", "11\tTrue"},
        {"IsDate(\"x\")", "11\tFalse"},
        {"IsDate(1)", "11\tFalse"},
        {"IsEmpty(Empty)", "11\tTrue"},
        {"IsEmpty(UnknownName)", "11\tTrue"},
        {"IsNull(Null)", "11\tTrue"},
        {"IsNumeric(\"12.5\")", "11\tTrue"},
        {"IsNumeric(\" 12 \")", "11\tTrue"},
        {"IsNumeric(\"12a\")", "11\tFalse"},
        {"IsNumeric(Empty)", "11\tTrue"},
        {"IsNumeric(Null)", "11\tFalse"},
        {"IsNumeric(#1/1/2000#)", "11\tFalse"},
        {"IsObject(Nothing)", "11\tTrue"},
        {"TypeName(1)", "8\t\"Integer\""},
        {"TypeName(1.5)", "8\t\"Double\""},
        {"TypeName(\"x\")", "8\t\"String\""},
        {"TypeName(Null)", "8\t\"Null\""},
        {"TypeName(Nothing)", "8\t\"Nothing\""},
        {"TypeName(Array())", "8\t\"Variant()\""},
        {"TypeName(CCur(1))", "8\t\"Currency\""},
        {"VarType(\"x\")", "2\t8"},
        {"VarType(Array(1))", "2\t8204"},
        {"Array(1, \"x\", Null)", "8204\tArray(1, \"x\", Null)"},
        {"UBound(Array(1, 2, 3))", "3\t2"},
        {"LBound(Array(1, 2, 3))", "3\t0"},
        {"UBound(1)", "error\t13\tType mismatch: 'UBound'"},
        {"UBound(Array(1), 2)", "error\t9\tSubscript out of range: 'UBound'"},
        {"Array(1, 2)(5)", "error\t9\tSubscript out of range: '[number: 5]'"},
        {"Array(1, 2)(1)", "2\t2"},
    });
}

// Which argument is checked first decides the error a caller sees; these orders and the
// treatment of Null differ from one function to the next.
TEST(VbscriptFunctions, ArgumentChecksInTheLanguageOrder) {
    expectCases({
        // The compare argument takes 0 or 1 only.
        {"InStr(1, \"abc\", \"b\", 2)", "error\t5\tInvalid procedure call or argument: 'InStr'"},
        {"Split(\"a-b\", \"-\", -1, 2)", "error\t5\tInvalid procedure call or argument: 'Split'"},
        {"StrComp(\"a\", \"b\", vbDatabaseCompare)",
         "error\t5\tInvalid procedure call or argument: 'StrComp'"},
        {"InStr(3, \"abcdefgh\", \"FG\", 1.4)", "3\t6"},
        // InStr passes Null through, InStrRev does not.
        {"InStr(2, Null, \"a\")", "1\tNull"},
        {"InStrRev(Null, \"a\")", "error\t94\tInvalid use of Null: 'InStrRev'"},
        {"InStrRev(\"a\", Null)", "error\t94\tInvalid use of Null: 'InStrRev'"},
        // Mid reads a Null length before the start.
        {"Mid(\"test\", \"a\", Null)", "error\t94\tInvalid use of Null: 'Mid'"},
        {"Mid(\"test\", \"a\", Empty)", "error\t13\tType mismatch: 'Mid'"},
        {"Mid(\"test\", Empty, 1)", "error\t5\tInvalid procedure call or argument: 'Mid'"},
        {"Mid(Null, -1, -1)", "error\t5\tInvalid procedure call or argument: 'Mid'"},
        // MonthName reads its abbreviate argument first.
        {"MonthName(\"a\", Null)", "error\t94\tInvalid use of Null: 'MonthName'"},
        // The value of a Format function may not be Null; its options may not either.
        {"FormatNumber(Null)", "error\t13\tType mismatch: 'FormatNumber'"},
        {"FormatCurrency(Null)", "error\t13\tType mismatch: 'FormatCurrency'"},
        {"FormatPercent(Null)", "error\t13\tType mismatch: 'FormatPercent'"},
        {"FormatNumber(0.1, Null)", "error\t94\tInvalid use of Null: 'FormatNumber'"},
        // "#TRUE#" and "#FALSE#" are booleans to CBool only; a number in text is a date to CDate
        // but no date text to IsDate.
        {"CBool(\"#TRUE#\")", "11\tTrue"},
        {"CBool(\"#false#\")", "11\tFalse"},
        {"CByte(\"#TRUE#\")", "error\t13\tType mismatch: 'CByte'"},
        {"CDate(\"1\")", "7\t1899-12-31T00:00:00"},
        {"IsDate(\"4\")", "11\tFalse"},
        {"CDate(\"abc\")", "error\t13\tType mismatch: 'CDate'"},
        // Currency keeps every unit of a large whole Double.
        {"CCur(922337203685477)", "6\t922337203685477"},
        {"CCur(1.23465)", "6\t1.2347"},
    });
}

TEST(VbscriptFunctions, ConstantsAreLiterals) {
    expectCases({
        {"vbCrLf = Chr(13) & Chr(10)", "11\tTrue"},
        {"vbNewLine = vbCr & vbLf", "11\tTrue"},
        {"Len(vbNullChar)", "3\t1"},
        {"Len(vbNullString)", "3\t0"},
        {"vbTab", "8\t\"\t\""},
        {"vbTextCompare", "2\t1"},
        {"vbArray", "2\t8192"},
        {"vbMsgBoxSetForeground", "3\t65536"},
        {"vbUseDefault", "2\t-2"},
        {"vbObjectError", "3\t-2147221504"},
        {"vbWhite", "3\t16777215"},
        {"VBCRLF = vbCrLf", "11\tTrue"},
        {"\"1\" = vbTrue + 2", "11\tTrue"},
    });
}

TEST(VbscriptFunctions, WrongArgumentCountsAndUnknownFunctions) {
    expectCases({
        {"Left(\"a\")", "error\t450\tWrong number of arguments or invalid property assignment: "
                        "'Left'"},
        {"Len", "error\t450\tWrong number of arguments or invalid property assignment: 'Len'"},
        {"Len(1, 2)", "error\t450\tWrong number of arguments or invalid property assignment: "
                      "'Len'"},
        {"Foo(1)", "error\t13\tType mismatch: 'Foo'"},
        {"Eval(\"1\")", "error\t13\tType mismatch: 'Eval'"},
        {"Execute(\"x = 1\")", "error\t13\tType mismatch: 'Execute'"},
        {"Foo.Bar", "error\t424\tObject required: 'Foo'"},
    });
}

} // namespace
} // namespace qvr::vbscript::testing
