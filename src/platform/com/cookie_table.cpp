#include "platform/com/cookie_table.h"

namespace qvr {

CookieTable& CookieTable::instance() {
    // Never destroyed: objects that outlive static destruction may still revoke their tokens.
    static CookieTable* table = new CookieTable;
    return *table;
}

HRESULT CookieTable::registerInterface(IUnknown* object, std::uint32_t* cookie) {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!object) return E_INVALIDARG;
    Ref<IUnknown> held(object);
    std::lock_guard lock(mutex_);
    // Skip 0 and tokens still in use when the counter wraps.
    while (next_ == 0 || entries_.count(next_)) ++next_;
    *cookie = next_++;
    entries_.emplace(*cookie, std::move(held));
    return S_OK;
}

HRESULT CookieTable::lookup(std::uint32_t cookie, Ref<IUnknown>* out) const {
    std::lock_guard lock(mutex_);
    auto it = entries_.find(cookie);
    if (it == entries_.end()) return E_INVALIDARG;
    *out = it->second;
    return S_OK;
}

HRESULT CookieTable::revoke(std::uint32_t cookie) {
    Ref<IUnknown> released;
    {
        std::lock_guard lock(mutex_);
        auto it = entries_.find(cookie);
        if (it == entries_.end()) return E_INVALIDARG;
        released = std::move(it->second);
        entries_.erase(it);
    }
    // The release runs outside the lock: it may destroy an object that revokes its own tokens.
    return S_OK;
}

std::size_t CookieTable::size() const {
    std::lock_guard lock(mutex_);
    return entries_.size();
}

} // namespace qvr
