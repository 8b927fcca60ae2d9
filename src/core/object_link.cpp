#include "core/object_link.h"

#include <utility>

#include "platform/com/cookie_table.h"
#include "platform/com/failure.h"

namespace qvr {

HRESULT ObjectLink::set(IQVRCatalogObject* object) {
    drop();
    if (!object) return S_OK;
    return CookieTable::instance().registerInterface(object, &cookie_);
}

void ObjectLink::drop() {
    if (cookie_) CookieTable::instance().revoke(std::exchange(cookie_, 0));
}

HRESULT ObjectLink::get(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const {
    *object = nullptr;
    return cookie_ ? CookieTable::instance().get(cookie_, object) : withoutLink;
}

Ref<IQVRCatalogObject> ObjectLink::object() const {
    Ref<IQVRCatalogObject> linked;
    if (cookie_) CookieTable::instance().get(cookie_, &linked);
    return linked;
}

HRESULT ObjectLink::handOut(Ref<IQVRCatalogObject>* object, HRESULT withoutLink) const noexcept {
    return guarded([&] { return object ? get(object, withoutLink) : E_POINTER; });
}

} // namespace qvr
