#include <qvr/variant.h>

namespace qvr {

const std::vector<Variant>& Variant::items() const {
    static const std::vector<Variant> none;
    return array_ ? array_->items : none;
}

std::vector<Variant>* Variant::mutableItems() {
    if (!array_) return nullptr;
    if (array_.use_count() > 1) array_ = std::make_shared<Array>(*array_);
    return &array_->items;
}

bool operator==(const Variant& a, const Variant& b) {
    if (a.vt_ != b.vt_) return false;
    switch (a.vt_) {
    case VT_EMPTY:
    case VT_NULL: return true;
    case VT_I2: return a.u_.i2 == b.u_.i2;
    case VT_I4: return a.u_.i4 == b.u_.i4;
    case VT_R4: return a.u_.r4 == b.u_.r4;
    case VT_R8: return a.u_.r8 == b.u_.r8;
    case VT_CY: return a.u_.cy == b.u_.cy;
    case VT_DATE: return a.u_.date == b.u_.date;
    case VT_BOOL: return a.u_.b == b.u_.b;
    case VT_UI1: return a.u_.ui1 == b.u_.ui1;
    case VT_ERROR: return a.u_.scode == b.u_.scode;
    case VT_BSTR: return a.str_ == b.str_;
    case VT_DISPATCH:
    case VT_UNKNOWN: return a.object_ == b.object_;
    default:
        if (a.isArray()) return a.lowerBound() == b.lowerBound() && a.items() == b.items();
        return false;
    }
}

} // namespace qvr
