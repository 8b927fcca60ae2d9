// Order information: when a part or a catalog can be ordered and in which countries, and how a
// supplier is reached.
//
//   OrderInfo       EffDate, ExpDate (dates), Availability; each at most once, in this order
//   Availability    CountryCode children, one per isoCountryCode; the last one stays
//   CountryCode     isoCountryCode (two upper-case letters); its text, as a rule the country's name
//   OrderMethods    OrderMethod children, any number
//   OrderMethod     OrderTarget, OrderProtocol (text); each at most once, in this order
//   OrderTarget     exactly one Phone, Email, Fax or URL
//
// Dates travel as variants. They are stored as text written under the user's locale
// (SetUserLocale) and read back under it: a date written on one machine reads back as the same
// date there, and a text given as a variant is stored as it is.
#pragma once

#include <cstdint>

#include <qvr/object.h>

namespace qvr {

class QVR_API IQVRCatalogAvailability : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogAvailability)
};

class QVR_API IQVRCatalogOrderInfo : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogOrderInfo)

    // Absent: S_FALSE and `date` untouched. A stored text that does not read as a date under the
    // user's locale gives the conversion's failure, `date` untouched.
    virtual HRESULT get_effDate(Variant* date) = 0;
    // An empty or missing variant removes the date; any other value is stored as its text.
    virtual HRESULT put_effDate(const Variant& date) = 0;
    virtual HRESULT get_expDate(Variant* date) = 0;
    virtual HRESULT put_expDate(const Variant& date) = 0;
    virtual HRESULT get_availability(Ref<IQVRCatalogAvailability>* availability) = 0;
    // Null removes the list.
    virtual HRESULT putref_availability(IQVRCatalogObject* availability) = 0;
};

class QVR_API IQVRCatalogCountryCode : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogCountryCode)

    virtual HRESULT get_isoCountryCode(String* code) = 0;
    // Two upper-case letters, else "This is not a valid ISO 3166 country code."; a code that a
    // sibling holds: "A child with the same id already exists."; both E_FAIL. Null: E_INVALIDARG.
    virtual HRESULT put_isoCountryCode(const String& code) = 0;
    virtual HRESULT get_value(String* value) = 0;
    virtual HRESULT put_value(const String& value) = 0;
};

// The kind of an order target, as get_targetType tells it.
enum QVROrderTargetType : std::int32_t {
    qvrTargetPhone = 0,
    qvrTargetEmail = 1,
    qvrTargetFax = 2,
    qvrTargetURL = 3,
    qvrTargetUnknown = 4, // a child of another name
    qvrTargetNone = 5,    // no child at all
};

class QVR_API IQVRCatalogOrderTarget : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogOrderTarget)

    // The Phone, Email, Fax or URL; none: S_FALSE and null.
    virtual HRESULT get_target(Ref<IQVRCatalogObject>* target) = 0;
    // Sets or replaces the target, whatever kind stood there. Another kind of object: "This
    // object is not a valid order target." and E_FAIL; null: E_POINTER.
    virtual HRESULT putref_target(IQVRCatalogObject* target) = 0;
    // A child of an unknown name: "An unknown order target name was found.", E_FAIL, and 4.
    virtual HRESULT get_targetType(std::int32_t* type) = 0;
};

class QVR_API IQVRCatalogOrderMethod : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogOrderMethod)

    virtual HRESULT get_orderProtocol(String* protocol) = 0;
    // The empty text removes the protocol.
    virtual HRESULT put_orderProtocol(const String& protocol) = 0;
    virtual HRESULT get_orderTarget(Ref<IQVRCatalogOrderTarget>* target) = 0;
    // Sets or replaces the target; it can't be removed: null gives E_POINTER.
    virtual HRESULT putref_orderTarget(IQVRCatalogObject* target) = 0;
};

class QVR_API IQVRCatalogOrderMethods : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogOrderMethods)
};

} // namespace qvr
