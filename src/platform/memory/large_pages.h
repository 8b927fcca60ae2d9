// Memory for the large tables the library keeps for itself (the DOM layer's lookup tables), asked
// of the system on pages of 2 MB where it allows: a lookup in a table of tens of megabytes then
// finds its address translation in the processor's buffer instead of walking the page tables, a
// wait on memory of its own. Blocks under 2 MB come from the ordinary heap. Only memory the
// library owns is placed so; nothing of the process's own heap changes.
#pragma once

#include <memory_resource>

namespace qvr::memory {

// The process's one resource of this kind; thread-safe as the heap is.
std::pmr::memory_resource* largePages();

} // namespace qvr::memory
