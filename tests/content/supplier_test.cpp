// The supplier: its own properties and groups, its identifiers and its locations.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

// The two identifier families behave alike: `Id` is the interface of one family's identifier,
// `make` its maker with a domain, `list` its container (holding one identifier).
template <class Id, class Make>
void checkDomainAndValue(IQVRCatalog* catalog, Make make, elements::Made list, const char* value) {
    const Ref<Id> vat = query<Id>(make(catalog, "VAT")), ean = query<Id>(make(catalog, "EAN"));
    ASSERT_EQ(list->appendChild(vat, nullptr), S_OK);
    EXPECT_EQ(got(vat, &Id::get_value), value);
    EXPECT_EQ(vat->put_domain(nullptr), E_POINTER);
    EXPECT_EQ(got(vat, &Id::get_domain), "VAT");
    // The empty domain is stored, and is then a domain like any other.
    ASSERT_EQ(vat->put_domain(""), S_OK);
    EXPECT_EQ(got(vat, &Id::get_domain), "");
    ASSERT_EQ(list->appendChild(ean, nullptr), S_OK);
    EXPECT_EQ(ean->put_domain(""), E_FAIL);
}

TEST(SupplierIds, DomainAndValueInBothFamilies) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    checkDomainAndValue<IQVRCatalogSupplierID>(
        catalog, [](C c, const char* d) { return supplierId(c, d); }, supplierIds(catalog),
        "315843217");
    checkDomainAndValue<IQVRCatalogECommerceCenterID>(
        catalog, [](C c, const char* d) { return centerId(c, d); }, centerIds(catalog),
        "4012345000009");
    // Both factories need a domain and a value.
    Ref<IQVRCatalogSupplierID> id;
    Ref<IQVRCatalogECommerceCenterID> center;
    EXPECT_EQ(catalog->createSupplierID(nullptr, "x", &id), E_INVALIDARG);
    EXPECT_EQ(catalog->createSupplierID("d", nullptr, &id), E_INVALIDARG);
    EXPECT_EQ(catalog->createECommerceCenterID(nullptr, "x", &center), E_INVALIDARG);
    EXPECT_EQ(catalog->createECommerceCenterID("d", nullptr, &center), E_INVALIDARG);
}

TEST(SupplierLocation, JoinsAnAddressWithItsOrderMethods) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogSupplierLocation> location;
    // Order methods first; the address always goes ahead of them.
    ASSERT_EQ(catalog->createSupplierLocation(address(catalog), orderMethods(catalog), &location),
              S_OK);
    EXPECT_EQ(childTags(location), "Address OrderMethods");
    Ref<IQVRCatalogAddress> address1;
    Ref<IQVRCatalogOrderMethods> methods;
    ASSERT_EQ(location->get_address(&address1), S_OK);
    ASSERT_EQ(location->get_orderMethods(&methods), S_OK);
    EXPECT_EQ(childTags(address1), "Name PostalAddress Email Phone Fax");
    EXPECT_EQ(childTags(methods), "OrderMethod OrderMethod OrderMethod OrderMethod");

    // Each can be replaced, neither removed.
    Made other = address(catalog);
    ASSERT_EQ(location->putref_address(other), S_OK);
    ASSERT_EQ(location->putref_orderMethods(orderMethods(catalog)), S_OK);
    EXPECT_EQ(childTags(location), "Address OrderMethods");
    EXPECT_EQ(location->putref_address(nullptr), E_POINTER);
    EXPECT_EQ(location->putref_orderMethods(nullptr), E_POINTER);
    EXPECT_EQ(childTags(location), "Address OrderMethods");
    Ref<IQVRCatalogObject> inserted;
    EXPECT_EQ(location->appendChild(other, &inserted), S_FALSE);
}

TEST(Supplier, ChildrenStandInTheirOrderAndLocationsComeLast) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogSupplier> acme;
    ASSERT_EQ(catalog->createSupplier("ACME", "Bolts", nullptr, nullptr, nullptr, nullptr, nullptr,
                                      location(catalog), &acme),
              S_OK);
    EXPECT_EQ(childTags(acme), "Desc SupplierLocation");
    // The location is the one object a supplier can't do without; name and desc are required.
    Ref<IQVRCatalogSupplier> none;
    EXPECT_EQ(catalog->createSupplier("ACME", "Bolts", nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, &none),
              E_POINTER);
    EXPECT_EQ(catalog->createSupplier("ACME", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      location(catalog), &none),
              E_INVALIDARG);

    // Two like locations side by side; groups go ahead of them, each behind its predecessors.
    ASSERT_EQ(acme->appendChild(location(catalog), nullptr), S_OK);
    ASSERT_EQ(acme->putref_documents(documents(catalog)), S_OK);
    ASSERT_EQ(acme->putref_supplierIDs(supplierIds(catalog)), S_OK);
    ASSERT_EQ(acme->putref_link(link(catalog)), S_OK);
    ASSERT_EQ(acme->putref_eCommerceCenterIDs(centerIds(catalog)), S_OK);
    ASSERT_EQ(acme->putref_images(images(catalog)), S_OK);
    EXPECT_EQ(childTags(acme), "Desc Images Link Documents SupplierIDs ECommerceCenterIDs "
                               "SupplierLocation SupplierLocation");

    // A supplier without Desc makes one, ahead of the groups.
    ASSERT_EQ(loadXml(catalog, "<vCAT id='c'><Supplier name='S'><SupplierIDs/><SupplierLocation/>"
                               "</Supplier></vCAT>"),
              S_OK);
    ASSERT_EQ(catalog->get_supplier(&acme), S_OK);
    ASSERT_EQ(acme->put_desc("Made here"), S_OK);
    EXPECT_EQ(childTags(acme), "Desc SupplierIDs SupplierLocation");
}

} // namespace
} // namespace qvr::testing
