// Reading a variant as a value of one fundamental type: the steps of changeType, shared with the
// operators, which bring their operands to a common type the same way.
#pragma once

#include <cstdint>
#include <string>

#include <qvr/variant.h>

namespace qvr {

// Each gives S_OK, DISP_E_TYPEMISMATCH (Null, objects, arrays, errors, text that is no number)
// or DISP_E_OVERFLOW. Empty reads as 0, False as 0 and True as -1.

// The value rounded half to even to an integer. `radixWidth` (16 or 32) is the width in which
// a "&H"/"&O" text wraps to a negative number: "&HFFFF" is -1 at 16 bits, 65535 at 32.
HRESULT integerOf(const Variant& v, LCID lcid, int radixWidth, std::int64_t* out);
HRESULT doubleOf(const Variant& v, LCID lcid, double* out);
HRESULT currencyOf(const Variant& v, LCID lcid, std::int64_t* out);
HRESULT dateOf(const Variant& v, LCID lcid, DATE* out);
HRESULT boolOf(const Variant& v, LCID lcid, bool* out);
// Text: booleans as "-1"/"0" unless `flags` holds VARIANT_ALPHABOOL or VARIANT_LOCALBOOL.
HRESULT textOf(const Variant& v, LCID lcid, std::uint16_t flags, std::string* out);

} // namespace qvr
