// The canonical text of a value, for tools and tests that compare results as text: numbers as
// CStr writes them under en-US, strings in double quotes with inner quotes doubled, True/False,
// Empty, Null, Nothing/Object, dates as yyyy-mm-ddThh:mm:ss, arrays as Array(a, b).
#pragma once

#include <string>

#include <qvr/variant.h>

namespace qvr::vbscript {

std::string canonicalText(const Variant& v);

// "<VarType>\t<canonical text>" for a value (arrays report 8204).
std::string describeValue(const Variant& v);

} // namespace qvr::vbscript
