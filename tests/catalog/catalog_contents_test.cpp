// What the catalog holds and makes: the singletons of its root, the element factories, and a
// catalog with every kind of element written and read back.
#include <gtest/gtest.h>

#include <string>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"
#include "common/temp_files.h"

namespace qvr::testing {
namespace {

using namespace elements;

bool sameNode(IQVRCatalogObject* a, IQVRCatalogObject* b) {
    return a && b && elementOf(a).get() == elementOf(b).get();
}

// Whether the catalog's getter `get` hands out the element of `made`.
template <class I>
bool gives(IQVRCatalog* catalog, HRESULT (IQVRCatalog::*get)(Ref<I>*), IQVRCatalogObject* made) {
    Ref<I> read;
    return (catalog->*get)(&read) == S_OK && sameNode(read, made);
}

TEST(CatalogFactories, EachGivesAnElementInNoTreeUntilInserted) {
    Ref<IQVRCatalog> catalog = newCatalog();
    String before, after;
    ASSERT_EQ(catalog->get_xml(&before), S_OK);
    EXPECT_EQ(everyFactory().size(), 31u);
    for (const auto& [tag, maker] : everyFactory()) {
        SCOPED_TRACE(tag);
        Made made = maker(catalog);
        ASSERT_TRUE(made);
        Ref<IXMLDOMElement> element = elementOf(made);
        Ref<IXMLDOMNode> parentNode;
        String name;
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

    // Required texts first, then the document; a failing step of the object's own setters is
    // the factory's failure, with no object.
    Ref<IQVRCatalogCountryCode> code;
    EXPECT_EQ(catalog->createCountryCode("de", "Germany", &code), E_FAIL);
    EXPECT_EQ(lastError(), "This is not a valid ISO 3166 country code.");
    EXPECT_FALSE(code);
    EXPECT_EQ(catalog->createCountryCode("DE", nullptr, &code), E_INVALIDARG);
    Ref<IQVRCatalogOrderTarget> target;
    EXPECT_EQ(catalog->createOrderTarget(street(catalog), &target), E_FAIL);
    EXPECT_EQ(lastError(), "This object is not a valid order target.");
    EXPECT_EQ(catalog->createSupplierID(nullptr, "1", nullptr), E_POINTER);
}

TEST(CatalogSingletons, SetInAnyOrderTheyStandInTheirsAheadOfTheChapters) {
    Ref<IQVRCatalog> catalog = newCatalog();
    ASSERT_EQ(loadXml(catalog, "<vCAT id='c'><Desc/><ActiveXs/><Chapter id='a'/></vCAT>"), S_OK);
    Made supplierMade = supplier(catalog), linkMade = link(catalog),
         extrinsicsMade = extrinsics(catalog), imagesMade = images(catalog),
         infoMade = orderInfo(catalog), documentsMade = documents(catalog);
    ASSERT_EQ(catalog->putref_supplier(supplierMade), S_OK);
    ASSERT_EQ(catalog->putref_link(linkMade), S_OK);
    ASSERT_EQ(catalog->putref_extrinsics(extrinsicsMade), S_OK);
    ASSERT_EQ(catalog->putref_images(imagesMade), S_OK);
    ASSERT_EQ(catalog->putref_orderInfo(infoMade), S_OK);
    ASSERT_EQ(catalog->putref_documents(documentsMade), S_OK);
    EXPECT_EQ(childTags(catalog),
              "Desc Images Link Documents ActiveXs Extrinsics OrderInfo Supplier Chapter");

    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_images, imagesMade));
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_link, linkMade));
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_documents, documentsMade));
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_extrinsics, extrinsicsMade));
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_orderInfo, infoMade));
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_supplier, supplierMade));

    // Removed, a getter finds none: get_extrinsics leaves its out value, the others clear it.
    Listener listener(catalog);
    ASSERT_EQ(catalog->putref_extrinsics(nullptr), S_OK);
    ASSERT_EQ(catalog->putref_supplier(nullptr), S_OK);
    ASSERT_EQ(catalog->putref_supplier(nullptr), S_OK);
    EXPECT_EQ(listener.take(), "changed #0 | changed #0 | changed #0");
    Ref<IQVRCatalogExtrinsics> readExtrinsics = query<IQVRCatalogExtrinsics>(extrinsicsMade);
    Ref<IQVRCatalogSupplier> readSupplier = query<IQVRCatalogSupplier>(supplierMade);
    EXPECT_EQ(catalog->get_extrinsics(&readExtrinsics), S_FALSE);
    EXPECT_TRUE(readExtrinsics);
    EXPECT_EQ(catalog->get_supplier(&readSupplier), S_FALSE);
    EXPECT_FALSE(readSupplier);

    // A second one replaces the first, which leaves the tree.
    Made secondInfo = orderInfo(catalog);
    ASSERT_EQ(catalog->putref_orderInfo(secondInfo), S_OK);
    EXPECT_TRUE(gives(catalog, &IQVRCatalog::get_orderInfo, secondInfo));
    Ref<IXMLDOMNode> firstParent;
    elementOf(infoMade)->get_parentNode(&firstParent);
    EXPECT_FALSE(firstParent);

    // Without Desc, a singleton goes first, ahead of everything.
    ASSERT_EQ(loadXml(catalog, "<vCAT id='c'><Chapter id='a'/></vCAT>"), S_OK);
    ASSERT_EQ(catalog->putref_supplier(supplier(catalog)), S_OK);
    EXPECT_EQ(childTags(catalog), "Supplier Chapter");
}

// What a catalog with every kind of element says through the model, one line per element.
std::string readBack(IQVRCatalog* catalog) {
    std::string said;
    auto say = [&](const std::string& line) { said += line + "\n"; };
    auto text = [](const Variant& value) {
        Variant shown;
        changeType(&shown, value, LCID_EN_US, 0, VT_BSTR);
        return shown.str().str();
    };
    String s1, s2;
    Variant v1, v2;

    Ref<IQVRCatalogOrderInfo> info;
    Ref<IQVRCatalogAvailability> availability;
    catalog->get_orderInfo(&info);
    info->get_effDate(&v1);
    info->get_expDate(&v2);
    info->get_availability(&availability);
    say("order info " + text(v1) + " to " + text(v2) + " in " + childTags(availability) + " " +
        keyOf(childAt(availability, 1)));

    Ref<IQVRCatalogSupplier> supplier;
    Ref<IQVRCatalogSupplierIDs> ids;
    Ref<IQVRCatalogECommerceCenterIDs> centerIds;
    catalog->get_supplier(&supplier);
    supplier->get_name(&s1);
    supplier->get_desc(&s2);
    supplier->get_supplierIDs(&ids);
    supplier->get_eCommerceCenterIDs(&centerIds);
    say("supplier " + s1.str() + ", " + s2.str() + ", ids " + keyOf(childAt(ids, 1)) + " and " +
        keyOf(childAt(centerIds, 1)));

    Ref<IQVRCatalogSupplierLocation> location =
        query<IQVRCatalogSupplierLocation>(childAt(supplier, 1));
    Ref<IQVRCatalogAddress> address;
    Ref<IQVRCatalogPostalAddress> postal;
    Ref<IQVRCatalogOrderMethods> methods;
    Ref<IQVRCatalogObjectList> list;
    location->get_address(&address);
    address->get_name(&s1);
    address->get_postalAddress(&postal);
    postal->get_city(&s2);
    say("location " + s1.str() + " in " + s2.str());
    location->get_orderMethods(&methods);
    methods->get_childNodes(&list);
    std::string line = "order methods";
    for (Ref<IQVRCatalogObject> item : *list) {
        Ref<IQVRCatalogOrderMethod> method = query<IQVRCatalogOrderMethod>(item);
        Ref<IQVRCatalogOrderTarget> target;
        std::int32_t type = -1;
        method->get_orderProtocol(&s1);
        method->get_orderTarget(&target);
        target->get_targetType(&type);
        line += " " + s1.str() + ":" + std::to_string(type);
    }
    say(line);

    Ref<IQVRCatalogPart> part = query<IQVRCatalogPart>(childAt(childAt(catalog, 1), 1));
    Ref<IQVRCatalogClassifications> classes;
    Ref<IQVRCatalogExtrinsics> extrinsics;
    part->get_orderInfo(&info);
    part->get_classifications(&classes);
    part->get_extrinsics(&extrinsics);
    info->get_effDate(&v1);
    say("part " + nameOf(part) + " orderable from " + text(v1) + ", class " +
        keyOf(childAt(classes, 1)) + ", " + std::to_string(extrinsics ? 1 : 0) + " extrinsics");
    return said;
}

using CompleteCatalog = TempFiles;

TEST_F(CompleteCatalog, EveryKindOfElementIsSavedAndReadBackEqual) {
    Ref<IQVRCatalog> catalog = newCatalog("Complete");
    Ref<IQVRCatalogChapter> bolts = query<IQVRCatalogChapter>(chapter(catalog));
    Ref<IQVRCatalogPart> m8 = query<IQVRCatalogPart>(part(catalog));
    ASSERT_EQ(catalog->appendChild(bolts, nullptr), S_OK);
    ASSERT_EQ(bolts->appendChild(m8, nullptr), S_OK);
    ASSERT_EQ(bolts->putref_images(images(catalog)), S_OK);
    ASSERT_EQ(m8->putref_link(link(catalog)), S_OK);
    ASSERT_EQ(m8->putref_documents(documents(catalog)), S_OK);
    ASSERT_EQ(m8->putref_extrinsics(extrinsics(catalog)), S_OK);
    ASSERT_EQ(m8->putref_orderInfo(orderInfo(catalog)), S_OK);
    ASSERT_EQ(m8->putref_classifications(classifications(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_images(images(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_link(link(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_documents(documents(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_extrinsics(extrinsics(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_orderInfo(orderInfo(catalog)), S_OK);
    ASSERT_EQ(catalog->putref_supplier(supplier(catalog)), S_OK);
    // Texts that need escaping, in attributes and in elements.
    ASSERT_EQ(bolts->put_name("Metric & more <here>"), S_OK);
    ASSERT_EQ(m8->put_name("M8 \"x\" 40"), S_OK);
    ASSERT_EQ(m8->put_desc("Hexagon bolt, zinc plated & <oiled>"), S_OK);
    ASSERT_EQ(m8->put_tableRef("tables/m8.xml"), S_OK);
    const std::string expected = "order info 3/1/2026 to 12/31/2027 in CountryCode DE\n"
                                 "supplier ACME, Bolts and nuts, ids DUNS and GLN\n"
                                 "location ACME in Stuttgart\n"
                                 "order methods voice:0 smtp:1 fax:2 https:3\n"
                                 "part M8 \"x\" 40 orderable from 3/1/2026, class ETIM, 1 "
                                 "extrinsics\n";
    EXPECT_EQ(readBack(catalog), expected);

    // Made by create, the catalog has no place to save to yet: the DOM refuses.
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_TRUE(FAILED(catalog->save(&done)));
    EXPECT_EQ(done, VARIANT_FALSE);
    ASSERT_EQ(catalog->saveAs(Variant(file("complete.xml")), &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    Ref<IQVRCatalog> loaded;
    ASSERT_EQ(CreateCatalog(&loaded), S_OK);
    ASSERT_EQ(loaded->load(Variant(file("complete.xml")), &done), S_OK);
    String written, reread, base;
    ASSERT_EQ(catalog->get_xml(&written), S_OK);
    ASSERT_EQ(loaded->get_xml(&reread), S_OK);
    EXPECT_EQ(reread, written);
    EXPECT_EQ(readBack(loaded), expected);
    ASSERT_EQ(loaded->get_baseUrl(&base), S_OK);
    EXPECT_EQ(base.str(), "file://" + dir.string() + "/");
    // Saved again, the same bytes; save writes where the document came from.
    ASSERT_EQ(loaded->saveAs(Variant(file("again.xml")), &done), S_OK);
    EXPECT_EQ(read(file("again.xml")), read(file("complete.xml")));
    ASSERT_EQ(loaded->put_name("Renamed"), S_OK);
    ASSERT_EQ(loaded->save(&done), S_OK);
    EXPECT_NE(read(file("again.xml")).find("name=\"Renamed\""), std::string::npos);
    // findById reaches as deep as any id stands, and hands the element out with the catalog as
    // its parent.
    Made found, parent;
    ASSERT_EQ(loaded->findById(postalAddressId, &found), S_OK);
    EXPECT_TRUE(query<IQVRCatalogPostalAddress>(found));
    ASSERT_EQ(found->get_parentNode(&parent), S_OK);
    EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(loaded.get()));
    // Every tag of the catalog format stands in the file.
    for (const auto& [tag, maker] : everyFactory())
        EXPECT_NE(reread.str().find("<" + std::string(tag)), std::string::npos) << tag;
}

} // namespace
} // namespace qvr::testing
