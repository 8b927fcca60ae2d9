// The supplier: its own properties and groups, its identifiers and its locations.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

// The two identifier families are built alike: `makeId` and `makeList` are the catalog's two
// factories of one family, `Id` its interface.
template <class Id, class MakeId, class MakeList>
void checkDomainAndValue(MakeId makeId, MakeList makeList, const std::string& idTag) {
    SCOPED_TRACE(idTag);
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<Id> duns, vat, secondDuns;
    Ref<IQVRCatalogObject> list, inserted, removed;
    ASSERT_EQ(makeId(catalog, "DUNS", "123456789", &duns), S_OK);
    ASSERT_EQ(makeId(catalog, "VAT", "DE811", &vat), S_OK);
    ASSERT_EQ(makeId(catalog, "DUNS", "987654321", &secondDuns), S_OK);
    ASSERT_EQ(makeList(catalog, duns, &list), S_OK);
    ASSERT_EQ(list->appendChild(vat, &inserted), S_OK);
    String text;
    ASSERT_EQ(duns->get_value(&text), S_OK);
    EXPECT_EQ(text, "123456789");

    EXPECT_EQ(vat->put_domain(nullptr), E_POINTER);
    EXPECT_EQ(got(vat, &Id::get_domain), "VAT");

    // The empty domain is stored, and is then a domain like any other.
    ASSERT_EQ(vat->put_domain(""), S_OK);
    EXPECT_EQ(got(vat, &Id::get_domain), "");
    ASSERT_EQ(secondDuns->put_domain("EAN"), S_OK);
    ASSERT_EQ(list->appendChild(secondDuns, &inserted), S_OK);
    EXPECT_EQ(secondDuns->put_domain(""), E_FAIL);
    ASSERT_EQ(list->removeChild(secondDuns, &removed), S_OK);

    Ref<Id> id;
    EXPECT_EQ(makeId(catalog, nullptr, "x", &id), E_INVALIDARG);
    EXPECT_EQ(makeId(catalog, "d", nullptr, &id), E_INVALIDARG);
}

// A list factory with the common out type.
template <class List, class Factory>
auto listMaker(Factory factory) {
    return [factory](IQVRCatalog* c, IQVRCatalogObject* id, Ref<IQVRCatalogObject>* out) {
        Ref<List> list;
        HRESULT hr = (c->*factory)(id, &list);
        *out = list.get();
        return hr;
    };
}

TEST(SupplierIds, DomainAndValueInBothFamilies) {
    checkDomainAndValue<IQVRCatalogSupplierID>(
        [](IQVRCatalog* c, const char* d, const char* v, Ref<IQVRCatalogSupplierID>* out) {
            return c->createSupplierID(d, v, out);
        },
        listMaker<IQVRCatalogSupplierIDs>(&IQVRCatalog::createSupplierIDs), "SupplierID");
    checkDomainAndValue<IQVRCatalogECommerceCenterID>(
        [](IQVRCatalog* c, const char* d, const char* v, Ref<IQVRCatalogECommerceCenterID>* out) {
            return c->createECommerceCenterID(d, v, out);
        },
        listMaker<IQVRCatalogECommerceCenterIDs>(&IQVRCatalog::createECommerceCenterIDs),
        "ECommerceCenterID");
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
