#include "tables/index_moves.h"

#include <algorithm>
#include <climits>

namespace qvr::index_moves {
namespace {

bool isInteger(const Variant& v) {
    return v.vt() == VT_I2 || v.vt() == VT_I4;
}
std::int32_t integerOf(const Variant& v) {
    return v.vt() == VT_I2 ? v.i2() : v.i4();
}
std::int32_t clamped(std::int64_t place) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(place, INT32_MIN, INT32_MAX));
}
bool isTextOrObject(const Variant& v) {
    return v.vt() == VT_BSTR || v.isObject();
}

} // namespace

HRESULT checkArguments(const ObjectCore& reporter, const Variant& from, const Variant& to,
                       std::int32_t* target) {
    if (from.vt() != (VT_ARRAY | VT_VARIANT) && !isTextOrObject(from) && !isInteger(from))
        return E_INVALIDARG;
    if (!isTextOrObject(to) && !isInteger(to)) return E_INVALIDARG;
    if (!isInteger(to)) return E_NOTIMPL;
    *target = integerOf(to);
    return *target < 1 ? reporter.report(msgIndexZero) : S_OK;
}

HRESULT moveAll(const Variant& from, std::int32_t to, const MoveOne& move) {
    if (isInteger(from)) return move(integerOf(from), to);
    if (!from.isArray()) return E_NOTIMPL;
    // Each move shifts the places of what follows: an item from before the target makes the
    // next one's place one less, an item from behind it pushes the target one further.
    HRESULT hr = S_OK;
    // Wide enough that no walk over any places overflows; the places handed on are clamped.
    std::int64_t shift = 0, target = to, previous = 0;
    bool first = true;
    for (const Variant& element : from.items()) {
        if (!isInteger(element)) {
            hr = E_NOTIMPL;
            continue;
        }
        if (!first) {
            if (previous > to)
                ++target;
            else
                --shift;
        }
        first = false;
        const std::int32_t place = integerOf(element);
        hr = move(clamped(place + shift), clamped(target));
        previous = place;
    }
    return hr;
}

} // namespace qvr::index_moves
