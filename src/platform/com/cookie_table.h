// Turns an object into a 32-bit token and back. A registered object stays alive until its token
// is revoked: this is how a wrapper holds its catalog and its parent without a cycle of direct
// references. Token 0 means none.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include <qvr/com.h>

namespace qvr {

class CookieTable {
public:
    static CookieTable& instance();

    // Registers `object` (which gains a reference) and hands back its new token.
    HRESULT registerInterface(IUnknown* object, std::uint32_t* cookie);
    // The object of a token, as the interface asked for. An unknown token gives E_INVALIDARG;
    // an object without that interface E_NOINTERFACE.
    template <class I>
    HRESULT get(std::uint32_t cookie, Ref<I>* out) {
        if (!out) return E_POINTER;
        *out = nullptr;
        Ref<IUnknown> object;
        HRESULT hr = lookup(cookie, &object);
        if (hr != S_OK) return hr;
        *out = query<I>(object.get());
        return *out ? S_OK : E_NOINTERFACE;
    }
    // Drops the token and the reference it held. An unknown token gives E_INVALIDARG.
    HRESULT revoke(std::uint32_t cookie);

    std::size_t size() const;

private:
    // A token is a slot's number (from 1) in its low bits and the slot's generation above them:
    // a slot is used again after its token was revoked, under a new generation, so that the old
    // token stays unknown.
    static constexpr unsigned kSlotBits = 24;
    static constexpr std::uint32_t kSlotMask = (1u << kSlotBits) - 1;
    struct Slot {
        Ref<IUnknown> object; // null while the slot is free
        std::uint32_t generation = 0;
    };

    HRESULT lookup(std::uint32_t cookie, Ref<IUnknown>* out);
    // The slot of a token in use, or null.
    Slot* slotOf(std::uint32_t cookie);

    mutable std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_; // indexes of free slots
};

} // namespace qvr
