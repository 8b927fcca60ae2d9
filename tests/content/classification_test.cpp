// Classes by domain, and extrinsics holding a text or a copy of an element.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

Ref<IQVRCatalogClass> newClass(IQVRCatalog* catalog, const char* domain, const char* value) {
    Ref<IQVRCatalogClass> result;
    EXPECT_EQ(catalog->createClass(domain, value, &result), S_OK);
    return result;
}

TEST(Classification, TheDomainIsTheKey) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogClass> etim = newClass(catalog, "ETIM", "EC000123");
    Ref<IQVRCatalogClassifications> classes;
    ASSERT_EQ(catalog->createClassifications(etim, &classes), S_OK);
    Ref<IQVRCatalogClass> eclass = newClass(catalog, "eCl@ss", "23-11-01-01");
    ASSERT_EQ(classes->appendChild(eclass, nullptr), S_OK);
    Listener listener(catalog);

    // The empty domain removes it, and with it the key.
    ASSERT_EQ(etim->put_domain(""), S_OK);
    String key("kept");
    EXPECT_EQ(etim->get_key(&key), S_FALSE);
    EXPECT_EQ(listener.take(), "changed #5");
    ASSERT_EQ(eclass->put_domain(nullptr), S_OK); // two without a domain never clash

    Ref<IQVRCatalogClass> none;
    EXPECT_EQ(catalog->createClass("ETIM", nullptr, &none), E_INVALIDARG);
}

TEST(Extrinsic, HoldsATextOrACopyOfAnElement) {
    NestedTree t;
    Ref<IQVRCatalog>& catalog = t.catalog;
    Ref<IQVRCatalogExtrinsic> extra;
    ASSERT_EQ(catalog->createExtrinsic("origin", &extra), S_OK);
    EXPECT_EQ(keyOf(extra), "origin");
    Ref<IQVRCatalogObject> content;
    EXPECT_EQ(extra->get_content(&content), S_FALSE);
    Listener listener(catalog);

    // A text: read as the value; it is no object.
    ASSERT_EQ(extra->put_value("made in Ulm"), S_OK);
    EXPECT_EQ(extra->get_content(&content), E_FAIL);
    EXPECT_FALSE(content);

    // A copy of a part replaces the text; the part stays where it stood.
    ASSERT_EQ(t.part->put_desc("zinc plated"), S_OK);
    ASSERT_EQ(extra->putref_content(t.part), S_OK);
    EXPECT_EQ(childTags(extra), "Part");
    ASSERT_EQ(extra->get_content(&content), S_OK);
    EXPECT_EQ(nameOf(content), "M8");
    EXPECT_EQ(keyOf(content), keyOf(t.part)); // a copy, ids untouched
    EXPECT_EQ(childTags(t.inner), "Desc Part");
    String value;
    EXPECT_EQ(got(extra, &IQVRCatalogExtrinsic::get_value), "zinc plated");
    // The copy does not follow its source, and a text replaces it again.
    ASSERT_EQ(t.part->put_name("M10"), S_OK);
    EXPECT_EQ(nameOf(content), "M8");
    ASSERT_EQ(extra->put_value("again a text"), S_OK);
    EXPECT_EQ(childTags(extra), "#text");
    EXPECT_EQ(listener.take(),
              "changed origin | changed M8 | changed origin | changed M10 | changed origin");
    EXPECT_EQ(extra->putref_content(nullptr), E_INVALIDARG);

    // Two extrinsics of one name stand side by side.
    Ref<IQVRCatalogExtrinsics> extrinsics;
    ASSERT_EQ(catalog->createExtrinsics(&extrinsics), S_OK);
    Ref<IQVRCatalogExtrinsic> twin;
    ASSERT_EQ(catalog->createExtrinsic("origin", &twin), S_OK);
    ASSERT_EQ(extrinsics->appendChild(extra, nullptr), S_OK);
    ASSERT_EQ(extrinsics->appendChild(twin, nullptr), S_OK);
    EXPECT_EQ(childTags(extrinsics), "Extrinsic Extrinsic");
    // They have no key: a key names none of them.
    EXPECT_EQ(extrinsics->insertBefore(twin, Variant(keyOf(twin)), nullptr), S_FALSE);
}

} // namespace
} // namespace qvr::testing
