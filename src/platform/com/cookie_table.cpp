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
    std::uint32_t index;
    if (!free_.empty()) {
        index = free_.back();
        free_.pop_back();
    } else {
        if (slots_.size() >= kSlotMask) return E_OUTOFMEMORY;
        // A revoke never allocates: the free list has room for every slot.
        if (free_.capacity() <= slots_.size()) free_.reserve(2 * slots_.size() + 16);
        slots_.emplace_back();
        index = static_cast<std::uint32_t>(slots_.size() - 1);
    }
    Slot& slot = slots_[index];
    slot.object = std::move(held);
    *cookie = (slot.generation << kSlotBits) | (index + 1);
    return S_OK;
}

CookieTable::Slot* CookieTable::slotOf(std::uint32_t cookie) {
    const std::uint32_t number = cookie & kSlotMask;
    if (number == 0 || number > slots_.size()) return nullptr;
    Slot& slot = slots_[number - 1];
    return slot.object && slot.generation == cookie >> kSlotBits ? &slot : nullptr;
}

HRESULT CookieTable::lookup(std::uint32_t cookie, Ref<IUnknown>* out) {
    std::lock_guard lock(mutex_);
    const Slot* slot = slotOf(cookie);
    if (!slot) return E_INVALIDARG;
    *out = slot->object;
    return S_OK;
}

HRESULT CookieTable::revoke(std::uint32_t cookie) {
    Ref<IUnknown> released;
    {
        std::lock_guard lock(mutex_);
        Slot* slot = slotOf(cookie);
        if (!slot) return E_INVALIDARG;
        released = std::move(slot->object);
        slot->object = nullptr;
        slot->generation = (slot->generation + 1) & (~0u >> kSlotBits);
        free_.push_back((cookie & kSlotMask) - 1);
    }
    // The release runs outside the lock: it may destroy an object that revokes its own tokens.
    return S_OK;
}

std::size_t CookieTable::size() const {
    std::lock_guard lock(mutex_);
    return slots_.size() - free_.size();
}

} // namespace qvr
