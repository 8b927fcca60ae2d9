// Processor time of this process, which the table benchmarks measure by: the machine may be
// shared, and time spent waiting for another process's turn says nothing about this code.
#pragma once

#include <ctime>

namespace qvr::bench {

inline double cpuNow() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

inline double secondsSince(double start) {
    return cpuNow() - start;
}

} // namespace qvr::bench
