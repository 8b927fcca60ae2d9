#include "eval_cases.h"

namespace qvr::vbscript::testing {
namespace {

TEST(VbscriptDates, PartsAndConstruction) {
    expectCases({
        // Two-digit years: 0-29 are this century, 30-99 the last.
        {"DateSerial(0, 2, 1)", "7\t2000-02-01T00:00:00"},
        {"DateSerial(29, 1, 1)", "7\t2029-01-01T00:00:00"},
        {"DateSerial(30, 1, 1)", "7\t1930-01-01T00:00:00"},
        {"DateSerial(-10000, 1, 1)", "error\t5\tInvalid procedure call or argument: 'DateSerial'"},
        {"Year(#3/4/2005 6:07:08 PM#)", "2\t2005"},
        {"Month(#3/4/2005#)", "2\t3"},
        {"Day(#3/4/2005#)", "2\t4"},
        {"Hour(#6:07:08 PM#)", "2\t18"},
        {"Minute(#6:07:08 PM#)", "2\t7"},
        {"Second(#6:07:08 PM#)", "2\t8"},
        {"Day(Empty)", "2\t30"},
        {"Year(Null)", "1\tNull"},
        {"Year(\"x\")", "error\t13\tType mismatch: 'Year'"},
        {"Weekday(#1/1/2000#)", "2\t7"},
        {"Weekday(#1/1/2000#, vbMonday)", "2\t6"},
        {"Weekday(#1/1/2000#, 8)", "error\t5\tInvalid procedure call or argument: 'Weekday'"},
        {"WeekdayName(1)", "8\t\"Sunday\""},
        {"WeekdayName(1, True, vbMonday)", "8\t\"Mon\""},
        {"WeekdayName(8)", "error\t5\tInvalid procedure call or argument: 'WeekdayName'"},
        {"MonthName(2)", "8\t\"February\""},
        {"MonthName(2, True)", "8\t\"Feb\""},
        {"MonthName(13)", "error\t5\tInvalid procedure call or argument: 'MonthName'"},
        {"DateSerial(2000, 13, 1)", "7\t2001-01-01T00:00:00"},
        {"DateSerial(2000, 1, 0)", "7\t1999-12-31T00:00:00"},
        {"DateSerial(10000, 1, 1)", "error\t5\tInvalid procedure call or argument: 'DateSerial'"},
        {"TimeSerial(25, 0, 0)", "7\t1899-12-31T01:00:00"},
        {"TimeSerial(-1, 0, 0)", "7\t1899-12-29T23:00:00"},
        {"TimeSerial(0, 90, 30)", "7\t1899-12-30T01:30:30"},
        {"DateValue(\"1/2/2003 10:00\")", "7\t2003-01-02T00:00:00"},
        {"TimeValue(\"1/2/2003 10:00\")", "7\t1899-12-30T10:00:00"},
        {"Date() <= Now()", "11\tTrue"},
        {"Time() < 1", "11\tTrue"},
        {"Timer >= 0", "11\tTrue"},
    });
}

TEST(VbscriptDates, Intervals) {
    expectCases({
        {"DateAdd(\"m\", 1, #1/31/2000#)", "7\t2000-02-29T00:00:00"},
        {"DateAdd(\"yyyy\", -1, #2/29/2000#)", "7\t1999-02-28T00:00:00"},
        {"DateAdd(\"q\", 1, #1/15/2000#)", "7\t2000-04-15T00:00:00"},
        {"DateAdd(\"d\", 1.9, #1/1/2000#)", "7\t2000-01-03T00:00:00"},
        {"DateAdd(\"d\", 2.5, #1/1/2000#)", "7\t2000-01-03T00:00:00"},
        {"DateAdd(\"d\", -1.7, #1/2/2003#)", "7\t2002-12-31T00:00:00"},
        {"DateAdd(\"q\", 1, Null)", "1\tNull"},
        {"DateAdd(Null, 1, #1/2/2003#)", "error\t94\tInvalid use of Null: 'DateAdd'"},
        {"DateAdd(\"q\", Null, #1/2/2003#)", "error\t94\tInvalid use of Null: 'DateAdd'"},
        {"DateAdd(\"ww\", 1, #1/1/2000#)", "7\t2000-01-08T00:00:00"},
        {"DateAdd(\"h\", 25, #1/1/2000#)", "7\t2000-01-02T01:00:00"},
        {"DateAdd(\"n\", -1, #1/1/2000#)", "7\t1999-12-31T23:59:00"},
        {"DateAdd(\"s\", 30, #1/1/1899#)", "7\t1899-01-01T00:00:30"},
        {"DateAdd(\"x\", 1, #1/1/2000#)",
         "error\t5\tInvalid procedure call or argument: 'DateAdd'"},
        {"DateAdd(\"yyyy\", 9000, #1/1/2000#)",
         "error\t5\tInvalid procedure call or argument: 'DateAdd'"},
        {"DateDiff(\"d\", #1/1/2000#, #3/1/2000#)", "3\t60"},
        {"DateDiff(\"yyyy\", #12/31/1999#, #1/1/2000#)", "3\t1"},
        {"DateDiff(\"m\", #1/31/2000#, #2/1/2000#)", "3\t1"},
        {"DateDiff(\"q\", #1/1/2000#, #12/31/2000#)", "3\t3"},
        {"DateDiff(\"h\", #1:59#, #2:00#)", "3\t1"},
        {"DateDiff(\"n\", #1/1/2000#, #1/1/2000 1:00#)", "3\t60"},
        {"DateDiff(\"s\", #1/1/2000#, #1/2/2000#)", "3\t86400"},
        {"DateDiff(\"w\", #1/1/2000#, #1/20/2000#)", "3\t2"},
        {"DateDiff(\"ww\", #1/1/2000#, #1/9/2000#)", "3\t2"},
        {"DateDiff(\"d\", #1/2/2000#, #1/1/2000#)", "3\t-1"},
        {"DateDiff(\"d\", Null, #1/1/2000#)", "1\tNull"},
        {"DatePart(\"q\", #8/4/2005#)", "2\t3"},
        {"DatePart(\"y\", #2/1/2005#)", "2\t32"},
        {"DatePart(\"w\", #1/1/2000#)", "2\t7"},
        {"DatePart(\"ww\", #1/10/2000#)", "2\t3"},
        {"DatePart(\"ww\", #1/3/2000#, vbMonday, vbFirstFourDays)", "2\t1"},
        {"DatePart(\"ww\", #1/1/2000#, vbMonday, vbFirstFourDays)", "2\t52"},
    });
}

TEST(VbscriptDates, FormattingUnderTheUserLocale) {
    expectCases({
        {"FormatNumber(1234.567)", "8\t\"1,234.57\""},
        {"FormatNumber(-1234.567, 1)", "8\t\"-1,234.6\""},
        {"FormatNumber(0.5, 2, 0)", "8\t\".50\""},
        {"FormatNumber(-1, 0, -2, -1)", "8\t\"(1)\""},
        {"FormatNumber(1234.5, 1, -2, -2, 0)", "8\t\"1234.5\""},
        {"FormatNumber(-0.001)", "8\t\"0.00\""},
        {"FormatNumber(\"x\")", "error\t13\tType mismatch: 'FormatNumber'"},
        {"FormatNumber(1, -2)", "error\t5\tInvalid procedure call or argument: 'FormatNumber'"},
        {"FormatCurrency(5)", "8\t\"$5.00\""},
        {"FormatCurrency(-5)", "8\t\"($5.00)\""},
        {"FormatCurrency(-5, 2, -2, 0)", "8\t\"-$5.00\""},
        {"FormatPercent(0.256)", "8\t\"25.60%\""},
        {"FormatPercent(-0.5, 0)", "8\t\"-50%\""},
        {"FormatDateTime(#1/2/2003 13:04:05#)", "8\t\"1/2/2003 1:04:05 PM\""},
        {"FormatDateTime(#1/2/2003#, vbLongDate)", "8\t\"Thursday, January 2, 2003\""},
        {"FormatDateTime(#1/2/2003#, vbShortDate)", "8\t\"1/2/2003\""},
        {"FormatDateTime(#13:04:05#, vbLongTime)", "8\t\"1:04:05 PM\""},
        {"FormatDateTime(#13:04:05#, vbShortTime)", "8\t\"13:04\""},
        {"FormatDateTime(#9:05:00 AM#, 4)", "8\t\"09:05\""},
        {"FormatDateTime(Null)", "error\t13\tType mismatch: 'FormatDateTime'"},
        {"FormatDateTime(0.1, Null)", "error\t94\tInvalid use of Null: 'FormatDateTime'"},
        {"FormatDateTime(#1/2/2003#, 5)",
         "error\t5\tInvalid procedure call or argument: 'FormatDateTime'"},
    });
    expectCases(
        {
            {"FormatNumber(1234.5)", "8\t\"1.234,50\""},
            {"CStr(1.5)", "8\t\"1,5\""},
            {"MonthName(3)", "8\t\"März\""},
            {"WeekdayName(1, False, vbUseSystemDayOfWeek)", "8\t\"Montag\""},
            {"#1/2/2003#", "7\t2003-01-02T00:00:00"}, // date literals stay in the US form
            {"CDate(\"1.2.2003\")", "7\t2003-02-01T00:00:00"},
        },
        LCID_DE_DE);
}

} // namespace
} // namespace qvr::vbscript::testing
