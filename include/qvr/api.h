// Marks what the shared library exports. The library is built with hidden visibility, so only
// the entry points and types marked here are part of its dynamic symbol table; the interface
// classes are marked too, so that their type information is one and the same on both sides and
// query<I>() finds an interface of an object made inside the library.
#pragma once

#if defined(__GNUC__) || defined(__clang__)
#define QVR_API __attribute__((visibility("default")))
#else
#define QVR_API
#endif
