// The thread's error record: the description of the last failure that an operation reported, the
// class that reported it and the interface it was called through. A caller reads it once after a
// failing status; reading clears it.
#pragma once

#include <cstdint>

#include <qvr/com.h>
#include <qvr/string.h>

namespace qvr {

struct ErrorInfo {
    String description;
    String source;    // stable per-class identifier, e.g. "QVRCatalog.Part"
    String interface; // name of the interface the failing call came through
    String helpFile;
    std::uint32_t helpContext = 0;
};

// Hands the thread's current error record to the caller and clears it. False when there is none
// (`out` is then left as it was); a null `out` just clears the record.
QVR_API bool GetErrorInfo(ErrorInfo* out);
// Installs a record as the thread's current error (replacing any previous one).
QVR_API void SetErrorInfo(const ErrorInfo& info);
// Clears the thread's error record.
QVR_API void ClearErrorInfo();

} // namespace qvr
