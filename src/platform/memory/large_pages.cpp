#include "platform/memory/large_pages.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace qvr::memory {
namespace {

constexpr std::size_t kLargePage = std::size_t(2) << 20;

std::size_t roundedUp(std::size_t bytes) {
    return (bytes + kLargePage - 1) & ~(kLargePage - 1);
}

class LargePages final : public std::pmr::memory_resource {
    void* do_allocate(std::size_t bytes, std::size_t alignment) override {
        if (bytes < kLargePage || alignment > kLargePage)
            return std::pmr::new_delete_resource()->allocate(bytes, alignment);
        // A mapping one page longer than asked, cut to start on a page boundary: the system
        // places a large page only where a whole one fits its alignment.
        const std::size_t length = roundedUp(bytes);
        void* mapped = mmap(nullptr, length + kLargePage, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) throw std::bad_alloc();
        const auto start = reinterpret_cast<std::uintptr_t>(mapped);
        const std::uintptr_t aligned = (start + kLargePage - 1) & ~(kLargePage - 1);
        if (aligned > start) munmap(mapped, aligned - start);
        const std::uintptr_t end = start + length + kLargePage;
        if (end > aligned + length)
            munmap(reinterpret_cast<void*>(aligned + length), end - aligned - length);
        // Advice only: a system without large pages keeps small ones, and nothing else changes.
        madvise(reinterpret_cast<void*>(aligned), length, MADV_HUGEPAGE);
        return reinterpret_cast<void*>(aligned);
    }

    void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override {
        if (bytes < kLargePage || alignment > kLargePage)
            return std::pmr::new_delete_resource()->deallocate(block, bytes, alignment);
        munmap(block, roundedUp(bytes));
    }

    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
        return this == &other;
    }
};

} // namespace

std::pmr::memory_resource* largePages() {
    // Never destroyed: documents freed while the process ends may still give blocks back.
    static LargePages* const resource = new LargePages;
    return resource;
}

} // namespace qvr::memory
