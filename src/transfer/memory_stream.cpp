#include "transfer/memory_stream.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/com/failure.h"

namespace qvr {

HRESULT CMemoryStream::Read(void* buffer, std::uint32_t count, std::uint32_t* read) {
    if (!buffer && count > 0) return E_POINTER;
    const std::uint64_t left = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
    const auto n = static_cast<std::uint32_t>(std::min<std::uint64_t>(count, left));
    if (n > 0) std::memcpy(buffer, bytes_.data() + position_, n);
    position_ += n;
    if (read) *read = n;
    return n == count ? S_OK : S_FALSE;
}

HRESULT CMemoryStream::Write(const void* buffer, std::uint32_t count, std::uint32_t* written) {
    return guarded([&] {
        if (!buffer && count > 0) return E_POINTER;
        const std::uint64_t end = position_ + count;
        if (end > bytes_.size()) bytes_.resize(static_cast<std::size_t>(end));
        if (count > 0) std::memcpy(bytes_.data() + position_, buffer, count);
        position_ = end;
        if (written) *written = count;
        return S_OK;
    });
}

HRESULT CMemoryStream::Seek(std::int64_t move, STREAM_SEEK origin, std::uint64_t* newPosition) {
    std::int64_t base = 0;
    switch (origin) {
    case STREAM_SEEK_SET: base = 0; break;
    case STREAM_SEEK_CUR: base = static_cast<std::int64_t>(position_); break;
    case STREAM_SEEK_END: base = static_cast<std::int64_t>(bytes_.size()); break;
    default: return STG_E_INVALIDFUNCTION;
    }
    if (move < -base || move > std::numeric_limits<std::int64_t>::max() - base)
        return STG_E_INVALIDFUNCTION;
    position_ = static_cast<std::uint64_t>(base + move);
    if (newPosition) *newPosition = position_;
    return S_OK;
}

HRESULT CMemoryStream::Stat(STATSTG* stat, std::uint32_t) {
    if (!stat) return E_POINTER;
    stat->cbSize = bytes_.size();
    return S_OK;
}

} // namespace qvr
