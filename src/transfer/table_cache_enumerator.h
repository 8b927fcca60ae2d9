// The enumerator of the table cache: a position in the cache's key order that can skip, rewind
// and copy itself, but cannot hand out an item (an entry is no object until a part asks for its
// table). Next answers E_NOTIMPL while an entry is left, so whoever walks the cache walks it by
// index.
#pragma once

#include <cstdint>

#include <qvr/object_list.h>

#include "platform/com/object_base.h"
#include "transfer/table_cache.h"

namespace qvr {

class CQVRCatalogTableCacheEnumerator final : public ObjectBase<IEnumVARIANT> {
public:
    explicit CQVRCatalogTableCacheEnumerator(CQVRCatalogObjectTableCache* cache,
                                             std::size_t position = 0)
        : cache_(cache), position_(position) {}

    HRESULT Next(std::uint32_t count, Variant* items, std::uint32_t* fetched) override;
    HRESULT Skip(std::uint32_t count) override;
    HRESULT Reset() override;
    HRESULT Clone(Ref<IEnumVARIANT>* enumerator) override;

private:
    Ref<CQVRCatalogObjectTableCache> cache_;
    std::size_t position_;
};

} // namespace qvr
