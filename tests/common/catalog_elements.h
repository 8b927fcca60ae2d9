// One maker for every kind of element a catalog holds, each filled as a real catalog would have
// it and built only through the catalog's factories. A maker builds what its element needs (a
// Phone its TelephoneNumber, a SupplierLocation its Address and OrderMethods) afresh each time.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "common/catalog_fixture.h"

namespace qvr::testing::elements {

using Made = Ref<IQVRCatalogObject>;
using C = IQVRCatalog*;

// The element a factory makes; a failure shows in the test and gives null.
template <class I, class Factory>
Made make(Factory&& factory) {
    Ref<I> object;
    EXPECT_EQ(factory(&object), S_OK) << lastError();
    return Made(object.get());
}

inline Made chapter(C c) {
    return make<IQVRCatalogChapter>([&](auto* o) { return c->createChapter("Bolts", o); });
}
inline Made part(C c) {
    return make<IQVRCatalogPart>([&](auto* o) { return c->createPart("M8", o); });
}
inline Made url(C c, const char* href = "https://acme.example/", const char* language = "en") {
    return make<IQVRCatalogURL>([&](auto* o) { return c->createURL(href, "ACME", language, o); });
}
inline Made image(C c) {
    return make<IQVRCatalogImage>([&](auto* o) { return c->createImage(url(c, "m8.png"), o); });
}
inline Made images(C c) {
    return make<IQVRCatalogImages>([&](auto* o) { return c->createImages(image(c), o); });
}
inline Made link(C c) {
    return make<IQVRCatalogLink>([&](auto* o) { return c->createLink(url(c), o); });
}
inline Made document(C c) {
    return make<IQVRCatalogDocument>(
        [&](auto* o) { return c->createDocument(url(c, "m8.pdf"), "Data sheet", o); });
}
inline Made documents(C c) {
    return make<IQVRCatalogDocuments>(
        [&](auto* o) { return c->createDocuments(document(c), "Sheets", o); });
}
inline Made classObject(C c, const char* domain = "ETIM") {
    return make<IQVRCatalogClass>([&](auto* o) { return c->createClass(domain, "EC000123", o); });
}
inline Made classifications(C c) {
    return make<IQVRCatalogClassifications>(
        [&](auto* o) { return c->createClassifications(classObject(c), o); });
}
inline Made countryCode(C c, const char* code = "DE") {
    return make<IQVRCatalogCountryCode>(
        [&](auto* o) { return c->createCountryCode(code, "Germany", o); });
}
inline Made availability(C c) {
    return make<IQVRCatalogAvailability>(
        [&](auto* o) { return c->createAvailability(countryCode(c), o); });
}
inline Made orderInfo(C c) {
    return make<IQVRCatalogOrderInfo>([&](auto* o) {
        return c->createOrderInfo(Variant::date(46082.0), Variant::date(46752.0), availability(c),
                                  o);
    });
}
inline Made telephoneNumber(C c) {
    return make<IQVRCatalogTelephoneNumber>(
        [&](auto* o) { return c->createTelephoneNumber("49", "DE", "711", "5550100", "0", o); });
}
inline Made phone(C c) {
    return make<IQVRCatalogPhone>(
        [&](auto* o) { return c->createPhone("Sales", telephoneNumber(c), o); });
}
inline Made fax(C c) {
    return make<IQVRCatalogFax>(
        [&](auto* o) { return c->createFax("Orders", telephoneNumber(c), o); });
}
inline Made email(C c) {
    return make<IQVRCatalogEmail>(
        [&](auto* o) { return c->createEmail("Sales", "sales@acme.example", o); });
}
inline Made street(C c) {
    return make<IQVRCatalogStreet>([&](auto* o) { return c->createStreet("Werkstrasse 12", o); });
}
// The id of every postal address made here.
inline const char* const postalAddressId = "5E1A3C2B-7D4F-4A6B-9C8D-0E1F2A3B4C5D";
inline Made postalAddress(C c) {
    return make<IQVRCatalogPostalAddress>([&](auto* o) {
        return c->createPostalAddress(postalAddressId, "Stuttgart", "Germany", "DE", street(c),
                                      "Baden-Wuerttemberg", "70173", o);
    });
}
inline Made address(C c) {
    return make<IQVRCatalogAddress>([&](auto* o) {
        return c->createAddress("ACME", "DE", postalAddress(c), email(c), phone(c), fax(c), o);
    });
}
inline Made orderTarget(C c, Made target) {
    return make<IQVRCatalogOrderTarget>([&](auto* o) { return c->createOrderTarget(target, o); });
}
inline Made orderMethod(C c, Made target, const char* protocol) {
    return make<IQVRCatalogOrderMethod>(
        [&](auto* o) { return c->createOrderMethod(orderTarget(c, target), protocol, o); });
}
// A method for each kind of target, in the order Phone, Email, Fax, URL.
inline Made orderMethods(C c) {
    Made methods = make<IQVRCatalogOrderMethods>(
        [&](auto* o) { return c->createOrderMethods(orderMethod(c, phone(c), "voice"), o); });
    Ref<IQVRCatalogObject> added;
    EXPECT_EQ(methods->appendChild(orderMethod(c, email(c), "smtp"), &added), S_OK);
    EXPECT_EQ(methods->appendChild(orderMethod(c, fax(c), "fax"), &added), S_OK);
    EXPECT_EQ(
        methods->appendChild(orderMethod(c, url(c, "https://shop.acme.example/"), "https"), &added),
        S_OK);
    return methods;
}
inline Made location(C c) {
    return make<IQVRCatalogSupplierLocation>(
        [&](auto* o) { return c->createSupplierLocation(address(c), orderMethods(c), o); });
}
inline Made supplierId(C c, const char* domain = "DUNS") {
    return make<IQVRCatalogSupplierID>(
        [&](auto* o) { return c->createSupplierID(domain, "315843217", o); });
}
inline Made supplierIds(C c) {
    return make<IQVRCatalogSupplierIDs>(
        [&](auto* o) { return c->createSupplierIDs(supplierId(c), o); });
}
inline Made centerId(C c, const char* domain = "GLN") {
    return make<IQVRCatalogECommerceCenterID>(
        [&](auto* o) { return c->createECommerceCenterID(domain, "4012345000009", o); });
}
inline Made centerIds(C c) {
    return make<IQVRCatalogECommerceCenterIDs>(
        [&](auto* o) { return c->createECommerceCenterIDs(centerId(c), o); });
}
inline Made supplier(C c) {
    return make<IQVRCatalogSupplier>([&](auto* o) {
        return c->createSupplier("ACME", "Bolts and nuts", images(c), link(c), documents(c),
                                 supplierIds(c), centerIds(c), location(c), o);
    });
}
inline Made extrinsic(C c) {
    return make<IQVRCatalogExtrinsic>([&](auto* o) { return c->createExtrinsic("colour", o); });
}
inline Made extrinsics(C c) {
    Made made = make<IQVRCatalogExtrinsics>([&](auto* o) { return c->createExtrinsics(o); });
    Ref<IQVRCatalogObject> added;
    EXPECT_EQ(made->appendChild(extrinsic(c), &added), S_OK);
    return made;
}

// Every element factory of the catalog, as the tag of what it makes and a maker that uses it.
using Maker = Made (*)(C);
inline const std::vector<std::pair<const char*, Maker>>& everyFactory() {
    static const std::vector<std::pair<const char*, Maker>> all = {
        {"Chapter", chapter},
        {"Image", image},
        {"Images", images},
        {"URL", [](C c) { return url(c); }},
        {"Link", link},
        {"Document", document},
        {"Documents", documents},
        {"Part", part},
        {"Class", [](C c) { return classObject(c); }},
        {"Classifications", classifications},
        {"OrderInfo", orderInfo},
        {"Availability", availability},
        {"CountryCode", [](C c) { return countryCode(c); }},
        {"OrderTarget", [](C c) { return orderTarget(c, phone(c)); }},
        {"OrderMethod", [](C c) { return orderMethod(c, email(c), "smtp"); }},
        {"OrderMethods", orderMethods},
        {"TelephoneNumber", telephoneNumber},
        {"Phone", phone},
        {"Fax", fax},
        {"Email", email},
        {"Street", street},
        {"PostalAddress", postalAddress},
        {"Address", address},
        {"SupplierLocation", location},
        {"SupplierID", [](C c) { return supplierId(c); }},
        {"SupplierIDs", supplierIds},
        {"ECommerceCenterID", [](C c) { return centerId(c); }},
        {"ECommerceCenterIDs", centerIds},
        {"Supplier", supplier},
        {"Extrinsics",
         [](C c) {
             return make<IQVRCatalogExtrinsics>([&](auto* o) { return c->createExtrinsics(o); });
         }},
        {"Extrinsic", extrinsic},
    };
    return all;
}

} // namespace qvr::testing::elements
