// The operators of the language on variants, with VBScript's rules: the platform's arithmetic
// for the numeric operators, Null propagation, and the comparison rules in which a literal
// decides whether a number and a string are compared as numbers or as text. Operands that hold
// objects must have been reduced to their default values by the caller (except for Is).
#pragma once

#include <cstdint>

#include <qvr/variant.h>

#include "vbscript/program.h"

namespace qvr::vbscript {

// `*out` becomes `left op right` (`out` may be `&left`). `flags` holds kLeftLiteral /
// kRightLiteral for comparisons. Throws ScriptError, leaving `*out` as it was.
void applyBinary(Op op, std::uint8_t flags, const Variant& left, const Variant& right, LCID lcid,
                 Variant* out);
// `value` becomes `op value` (Neg or Not).
void applyUnary(Op op, Variant& value);

// The language's error number for a failed status of the variant primitives.
int errorFromStatus(HRESULT status);
// Raises the error for `status` when it failed.
void check(HRESULT status);

} // namespace qvr::vbscript
