#include "transfer/table_cache_enumerator.h"

#include <algorithm>

#include "platform/com/failure.h"

namespace qvr {

HRESULT CQVRCatalogTableCacheEnumerator::Next(std::uint32_t count, Variant* items,
                                              std::uint32_t* fetched) {
    if (!items) return E_POINTER;
    if (count > 1 && !fetched) return E_POINTER;
    if (!cache_) return E_FAIL;
    if (fetched) *fetched = 0;
    if (count == 0) return S_OK;
    // An entry is no object: as long as one is left, nothing can be given.
    return position_ < cache_->size() ? E_NOTIMPL : S_FALSE;
}

HRESULT CQVRCatalogTableCacheEnumerator::Skip(std::uint32_t count) {
    if (!cache_) return E_FAIL;
    const std::size_t left = cache_->size() - std::min(position_, cache_->size());
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
}

HRESULT CQVRCatalogTableCacheEnumerator::Reset() {
    if (!cache_) return E_FAIL;
    position_ = 0;
    return S_OK;
}

HRESULT CQVRCatalogTableCacheEnumerator::Clone(Ref<IEnumVARIANT>* enumerator) {
    return guarded([&] {
        if (!enumerator) return E_POINTER;
        *enumerator = makeObject<CQVRCatalogTableCacheEnumerator>(cache_.get(), position_);
        return S_OK;
    });
}

} // namespace qvr
