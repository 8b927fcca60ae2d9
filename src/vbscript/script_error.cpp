#include "vbscript/script_error.h"

#include <algorithm>
#include <iterator>

namespace qvr::vbscript {
namespace {

struct ErrorText {
    int number;
    const char* text;
};

// Sorted by number.
constexpr ErrorText kErrorTexts[] = {
    {5, "Invalid procedure call or argument"},
    {6, "Overflow"},
    {7, "Out of memory"},
    {9, "Subscript out of range"},
    {10, "This array is fixed or temporarily locked"},
    {11, "Division by zero"},
    {13, "Type mismatch"},
    {14, "Out of string space"},
    {17, "Can't perform requested operation"},
    {28, "Out of stack space"},
    {35, "Sub or Function not defined"},
    {48, "Error in loading DLL"},
    {51, "Internal error"},
    {91, "Object variable not set"},
    {92, "For loop not initialized"},
    {94, "Invalid use of Null"},
    {424, "Object required"},
    {429, "ActiveX component can't create object"},
    {430, "Class doesn't support Automation"},
    {432, "File name or class name not found during Automation operation"},
    {438, "Object doesn't support this property or method"},
    {445, "Object doesn't support this action"},
    {447, "Object doesn't support current locale setting"},
    {448, "Named argument not found"},
    {449, "Argument not optional"},
    {450, "Wrong number of arguments or invalid property assignment"},
    {451, "Object not a collection"},
    {458, "Variable uses an Automation type not supported in VBScript"},
    {462, "The remote server machine does not exist or is unavailable"},
    {481, "Invalid picture"},
    {500, "Variable is undefined"},
    {501, "Illegal assignment"},
    {502, "Object not safe for scripting"},
    {503, "Object not safe for initializing"},
    {504, "Object not safe for creating"},
    {505, "Invalid or unqualified reference"},
    {506, "Class not defined"},
    {507, "An exception occurred"},
    {1001, "Out of memory"},
    {1002, "Syntax error"},
    {1003, "Expected ':'"},
    {1005, "Expected '('"},
    {1006, "Expected ')'"},
    {1007, "Expected ']'"},
    {1010, "Expected identifier"},
    {1011, "Expected '='"},
    {1023, "Expected expression"},
    {1024, "Expected statement"},
    {1025, "Expected end of statement"},
    {1026, "Expected integer constant"},
    {1030, "Identifier too long"},
    {1031, "Invalid number"},
    {1032, "Invalid character"},
    {1033, "Unterminated string constant"},
    {1034, "Unterminated comment"},
    {1045, "Expected literal constant"},
};

} // namespace

std::string_view errorDescription(int number) {
    auto it = std::lower_bound(std::begin(kErrorTexts), std::end(kErrorTexts), number,
                               [](const ErrorText& e, int n) { return e.number < n; });
    if (it != std::end(kErrorTexts) && it->number == number) return it->text;
    return "Unknown runtime error";
}

std::string ScriptError::description() const {
    if (status_ != 0) return foreignText_.empty() ? "Unknown runtime error" : foreignText_;
    std::string text(errorDescription(number_));
    if (!detail_.empty()) {
        text += ": '";
        text += detail_;
        text += '\'';
    }
    return text;
}

void raise(int number) {
    throw ScriptError(number);
}

void raise(int number, std::string_view detail) {
    throw ScriptError(number, std::string(detail));
}

} // namespace qvr::vbscript
