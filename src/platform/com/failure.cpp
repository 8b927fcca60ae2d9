#include "platform/com/failure.h"

namespace qvr {

void raiseFailure(HRESULT status) {
    throw Failure(status);
}

} // namespace qvr
