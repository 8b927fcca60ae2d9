// A stream over a growing block of memory, freed with the stream.
#pragma once

#include <cstdint>
#include <vector>

#include <qvr/stream.h>

#include "platform/com/object_base.h"

namespace qvr {

class CMemoryStream final : public ObjectBase<IStream> {
public:
    HRESULT Read(void* buffer, std::uint32_t count, std::uint32_t* read) override;
    HRESULT Write(const void* buffer, std::uint32_t count, std::uint32_t* written) override;
    HRESULT Seek(std::int64_t move, STREAM_SEEK origin, std::uint64_t* newPosition) override;
    HRESULT Stat(STATSTG* stat, std::uint32_t flag) override;

private:
    std::vector<unsigned char> bytes_;
    std::uint64_t position_ = 0;
};

} // namespace qvr
