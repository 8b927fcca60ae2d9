#include "core/ids.h"

#include <sys/random.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>

namespace qvr {
namespace {

std::atomic<std::uint32_t> counter{0};
std::atomic<std::uint64_t> lastClockId{0};

void randomBytes(unsigned char* p, std::size_t n) {
    while (n > 0) {
        ssize_t got = getrandom(p, n, 0);
        if (got <= 0) {
            // No kernel source (only on very old systems): fall back on the library's device.
            std::random_device rd;
            for (; n > 0; --n) *p++ = static_cast<unsigned char>(rd());
            return;
        }
        p += got;
        n -= static_cast<std::size_t>(got);
    }
}

// Milliseconds of the system clock as 100-nanosecond ticks since 1601-01-01 UTC.
std::uint64_t fileTimeNow() {
    using namespace std::chrono;
    const auto ms = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    constexpr std::uint64_t epochDelta = 116444736000000000ull; // 1601 to 1970 in ticks
    return epochDelta + static_cast<std::uint64_t>(ms) * 10000u;
}

String clockId(char letter) {
    std::uint64_t value = fileTimeNow() + counter.fetch_add(1, std::memory_order_relaxed);
    // Clock plus counter only grows; should the clock step back, keep growing from the last id so
    // that no id of this process repeats.
    std::uint64_t last = lastClockId.load(std::memory_order_relaxed);
    do {
        if (value <= last) value = last + 1;
    } while (!lastClockId.compare_exchange_weak(last, value, std::memory_order_relaxed));
    char buf[24];
    std::snprintf(buf, sizeof buf, "%c%llx", letter, static_cast<unsigned long long>(value));
    return String(buf);
}

} // namespace

String newGuidId() {
    std::array<unsigned char, 16> b{};
    randomBytes(b.data(), b.size());
    b[6] = static_cast<unsigned char>((b[6] & 0x0F) | 0x40); // version 4
    b[8] = static_cast<unsigned char>((b[8] & 0x3F) | 0x80); // variant 1
    char buf[40];
    std::snprintf(buf, sizeof buf,
                  "%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X", b[0],
                  b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13],
                  b[14], b[15]);
    return String(buf);
}

String newColumnId() {
    return clockId('C');
}
String newRowId() {
    return clockId('R');
}
std::uint32_t idCounter() {
    return counter.load(std::memory_order_relaxed);
}

} // namespace qvr
