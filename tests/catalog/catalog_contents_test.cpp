// What the catalog holds and makes: the singletons of its root and the element factories.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

using Made = Ref<IQVRCatalogObject>;
using C = IQVRCatalog*;

// One element made by a factory of the catalog; a failure shows in the test.
template <class I, class Factory>
Made make(Factory&& factory) {
    Ref<I> object;
    EXPECT_EQ(factory(&object), S_OK);
    return Made(object.get());
}

Made countryCode(C c) {
    return make<IQVRCatalogCountryCode>(
        [&](auto* o) { return c->createCountryCode("DE", "Germany", o); });
}
Made availability(C c) {
    return make<IQVRCatalogAvailability>(
        [&](auto* o) { return c->createAvailability(countryCode(c), o); });
}
Made orderInfo(C c) {
    return make<IQVRCatalogOrderInfo>([&](auto* o) {
        return c->createOrderInfo(Variant("1/1/2026"), Variant(), availability(c), o);
    });
}
Made supplierId(C c) {
    return make<IQVRCatalogSupplierID>(
        [&](auto* o) { return c->createSupplierID("DUNS", "1", o); });
}
Made centerId(C c) {
    return make<IQVRCatalogECommerceCenterID>(
        [&](auto* o) { return c->createECommerceCenterID("GLN", "2", o); });
}

// Every element factory of the catalog, by the tag of what it makes.
const std::vector<std::pair<std::string, std::function<Made(C)>>> factories = {
    {"Chapter",
     [](C c) {
         return make<IQVRCatalogChapter>([&](auto* o) { return c->createChapter("B", o); });
     }},
    {"Part",
     [](C c) { return make<IQVRCatalogPart>([&](auto* o) { return c->createPart("M", o); }); }},
    {"OrderInfo", orderInfo},
    {"Availability", availability},
    {"CountryCode", countryCode},
    {"SupplierID", supplierId},
    {"SupplierIDs",
     [](C c) {
         return make<IQVRCatalogSupplierIDs>(
             [&](auto* o) { return c->createSupplierIDs(supplierId(c), o); });
     }},
    {"ECommerceCenterID", centerId},
    {"ECommerceCenterIDs",
     [](C c) {
         return make<IQVRCatalogECommerceCenterIDs>(
             [&](auto* o) { return c->createECommerceCenterIDs(centerId(c), o); });
     }},
};

TEST(CatalogFactories, EachGivesAnElementInNoTreeUntilInserted) {
    Ref<IQVRCatalog> catalog = newCatalog();
    String before, after;
    ASSERT_EQ(catalog->get_xml(&before), S_OK);
    for (const auto& [tag, factory] : factories) {
        SCOPED_TRACE(tag);
        Made made = factory(catalog);
        ASSERT_TRUE(made);
        Ref<IXMLDOMElement> element;
        Ref<IXMLDOMNode> parentNode;
        String name;
        ASSERT_EQ(made->get_domNode(&element), S_OK);
        ASSERT_EQ(element->get_nodeName(&name), S_OK);
        EXPECT_EQ(name, tag);
        element->get_parentNode(&parentNode);
        EXPECT_FALSE(parentNode);
        Made parent, ownCatalog;
        EXPECT_EQ(made->get_parentNode(&parent), S_FALSE);
        ASSERT_EQ(made->get_catalog(&ownCatalog), S_OK);
        EXPECT_EQ(ownCatalog.get(), static_cast<IQVRCatalogObject*>(catalog.get()));
    }
    ASSERT_EQ(catalog->get_xml(&after), S_OK);
    EXPECT_EQ(after, before);
}

TEST(CatalogSingletons, EachLandsBehindItsNearestPredecessor) {
    Ref<IQVRCatalog> catalog = newCatalog();
    VARIANT_BOOL done;
    // A root without Desc takes a singleton first; ActiveXs keeps its place.
    ASSERT_EQ(catalog->loadXML("<vCAT id='c'><ActiveXs/><Chapter id='a'/></vCAT>", &done), S_OK);
    Listener listener(catalog);
    Made info = orderInfo(catalog);
    listener.take();
    ASSERT_EQ(catalog->putref_orderInfo(info), S_OK);
    EXPECT_EQ(childTags(catalog), "ActiveXs OrderInfo Chapter");
    ASSERT_EQ(
        catalog->loadXML("<vCAT id='c'><Desc/><Chapter id='a'/><Chapter id='b'/></vCAT>", &done),
        S_OK);
    ASSERT_EQ(catalog->putref_orderInfo(info), S_OK);
    EXPECT_EQ(childTags(catalog), "Desc OrderInfo Chapter Chapter");
    Made parent;
    ASSERT_EQ(info->get_parentNode(&parent), S_OK);
    EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(catalog.get()));

    // A second one replaces it, and the first leaves the tree.
    Made second = orderInfo(catalog);
    listener.take();
    ASSERT_EQ(catalog->putref_orderInfo(second), S_OK);
    Ref<IXMLDOMElement> firstNode;
    Ref<IXMLDOMNode> firstParent;
    info->get_domNode(&firstNode);
    firstNode->get_parentNode(&firstParent);
    EXPECT_FALSE(firstParent);
    Ref<IQVRCatalogOrderInfo> read;
    ASSERT_EQ(catalog->get_orderInfo(&read), S_OK);
    Ref<IXMLDOMElement> readNode, secondNode;
    read->get_domNode(&readNode);
    second->get_domNode(&secondNode);
    EXPECT_EQ(readNode.get(), secondNode.get());

    // Null removes; null on nothing does nothing, and either is heard.
    ASSERT_EQ(catalog->putref_orderInfo(nullptr), S_OK);
    ASSERT_EQ(catalog->putref_link(nullptr), S_OK);
    EXPECT_EQ(childTags(catalog), "Desc Chapter Chapter");
    EXPECT_EQ(listener.take(), "changed #0 | changed #0 | changed #0");
    EXPECT_EQ(catalog->get_orderInfo(&read), S_FALSE);
    EXPECT_FALSE(read);
    Ref<IQVRCatalogSupplier> supplier;
    EXPECT_EQ(catalog->get_supplier(&supplier), S_FALSE);
    EXPECT_EQ(catalog->get_supplier(nullptr), E_POINTER);

    Ref<IQVRCatalog> empty;
    ASSERT_EQ(CreateCatalog(&empty), S_OK);
    EXPECT_EQ(empty->putref_orderInfo(second), E_FAIL);
    EXPECT_EQ(lastError().rfind("The Catalog is not initialized yet.", 0), 0u);
    EXPECT_EQ(empty->get_supplier(&supplier), E_FAIL);
}

} // namespace
} // namespace qvr::testing
