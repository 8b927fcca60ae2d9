// The errors of the formula language: VBScript's numbers with their English descriptions. Inside
// the engine a fault travels as a ScriptError exception; the engine's boundary turns it into the
// exception record that callers read.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include <qvr/com.h>

namespace qvr::vbscript {

// Run-time errors.
enum RuntimeError : int {
    kInvalidCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kSubscriptOutOfRange = 9,
    kDivisionByZero = 11,
    kTypeMismatch = 13,
    kOutOfStringSpace = 14,
    kOutOfStackSpace = 28,
    kInternalError = 51,
    kObjectVariableNotSet = 91,
    kInvalidUseOfNull = 94,
    kObjectRequired = 424,
    kMemberNotFound = 438,
    kNamedArgumentNotFound = 448,
    kArgumentNotOptional = 449,
    kWrongArgumentCount = 450,
    kUnsupportedAutomationType = 458,
};

// Compile errors.
enum CompileError : int {
    kCompileOutOfMemory = 1001,
    kSyntaxError = 1002,
    kExpectedOpenParen = 1005,
    kExpectedCloseParen = 1006,
    kExpectedCloseBracket = 1007,
    kExpectedIdentifier = 1010,
    kExpectedExpression = 1023,
    kExpectedEndOfStatement = 1025,
    kIdentifierTooLong = 1030,
    kInvalidNumber = 1031,
    kInvalidCharacter = 1032,
    kUnterminatedString = 1033,
};

// The facility of the language's errors: the status of error n is 0x800A0000 | n.
constexpr HRESULT scriptStatus(int number) {
    return makeStatus(0x800A0000u | (static_cast<std::uint32_t>(number) & 0xFFFFu));
}
constexpr bool isCompileError(int number) {
    return number >= 1000 && number < 1100;
}

// VBScript's English description of error `number`; "Unknown runtime error" for numbers the
// language does not define.
std::string_view errorDescription(int number);

// A fault raised while compiling or running an expression. `detail` is the name that VBScript
// appends to some descriptions (a function or member: "Type mismatch: 'CInt'"); `position` is
// the byte offset of a compile error in the expression text.
class ScriptError : public std::exception {
public:
    explicit ScriptError(int number, std::string detail = {}, std::int32_t position = -1)
        : number_(number), detail_(std::move(detail)), position_(position) {}
    // A failure of a host object that is none of the language's errors: its own status and
    // description pass through.
    static ScriptError foreign(HRESULT status, std::string description) {
        ScriptError e(status & 0xFFFF);
        e.status_ = status;
        e.foreignText_ = std::move(description);
        return e;
    }
    // The same error naming `detail`, unless it names something already.
    ScriptError withDetail(std::string_view detail) const {
        ScriptError e(*this);
        if (e.detail_.empty() && e.status_ == 0) e.detail_ = detail;
        return e;
    }

    int number() const { return number_; }
    // 0x800A0000 | number, or the host's own status.
    HRESULT status() const { return status_ ? status_ : scriptStatus(number_); }
    const std::string& detail() const { return detail_; }
    std::int32_t position() const { return position_; }
    // The description with the detail appended as VBScript shows it.
    std::string description() const;
    const char* what() const noexcept override { return "qvr::vbscript::ScriptError"; }

private:
    int number_;
    std::string detail_;
    std::int32_t position_;
    HRESULT status_ = 0;
    std::string foreignText_;
};

[[noreturn]] void raise(int number);
[[noreturn]] void raise(int number, std::string_view detail);

} // namespace qvr::vbscript
