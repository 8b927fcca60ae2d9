#include "core/object_link.h"

#include <utility>

#include "platform/com/cookie_table.h"
#include "platform/com/failure.h"

namespace qvr {

HRESULT ObjectLink::set(IQVRCatalogObject* object) {
    if (object && object == linked_) return S_OK; // linked already
    drop();
    if (!object) return S_OK;
    const HRESULT hr = CookieTable::instance().registerInterface(object, &cookie_);
    if (hr == S_OK) linked_ = object;
    return hr;
}

void ObjectLink::drop() {
    linked_ = nullptr;
    if (cookie_) CookieTable::instance().revoke(std::exchange(cookie_, 0));
}

HRESULT ObjectLink::get(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const {
    *object = linked_;
    return linked_ ? S_OK : withoutLink;
}

Ref<IQVRCatalogObject> ObjectLink::object() const {
    return Ref<IQVRCatalogObject>(linked_);
}

HRESULT ObjectLink::handOut(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const noexcept {
    return guarded([&] { return object ? get(object, withoutLink) : E_POINTER; });
}

} // namespace qvr
