// The thread's error record as the tests read it.
#pragma once

#include <string>

#include <qvr/error_info.h>

namespace qvr::testing {

// The description of the thread's last reported failure ("" when there is none); clears it.
inline std::string lastError() {
    ErrorInfo info;
    return GetErrorInfo(&info) ? info.description.str() : std::string();
}

} // namespace qvr::testing
