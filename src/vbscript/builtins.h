// The run-time library: every function and constant the language offers, in one table that the
// parser searches by name (case ignored) once, at compile time.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <qvr/variant.h>

namespace qvr::vbscript {

struct RandomState {
    std::uint32_t seed = 0x50000; // the generator's documented start value
    double last = 0;              // the number Rnd(0) repeats
    bool started = false;
};

// What a library function may know of its caller.
struct CallContext {
    LCID lcid = LCID_EN_US;
    RandomState* random = nullptr;
};

// Arguments are the caller's stack slots (or, when folding, the compiled constants): a function
// may move from an argument only once it can no longer fail. A left-out argument
// ("Mid(s, 2, )") arrives as a missing-value variant.
using BuiltinFn = void (*)(CallContext& cx, Variant* args, int argc, Variant* out);

enum BuiltinKind : std::uint8_t {
    kPure,     // same arguments, same result: folded when all arguments are constants
    kVolatile, // reads the clock or the random generator: never folded
    kConstant, // a named constant (vbCrLf): folded, and counts as a literal in comparisons
};

struct Builtin {
    std::string_view name; // as the language spells it
    std::uint8_t minArgs;
    std::uint8_t maxArgs;
    BuiltinKind kind;
    BuiltinFn fn; // null for a constant
    // The value of a constant: a number of type constType, or a text (a null view for the
    // null string vbNullString).
    VARTYPE constType = VT_EMPTY;
    std::int32_t constValue = 0;
    std::string_view constText = {};
};

// The value of a constant entry.
Variant constantValue(const Builtin& b);

// The entries of one area of the library.
std::span<const Builtin> mathBuiltins();
std::span<const Builtin> conversionBuiltins();
std::span<const Builtin> stringBuiltins();
std::span<const Builtin> searchBuiltins();
std::span<const Builtin> bytesBuiltins();
std::span<const Builtin> formatBuiltins();
std::span<const Builtin> dateBuiltins();
std::span<const Builtin> dateIntervalBuiltins();
std::span<const Builtin> inspectionBuiltins();
std::span<const Builtin> constantBuiltins();

// The entries by index, 0 to builtinCount() - 1 (the lexer finds a name's index).
int builtinCount();
const Builtin& builtinAt(int index);

} // namespace qvr::vbscript
