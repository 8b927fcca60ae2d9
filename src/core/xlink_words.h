// The words of XLink by which links say how they are followed, at the index of their numbers
// (QVRURLShow, QVRURLActuate). URLs and reference columns store them by these names.
#pragma once

namespace qvr {

inline constexpr const char* xlinkShowWords[] = {"new", "replace", "embed", "undefined"};
inline constexpr const char* xlinkActuateWords[] = {"onLoad", "onRequest", "undefined"};

} // namespace qvr
