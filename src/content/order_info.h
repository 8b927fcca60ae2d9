// Order information: the dates between which something can be ordered and the countries where it
// is available (qvr/order.h). OrderInfo, Availability and CountryCode are keyed by a text made for
// each wrapper, a country code by its isoCountryCode when it has one.
#pragma once

#include <qvr/order.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/iso_codes.h"
#include "platform/com/messages.h"

namespace qvr {

class CQVRCatalogOrderInfo final : public CatalogObject<IQVRCatalogOrderInfo, qvrOrderInfo> {
public:
    // EffDate always goes first, whatever stands there; ExpDate ahead of the Availability.
    HRESULT get_effDate(Variant* date) override {
        return accessors::getDateChild(*this, "EffDate", date);
    }
    HRESULT put_effDate(const Variant& date) override {
        return accessors::putDateChild(*this, "EffDate", date, firstChild);
    }
    HRESULT get_expDate(Variant* date) override {
        return accessors::getDateChild(*this, "ExpDate", date);
    }
    HRESULT put_expDate(const Variant& date) override {
        return accessors::putDateChild(*this, "ExpDate", date, namesAfter(order, "ExpDate"));
    }
    HRESULT get_availability(Ref<IQVRCatalogAvailability>* availability) override {
        return accessors::getSingleton(*this, "Availability", availability);
    }
    HRESULT putref_availability(IQVRCatalogObject* availability) override {
        return accessors::putSingleton(*this, "Availability", availability,
                                       namesBefore(order, "Availability"));
    }

private:
    static constexpr const char* order[] = {"EffDate", "ExpDate", "Availability"};
    static constexpr const char* firstChild[] = {"node()"};
};

class CQVRCatalogAvailability final
    : public CatalogObject<IQVRCatalogAvailability, qvrAvailability> {};

class CQVRCatalogCountryCode final : public CatalogObject<IQVRCatalogCountryCode, qvrCountryCode> {
public:
    HRESULT get_isoCountryCode(String* code) override {
        return accessors::getAttribute(*this, "isoCountryCode", code);
    }
    HRESULT put_isoCountryCode(const String& code) override {
        if (code.isNull()) return E_INVALIDARG;
        return accessors::putUniqueAttribute(*this, "isoCountryCode", code, &isCountryCode,
                                             msgBadCountryCode);
    }
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override { return accessors::putOwnText(*this, value); }
};

} // namespace qvr
