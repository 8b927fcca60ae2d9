// New ids for elements: GUID texts for catalog elements, clock-and-counter ids for columns and
// rows. Each call returns a fresh string the caller owns.
#pragma once

#include <cstdint>

#include <qvr/string.h>

namespace qvr {

// 36 characters, capitals, no braces: 8F2D2C11-90AB-4C2E-9DC0-3A5B1F7E6D42 (a random version-4
// GUID).
String newGuidId();
// "C" and lower-case hexadecimal of the 100-nanosecond ticks since 1601 UTC plus a counter.
String newColumnId();
// "R" and the same number; columns and rows draw from one counter.
String newRowId();

// The counter that column and row ids share (for tests).
std::uint32_t idCounter();

} // namespace qvr
