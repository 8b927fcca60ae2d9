#include "platform/com/module.h"

#include <atomic>

#include <qvr/com.h>

namespace qvr {
namespace module {
namespace {
std::atomic<std::int64_t> count{0};
}

void lock() {
    count.fetch_add(1, std::memory_order_relaxed);
}
void unlock() {
    count.fetch_sub(1, std::memory_order_acq_rel);
}
std::int64_t lockCount() {
    return count.load(std::memory_order_acquire);
}

} // namespace module

HRESULT CanUnloadNow() {
    return module::lockCount() == 0 ? S_OK : S_FALSE;
}

HRESULT LockServer(bool lock) {
    lock ? module::lock() : module::unlock();
    return S_OK;
}

} // namespace qvr
