// Contact and address: how to reach a supplier or an order target.
//
// An `Address` gathers, in this order, a name, a postal address and one e-mail, one phone and one
// fax. A `Phone` and a `Fax` hold a structured `TelephoneNumber`; an `Email` holds its address as
// text. Country codes are two capital letters ("This is not a valid ISO 3166 country code." else);
// no list of codes is consulted. A `PostalAddress` holds its streets and never gives up the last.
#pragma once

#include <qvr/object.h>

namespace qvr {

// One line of a street address: the element's text. Takes no children.
class QVR_API IQVRCatalogStreet : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogStreet)

    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// City, state, postal code and country, then the streets, its only children as an object. Its
// key is the `id` its creator gave it.
class QVR_API IQVRCatalogPostalAddress : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogPostalAddress)

    virtual HRESULT get_city(String* city) = 0;
    // An empty text leaves an empty City: it is never removed.
    virtual HRESULT put_city(const String& city) = 0;
    // The country's name and its code. A country without code: S_FALSE, the name handed out.
    virtual HRESULT get_country(String* code, String* country) = 0;
    // A code of the wrong form changes nothing.
    virtual HRESULT put_country(const String& code, const String& country) = 0;
    virtual HRESULT get_state(String* state) = 0;
    // An empty text removes State; a null one is not a valid argument.
    virtual HRESULT put_state(const String& state) = 0;
    virtual HRESULT get_postalCode(String* postalCode) = 0;
    // An empty text removes PostalCode; a null one is not a valid argument.
    virtual HRESULT put_postalCode(const String& postalCode) = 0;
};

// The parts of a telephone number. Takes no children.
class QVR_API IQVRCatalogTelephoneNumber : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogTelephoneNumber)

    // The country's calling code as text, and its ISO code. Without ISO code: S_FALSE.
    virtual HRESULT get_countryCode(String* code, String* countryCode) = 0;
    // A code of the wrong form changes nothing.
    virtual HRESULT put_countryCode(const String& code, const String& countryCode) = 0;
    virtual HRESULT get_areaOrCityCode(String* areaOrCityCode) = 0;
    virtual HRESULT put_areaOrCityCode(const String& areaOrCityCode) = 0;
    virtual HRESULT get_number(String* number) = 0;
    virtual HRESULT put_number(const String& number) = 0;
    virtual HRESULT get_extension(String* extension) = 0;
    // An empty text removes the Extension; a null one is not a valid argument.
    virtual HRESULT put_extension(const String& extension) = 0;
};

// A named telephone. Its key is its name; nothing compares names between siblings.
class QVR_API IQVRCatalogPhone : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogPhone)

    virtual HRESULT get_telephoneNumber(Ref<IQVRCatalogTelephoneNumber>* number) = 0;
    // Sets or replaces the number; null is E_POINTER (a phone keeps its number).
    virtual HRESULT putref_telephoneNumber(IQVRCatalogObject* number) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
};

// A named fax, built as a phone.
class QVR_API IQVRCatalogFax : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogFax)

    virtual HRESULT get_telephoneNumber(Ref<IQVRCatalogTelephoneNumber>* number) = 0;
    virtual HRESULT putref_telephoneNumber(IQVRCatalogObject* number) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
};

// A named e-mail address, held as the element's text. Takes no children.
class QVR_API IQVRCatalogEmail : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogEmail)

    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
};

// A name, a country and the ways to reach someone. Each object setter places its child at its
// place in the order Name, PostalAddress, Email, Phone, Fax; null removes it. Takes no children.
class QVR_API IQVRCatalogAddress : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogAddress)

    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    virtual HRESULT get_isoCountryCode(String* code) = 0;
    // Two capital letters; a null code is a code of the wrong form. Once set, never cleared.
    virtual HRESULT put_isoCountryCode(const String& code) = 0;
    virtual HRESULT get_postalAddress(Ref<IQVRCatalogPostalAddress>* postalAddress) = 0;
    virtual HRESULT putref_postalAddress(IQVRCatalogObject* postalAddress) = 0;
    virtual HRESULT get_email(Ref<IQVRCatalogEmail>* email) = 0;
    virtual HRESULT putref_email(IQVRCatalogObject* email) = 0;
    virtual HRESULT get_phone(Ref<IQVRCatalogPhone>* phone) = 0;
    virtual HRESULT putref_phone(IQVRCatalogObject* phone) = 0;
    virtual HRESULT get_fax(Ref<IQVRCatalogFax>* fax) = 0;
    virtual HRESULT putref_fax(IQVRCatalogObject* fax) = 0;
};

} // namespace qvr
