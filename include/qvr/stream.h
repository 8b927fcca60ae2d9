// A stream of bytes, as the catalog's host stream hands it out.
#pragma once

#include <cstdint>

#include <qvr/com.h>

namespace qvr {

enum STREAM_SEEK : std::uint32_t {
    STREAM_SEEK_SET = 0,
    STREAM_SEEK_CUR = 1,
    STREAM_SEEK_END = 2,
};

struct STATSTG {
    std::uint64_t cbSize = 0;
};

class QVR_API IStream : public IUnknown {
public:
    QVR_INTERFACE_ID(IStream)
    // `read` and `written` may be null.
    virtual HRESULT Read(void* buffer, std::uint32_t count, std::uint32_t* read) = 0;
    virtual HRESULT Write(const void* buffer, std::uint32_t count, std::uint32_t* written) = 0;
    // A position before the start gives STG_E_INVALIDFUNCTION; `newPosition` may be null.
    virtual HRESULT Seek(std::int64_t move, STREAM_SEEK origin, std::uint64_t* newPosition) = 0;
    virtual HRESULT Stat(STATSTG* stat, std::uint32_t flag) = 0;
};

} // namespace qvr
