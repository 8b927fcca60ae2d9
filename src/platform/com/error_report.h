// The one road by which operations report failures: a description goes into the thread's error
// record together with the reporting class and interface, and the status comes back to return.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include <qvr/com.h>
#include <qvr/error_info.h>
#include <qvr/string.h>

#include "platform/com/messages.h"

namespace qvr {

// Where a report comes from: the stable identifier of the class and the interface called.
struct ErrorSource {
    const char* source; // e.g. "QVRCatalog.Part"; may be null (then left out)
    IID iid;
};

// Reports numbered message `message`. A number not in the table gives "Unknown Error". A status
// of 0 becomes 0x80040000 | message. The help file and context are recorded only when both are
// given. Returns the status.
HRESULT reportError(const ErrorSource& from, std::uint32_t message, HRESULT status,
                    std::uint32_t helpContext = 0, const String& helpFile = String());

// Reports a ready text. The status stays as given; 0 returns DISP_E_EXCEPTION.
HRESULT reportError(const ErrorSource& from, const String& text, HRESULT status,
                    std::uint32_t helpContext = 0, const String& helpFile = String());

// Fills the %1!S!, %2!S!... inserts of a message with `args` in order.
String formatInserts(std::string_view text, std::initializer_list<std::string_view> args);

} // namespace qvr
