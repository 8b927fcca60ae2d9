// The leaves of contact data: streets, telephone numbers, phones, faxes, e-mails, postal
// addresses and addresses. Only a PostalAddress takes children (its streets, the last of which it
// keeps); the others reach their children through their own operations, each child at its place
// in the class's child order.
#pragma once

#include <qvr/contact.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/iso_codes.h"
#include "platform/com/failure.h"

namespace qvr {

class CQVRCatalogStreet final : public CatalogObject<IQVRCatalogStreet, qvrStreet> {
public:
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override { return accessors::putOwnText(*this, value); }
};

class CQVRCatalogPostalAddress final
    : public CatalogObject<IQVRCatalogPostalAddress, qvrPostalAddress> {
public:
    HRESULT get_city(String* city) override { return accessors::getChildText(*this, "City", city); }
    HRESULT put_city(const String& city) override {
        return accessors::putOrderedChildText(*this, "City", city, namesAfter(order, "City"));
    }
    HRESULT get_country(String* code, String* country) override {
        return accessors::getCodedChildText(*this, "Country", code, country);
    }
    HRESULT put_country(const String& code, const String& country) override {
        return accessors::putCodedChildText(*this, "Country", code, country,
                                            namesAfter(order, "Country"));
    }
    HRESULT get_state(String* state) override {
        return accessors::getChildText(*this, "State", state);
    }
    HRESULT put_state(const String& state) override {
        return accessors::putRemovableChildText(*this, "State", state, namesAfter(order, "State"));
    }
    HRESULT get_postalCode(String* postalCode) override {
        return accessors::getChildText(*this, "PostalCode", postalCode);
    }
    HRESULT put_postalCode(const String& postalCode) override {
        return accessors::putRemovableChildText(*this, "PostalCode", postalCode,
                                                namesAfter(order, "PostalCode"));
    }

private:
    static constexpr const char* order[] = {"City", "State", "PostalCode", "Country", "Street"};
};

class CQVRCatalogTelephoneNumber final
    : public CatalogObject<IQVRCatalogTelephoneNumber, qvrTelephoneNumber> {
public:
    HRESULT get_countryCode(String* code, String* countryCode) override {
        return accessors::getCodedChildText(*this, "CountryCode", code, countryCode);
    }
    // A new CountryCode goes ahead of Number, else of Extension, else of AreaOrCityCode: with
    // AreaOrCityCode and Number both there, it lands between the two. The factory sets the
    // country code first and never meets that case; documents written so are read as they are.
    HRESULT put_countryCode(const String& code, const String& countryCode) override {
        static constexpr const char* followers[] = {"Number", "Extension", "AreaOrCityCode"};
        return accessors::putCodedChildText(*this, "CountryCode", code, countryCode, followers);
    }
    HRESULT get_areaOrCityCode(String* areaOrCityCode) override {
        return accessors::getChildText(*this, "AreaOrCityCode", areaOrCityCode);
    }
    HRESULT put_areaOrCityCode(const String& areaOrCityCode) override {
        return accessors::putOrderedChildText(*this, "AreaOrCityCode", areaOrCityCode,
                                              namesAfter(order, "AreaOrCityCode"));
    }
    HRESULT get_number(String* number) override {
        return accessors::getChildText(*this, "Number", number);
    }
    HRESULT put_number(const String& number) override {
        return accessors::putOrderedChildText(*this, "Number", number, namesAfter(order, "Number"));
    }
    HRESULT get_extension(String* extension) override {
        return accessors::getChildText(*this, "Extension", extension);
    }
    HRESULT put_extension(const String& extension) override {
        return accessors::putRemovableChildText(*this, "Extension", extension, {});
    }

private:
    static constexpr const char* order[] = {"CountryCode", "AreaOrCityCode", "Number", "Extension"};
};

// A phone and a fax: a name and the number, which is always there once set.
template <class Interface, QVRObjectType Type>
class Telephone : public CatalogObject<Interface, Type> {
public:
    HRESULT get_telephoneNumber(Ref<IQVRCatalogTelephoneNumber>* number) override {
        return accessors::getSingleton(*this, "TelephoneNumber", number);
    }
    // A number is set or replaced, never removed: null is E_POINTER.
    HRESULT putref_telephoneNumber(IQVRCatalogObject* number) override {
        if (!number) return E_POINTER;
        return accessors::putSingleton(*this, "TelephoneNumber", number, {});
    }
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
};

class CQVRCatalogPhone final : public Telephone<IQVRCatalogPhone, qvrPhone> {};
class CQVRCatalogFax final : public Telephone<IQVRCatalogFax, qvrFax> {};

class CQVRCatalogEmail final : public CatalogObject<IQVRCatalogEmail, qvrEmail> {
public:
    HRESULT get_value(String* value) override { return accessors::getOwnText(*this, value); }
    HRESULT put_value(const String& value) override { return accessors::putOwnText(*this, value); }
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
};

class CQVRCatalogAddress final : public CatalogObject<IQVRCatalogAddress, qvrAddress> {
public:
    HRESULT get_name(String* name) override { return accessors::getChildText(*this, "Name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putOrderedChildText(*this, "Name", name, namesAfter(order, "Name"));
    }
    HRESULT get_isoCountryCode(String* code) override {
        return accessors::getAttribute(*this, "isoCountryCode", code);
    }
    // The code is looked at before the element: a null one is a bad code, not a bad argument.
    HRESULT put_isoCountryCode(const String& code) override {
        return guarded([&] {
            if (!isCountryCode(code)) return report(msgBadCountryCode);
            return accessors::putAttribute(*this, "isoCountryCode", code);
        });
    }
    HRESULT get_postalAddress(Ref<IQVRCatalogPostalAddress>* postalAddress) override {
        return accessors::getSingleton(*this, "PostalAddress", postalAddress);
    }
    HRESULT putref_postalAddress(IQVRCatalogObject* postalAddress) override {
        return accessors::putSingletonInOrder(*this, "PostalAddress", postalAddress, order);
    }
    HRESULT get_email(Ref<IQVRCatalogEmail>* email) override {
        return accessors::getSingleton(*this, "Email", email);
    }
    HRESULT putref_email(IQVRCatalogObject* email) override {
        return accessors::putSingletonInOrder(*this, "Email", email, order);
    }
    HRESULT get_phone(Ref<IQVRCatalogPhone>* phone) override {
        return accessors::getSingleton(*this, "Phone", phone);
    }
    HRESULT putref_phone(IQVRCatalogObject* phone) override {
        return accessors::putSingletonInOrder(*this, "Phone", phone, order);
    }
    HRESULT get_fax(Ref<IQVRCatalogFax>* fax) override {
        return accessors::getSingleton(*this, "Fax", fax);
    }
    HRESULT putref_fax(IQVRCatalogObject* fax) override {
        return accessors::putSingletonInOrder(*this, "Fax", fax, order);
    }

private:
    static constexpr const char* order[] = {"Name", "PostalAddress", "Email", "Phone", "Fax"};
};

} // namespace qvr
