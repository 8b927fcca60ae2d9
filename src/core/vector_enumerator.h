// The enumerator of a list: a position in the list's vector. The position does not move when the
// list changes under it, so walk a live list only while nothing changes it.
#pragma once

#include <cstdint>

#include <qvr/object_list.h>

#include "core/object_vector.h"
#include "platform/com/object_base.h"

namespace qvr {

class CQVRCatalogVectorEnumerator final : public ObjectBase<IEnumVARIANT> {
public:
    explicit CQVRCatalogVectorEnumerator(CQVRCatalogObjectVector* list, std::size_t position = 0)
        : list_(list), position_(position) {}

    HRESULT Next(std::uint32_t count, Variant* items, std::uint32_t* fetched) override;
    HRESULT Skip(std::uint32_t count) override;
    HRESULT Reset() override;
    HRESULT Clone(Ref<IEnumVARIANT>* enumerator) override;

private:
    Ref<CQVRCatalogObjectVector> list_;
    std::size_t position_;
};

} // namespace qvr
