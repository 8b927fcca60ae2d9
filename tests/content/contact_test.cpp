// Addresses, postal addresses, phones, faxes, e-mails and telephone numbers: the order of their
// children and the shape of their country codes.
#include <gtest/gtest.h>

#include <functional>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

Ref<IQVRCatalogTelephoneNumber> newNumber(IQVRCatalog* catalog, const char* number) {
    Ref<IQVRCatalogTelephoneNumber> result;
    EXPECT_EQ(catalog->createTelephoneNumber("49", "DE", "731", number, "", &result), S_OK);
    return result;
}

Ref<IQVRCatalogPostalAddress> newPostalAddress(IQVRCatalog* catalog) {
    return query<IQVRCatalogPostalAddress>(elements::postalAddress(catalog));
}

// Takes the child `name` out of the object's element, behind the model's back.
void without(IQVRCatalogObject* object, const char* name) {
    Ref<IXMLDOMNode> node;
    ASSERT_EQ(elementOf(object)->selectSingleNode(name, &node), S_OK);
    ASSERT_EQ(elementOf(object)->removeChild(node, nullptr), S_OK);
}

std::string countryOf(IQVRCatalogPostalAddress* address) {
    String code("-"), text("-");
    address->get_country(&code, &text);
    return code.str() + " " + text.str();
}

TEST(Contact, CountryCodesAreTwoCapitals) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPostalAddress> postal = newPostalAddress(catalog);
    Ref<IQVRCatalogTelephoneNumber> number = newNumber(catalog, "1234");
    Ref<IQVRCatalogAddress> address;
    ASSERT_EQ(catalog->createAddress("ACME", "DE", postal, nullptr, nullptr, nullptr, &address),
              S_OK);
    Ref<IQVRCatalogCountryCode> fr =
        query<IQVRCatalogCountryCode>(elements::countryCode(catalog, "FR"));
    Listener listener(catalog);

    const std::function<HRESULT(const String&)> setters[] = {
        [&](const String& c) { return address->put_isoCountryCode(c); },
        [&](const String& c) { return postal->put_country(c, "x"); },
        [&](const String& c) { return number->put_countryCode(c, "0049"); },
        [&](const String& c) { return fr->put_isoCountryCode(c); }};
    for (const String& bad : {String("de"), String("D"), String("DEU"), String("D1"), String("")}) {
        for (const auto& set : setters) {
            EXPECT_EQ(set(bad), E_FAIL) << bad;
            EXPECT_EQ(lastError(), "This is not a valid ISO 3166 country code.");
        }
    }
    // A null code is no code; a country code's own code is a required argument.
    for (int i = 0; i < 3; ++i) EXPECT_EQ(setters[i](String()), E_FAIL);
    EXPECT_EQ(setters[3](String()), E_INVALIDARG);
    String code;
    EXPECT_EQ(got(address, &IQVRCatalogAddress::get_isoCountryCode), "DE");
    EXPECT_EQ(countryOf(postal), "DE Germany");
    String text;
    ASSERT_EQ(number->get_countryCode(&code, &text), S_OK);
    EXPECT_EQ(code.str() + " " + text.str(), "DE 49");
    EXPECT_EQ(listener.take(), "");

    // Any two capitals pass, known country or not.
    ASSERT_EQ(postal->put_country("AT", "Austria"), S_OK);
    EXPECT_EQ(countryOf(postal), "AT Austria");
    EXPECT_EQ(fr->put_isoCountryCode("QQ"), S_OK);
    EXPECT_EQ(keyOf(fr), "QQ");

    // The factories end at a bad code and hand out nothing.
    Ref<IQVRCatalogAddress> none;
    EXPECT_EQ(catalog->createAddress("ACME", "de", nullptr, nullptr, nullptr, nullptr, &none),
              E_FAIL);
    EXPECT_EQ(lastError(), "This is not a valid ISO 3166 country code.");
    EXPECT_EQ(catalog->createAddress("ACME", nullptr, nullptr, nullptr, nullptr, nullptr, &none),
              E_INVALIDARG);
    EXPECT_FALSE(none);
}

TEST(Contact, ChildrenStandInTheirOrder) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogPhone> phone;
    Ref<IQVRCatalogFax> fax;
    Ref<IQVRCatalogEmail> email;
    ASSERT_EQ(catalog->createPhone("Sales", newNumber(catalog, "100"), &phone), S_OK);
    ASSERT_EQ(catalog->createFax("Sales", newNumber(catalog, "101"), &fax), S_OK);
    ASSERT_EQ(catalog->createEmail("Sales", "sales@example.com", &email), S_OK);
    EXPECT_EQ(keyOf(phone) + keyOf(fax) + keyOf(email), "SalesSalesSales");

    // An address set from its end still reads in its order; null takes a child out.
    Ref<IQVRCatalogAddress> address;
    ASSERT_EQ(catalog->createAddress("ACME", "DE", nullptr, nullptr, nullptr, fax, &address), S_OK);
    ASSERT_EQ(address->putref_phone(phone), S_OK);
    ASSERT_EQ(address->putref_email(email), S_OK);
    ASSERT_EQ(address->putref_postalAddress(newPostalAddress(catalog)), S_OK);
    EXPECT_EQ(childTags(address), "Name PostalAddress Email Phone Fax");
    ASSERT_EQ(address->putref_phone(nullptr), S_OK);
    EXPECT_EQ(childTags(address), "Name PostalAddress Email Fax");

    // A phone's number is replaced, never removed.
    ASSERT_EQ(phone->putref_telephoneNumber(newNumber(catalog, "200")), S_OK);
    EXPECT_EQ(childTags(phone), "TelephoneNumber");
    EXPECT_EQ(phone->putref_telephoneNumber(nullptr), E_POINTER);

    // A postal address: City first; State and PostalCode go by the empty text, City stays.
    Ref<IQVRCatalogPostalAddress> postal = newPostalAddress(catalog);
    EXPECT_EQ(childTags(postal), "City State PostalCode Country Street");
    for (const char* name : {"City", "State", "PostalCode"}) without(postal, name);
    ASSERT_EQ(postal->put_state("BY"), S_OK);
    ASSERT_EQ(postal->put_city(""), S_OK);
    ASSERT_EQ(postal->put_postalCode("80331"), S_OK);
    EXPECT_EQ(childTags(postal), "City State PostalCode Country Street");
    ASSERT_EQ(postal->put_state(""), S_OK);
    ASSERT_EQ(postal->put_postalCode(""), S_OK);
    EXPECT_EQ(childTags(postal), "City Country Street");

    // A telephone number: the country code lands ahead of Number, else Extension, else
    // AreaOrCityCode; Number ahead of Extension; an absent Extension is removed quietly.
    Ref<IQVRCatalogTelephoneNumber> both = newNumber(catalog, "1"),
                                    extension = newNumber(catalog, "1"),
                                    area = newNumber(catalog, "1");
    for (IQVRCatalogTelephoneNumber* parts : {both.get(), extension.get(), area.get()})
        without(parts, "CountryCode");
    without(extension, "Number");
    ASSERT_EQ(extension->put_extension("9"), S_OK);
    without(area, "Number");
    for (IQVRCatalogTelephoneNumber* parts : {both.get(), extension.get(), area.get()})
        ASSERT_EQ(parts->put_countryCode("DE", "49"), S_OK);
    EXPECT_EQ(childTags(both), "AreaOrCityCode CountryCode Number");
    EXPECT_EQ(childTags(extension), "AreaOrCityCode CountryCode Extension");
    EXPECT_EQ(childTags(area), "CountryCode AreaOrCityCode");
    Ref<IQVRCatalogTelephoneNumber> parts = newNumber(catalog, "1");
    Listener listener(catalog);
    EXPECT_EQ(childTags(parts), "CountryCode AreaOrCityCode Number");
    ASSERT_EQ(parts->put_extension(""), S_OK);
    EXPECT_EQ(listener.take(), "changed #16");
    ASSERT_EQ(parts->put_extension("22"), S_OK);
    without(parts, "Number");
    ASSERT_EQ(parts->put_number("2"), S_OK);
    EXPECT_EQ(childTags(parts), "CountryCode AreaOrCityCode Number Extension");
}

} // namespace
} // namespace qvr::testing
