#include <qvr/variant.h>

namespace qvr {

const String& Variant::nullString() {
    static const String none;
    return none;
}

void Variant::copyOwningPayload(const Variant& o) {
    switch (payloadOf(vt_)) {
    case Payload::Scalar: u_.cy = o.u_.cy; break;
    case Payload::Text: new (&u_.str) String(o.u_.str); break;
    case Payload::Object: new (&u_.object) Ref<IUnknown>(o.u_.object); break;
    case Payload::Items: new (&u_.array) std::shared_ptr<Array>(o.u_.array); break;
    }
}

void Variant::takeOwningPayload(Variant& o) noexcept {
    switch (payloadOf(vt_)) {
    case Payload::Scalar: u_.cy = o.u_.cy; break;
    case Payload::Text:
        new (&u_.str) String(std::move(o.u_.str));
        o.u_.str.~String();
        break;
    case Payload::Object: new (&u_.object) Ref<IUnknown>(std::move(o.u_.object)); break;
    case Payload::Items:
        new (&u_.array) std::shared_ptr<Array>(std::move(o.u_.array));
        o.u_.array.~shared_ptr();
        break;
    }
}

void Variant::destroyOwningPayload() noexcept {
    switch (payloadOf(vt_)) {
    case Payload::Scalar: break;
    case Payload::Text: u_.str.~String(); break;
    case Payload::Object: u_.object.~Ref(); break;
    case Payload::Items: u_.array.~shared_ptr(); break;
    }
}

const std::vector<Variant>& Variant::items() const {
    static const std::vector<Variant> none;
    return isArray() && u_.array ? u_.array->items : none;
}

std::vector<Variant>* Variant::mutableItems() {
    if (!isArray() || !u_.array) return nullptr;
    if (u_.array.use_count() > 1) u_.array = std::make_shared<Array>(*u_.array);
    return &u_.array->items;
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
    case VT_BSTR: return a.u_.str == b.u_.str;
    case VT_DISPATCH:
    case VT_UNKNOWN: return a.u_.object == b.u_.object;
    default:
        if (a.isArray()) return a.lowerBound() == b.lowerBound() && a.items() == b.items();
        return false;
    }
}

} // namespace qvr
