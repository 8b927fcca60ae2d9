// An object of a tool's own that the library holds by counted reference, such as a sink: it
// lives until the last reference to it goes.
#pragma once

#include <cstdint>

namespace qvr::tools {

template <class Interface>
class Counted : public Interface {
public:
    std::uint32_t AddRef() override { return ++refs_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --refs_;
        if (left == 0) delete this;
        return left;
    }

private:
    std::uint32_t refs_ = 0;
};

} // namespace qvr::tools
