#include "core/vector_enumerator.h"

#include "platform/com/failure.h"

namespace qvr {

HRESULT CQVRCatalogVectorEnumerator::Next(std::uint32_t count, Variant* items,
                                          std::uint32_t* fetched) {
    return guarded([&] {
        if (!items) return E_POINTER;
        if (count > 1 && !fetched) return E_POINTER;
        if (!list_) return E_FAIL;
        std::uint32_t given = 0;
        for (; given < count && position_ < list_->size(); ++given, ++position_)
            items[given] = Variant(static_cast<IUnknown*>(list_->at(position_)));
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    });
}

HRESULT CQVRCatalogVectorEnumerator::Skip(std::uint32_t count) {
    if (!list_) return E_FAIL;
    const std::size_t left = list_->size() - std::min(position_, list_->size());
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
}

HRESULT CQVRCatalogVectorEnumerator::Reset() {
    if (!list_) return E_FAIL;
    position_ = 0;
    return S_OK;
}

HRESULT CQVRCatalogVectorEnumerator::Clone(Ref<IEnumVARIANT>* enumerator) {
    return guarded([&] {
        if (!enumerator) return E_POINTER;
        *enumerator = makeObject<CQVRCatalogVectorEnumerator>(list_.get(), position_);
        return S_OK;
    });
}

} // namespace qvr
