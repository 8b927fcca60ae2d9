// The numbered messages of the library. Every failure a user should read names one of these
// numbers, or carries a text composed for the occasion.
#pragma once

#include <cstdint>
#include <string_view>

namespace qvr {

// The text of a numbered message, or an empty view when the number is not in the table.
std::string_view messageText(std::uint32_t number);

} // namespace qvr
