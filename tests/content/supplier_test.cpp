// The supplier: its own properties and groups, its identifiers and its locations.
#include <gtest/gtest.h>

#include <functional>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

// The two identifier families are built alike: one maker of an id and one of its list each.
struct IdFamily {
    const char* idTag;
    std::function<HRESULT(IQVRCatalog*, const char*, const char*, Ref<IQVRCatalogDomainValue>*)>
        makeId;
    std::function<HRESULT(IQVRCatalog*, IQVRCatalogObject*, Ref<IQVRCatalogObject>*)> makeList;
    const char* wrongKindMessage;
};

const IdFamily families[] = {
    {"SupplierID",
     [](IQVRCatalog* c, const char* d, const char* v, Ref<IQVRCatalogDomainValue>* out) {
         Ref<IQVRCatalogSupplierID> id;
         HRESULT hr = c->createSupplierID(d, v, &id);
         *out = id.get();
         return hr;
     },
     [](IQVRCatalog* c, IQVRCatalogObject* id, Ref<IQVRCatalogObject>* out) {
         Ref<IQVRCatalogSupplierIDs> list;
         HRESULT hr = c->createSupplierIDs(id, &list);
         *out = list.get();
         return hr;
     },
     "You can only append SupplierID as a child of this object."},
    {"ECommerceCenterID",
     [](IQVRCatalog* c, const char* d, const char* v, Ref<IQVRCatalogDomainValue>* out) {
         Ref<IQVRCatalogECommerceCenterID> id;
         HRESULT hr = c->createECommerceCenterID(d, v, &id);
         *out = id.get();
         return hr;
     },
     [](IQVRCatalog* c, IQVRCatalogObject* id, Ref<IQVRCatalogObject>* out) {
         Ref<IQVRCatalogECommerceCenterIDs> list;
         HRESULT hr = c->createECommerceCenterIDs(id, &list);
         *out = list.get();
         return hr;
     },
     "You can only append ECommerceCenterID as a child of this object."},
};

TEST(SupplierIds, OneValuePerDomainInBothFamilies) {
    for (const IdFamily& family : families) {
        SCOPED_TRACE(family.idTag);
        Ref<IQVRCatalog> catalog = newCatalog();
        Ref<IQVRCatalogDomainValue> duns, vat, secondDuns, blank, secondBlank;
        Ref<IQVRCatalogObject> list, inserted, removed;
        ASSERT_EQ(family.makeId(catalog, "DUNS", "123456789", &duns), S_OK);
        ASSERT_EQ(family.makeId(catalog, "VAT", "DE811", &vat), S_OK);
        ASSERT_EQ(family.makeId(catalog, "DUNS", "987654321", &secondDuns), S_OK);
        ASSERT_EQ(family.makeList(catalog, duns, &list), S_OK);
        ASSERT_EQ(list->appendChild(vat, &inserted), S_OK);
        EXPECT_EQ(keyOf(vat), "VAT");
        String text;
        ASSERT_EQ(duns->get_value(&text), S_OK);
        EXPECT_EQ(text, "123456789");

        // A second value in one domain is refused, by insertion or by renaming, and nothing moves.
        Listener listener(catalog);
        EXPECT_EQ(list->appendChild(secondDuns, &inserted), E_FAIL);
        EXPECT_EQ(lastError(), "A child with the same id already exists.");
        EXPECT_EQ(vat->put_domain("DUNS"), E_FAIL);
        EXPECT_EQ(lastError(), "A child with the same id already exists.");
        EXPECT_EQ(vat->put_domain(nullptr), E_POINTER);
        EXPECT_EQ(list->appendChild(newChapter(catalog, "Stranger"), &inserted), E_FAIL);
        EXPECT_EQ(lastError(), family.wrongKindMessage);
        ASSERT_EQ(vat->get_domain(&text), S_OK);
        EXPECT_EQ(text, "VAT");
        EXPECT_EQ(childTags(list), std::string(family.idTag) + " " + family.idTag);
        EXPECT_EQ(listener.take(), "");

        // The empty domain is stored, and is then a domain like any other.
        ASSERT_EQ(vat->put_domain(""), S_OK);
        ASSERT_EQ(vat->get_domain(&text), S_OK);
        EXPECT_EQ(text, "");
        ASSERT_EQ(secondDuns->put_domain("EAN"), S_OK);
        ASSERT_EQ(list->appendChild(secondDuns, &inserted), S_OK);
        EXPECT_EQ(secondDuns->put_domain(""), E_FAIL);
        ASSERT_EQ(list->removeChild(secondDuns, &removed), S_OK);

        // The last id stays.
        ASSERT_EQ(list->removeChild(vat, &removed), S_OK);
        EXPECT_EQ(list->removeChild(duns, &removed), E_FAIL);
        EXPECT_EQ(lastError(), "You can't remove the last child of this object.");

        Ref<IQVRCatalogDomainValue> id;
        EXPECT_EQ(family.makeId(catalog, nullptr, "x", &id), E_INVALIDARG);
        EXPECT_EQ(family.makeId(catalog, "d", nullptr, &id), E_INVALIDARG);
    }
}

} // namespace
} // namespace qvr::testing
