// Module state: the count of live objects and server locks that decides whether the library
// could be unloaded. Every object adds one at construction and takes it away at destruction.
#pragma once

#include <cstdint>

namespace qvr::module {

void lock();
void unlock();
std::int64_t lockCount();

} // namespace qvr::module
