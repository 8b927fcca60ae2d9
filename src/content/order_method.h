// How a supplier is reached: OrderMethods lists OrderMethod elements, each an OrderTarget (one
// Phone, Email, Fax or URL) and a protocol text (qvr/order.h). All three are keyed by a text made
// for each wrapper.
#pragma once

#include <qvr/order.h>

#include "core/accessors.h"
#include "core/catalog_object.h"

namespace qvr {

class CQVRCatalogOrderTarget final : public CatalogObject<IQVRCatalogOrderTarget, qvrOrderTarget> {
public:
    HRESULT get_target(Ref<IQVRCatalogObject>* target) override;
    HRESULT putref_target(IQVRCatalogObject* target) override;
    HRESULT get_targetType(std::int32_t* type) override;
};

class CQVRCatalogOrderMethod final : public CatalogObject<IQVRCatalogOrderMethod, qvrOrderMethod> {
public:
    HRESULT get_orderProtocol(String* protocol) override {
        return accessors::getChildText(*this, "OrderProtocol", protocol);
    }
    HRESULT put_orderProtocol(const String& protocol) override {
        return accessors::putRemovableChildText(*this, "OrderProtocol", protocol, {});
    }
    HRESULT get_orderTarget(Ref<IQVRCatalogOrderTarget>* target) override {
        return accessors::getSingleton(*this, "OrderTarget", target);
    }
    // Always the first child.
    HRESULT putref_orderTarget(IQVRCatalogObject* target) override {
        return accessors::putRequiredSingleton(*this, "OrderTarget", target, {});
    }
};

class CQVRCatalogOrderMethods final
    : public CatalogObject<IQVRCatalogOrderMethods, qvrOrderMethods> {};

} // namespace qvr
