// The groups (images, link, documents, extrinsics, classifications) that the catalog, its
// chapters and its parts hold once each: their places and their replacement. (A catalog holding
// every kind of element, saved and loaded back, is tried with the catalog's contents.)
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

Ref<IQVRCatalogLink> newLink(IQVRCatalog* catalog, const char* href) {
    Ref<IQVRCatalogLink> link;
    EXPECT_EQ(catalog->createLink(newURL(catalog, href), &link), S_OK);
    return link;
}

Ref<IQVRCatalogExtrinsics> newExtrinsics(IQVRCatalog* catalog) {
    Ref<IQVRCatalogExtrinsics> extrinsics;
    EXPECT_EQ(catalog->createExtrinsics(&extrinsics), S_OK);
    return extrinsics;
}

Ref<IQVRCatalogDocuments> newDocuments(IQVRCatalog* catalog, const char* name) {
    Ref<IQVRCatalogDocument> document;
    Ref<IQVRCatalogDocuments> documents;
    EXPECT_EQ(catalog->createDocument(newURL(catalog, "manual.pdf", "en"), name, &document), S_OK);
    EXPECT_EQ(catalog->createDocuments(document, name, &documents), S_OK);
    return documents;
}

std::string hrefOf(IQVRCatalogObject* object) {
    Variant href;
    return object && object->getValue("URL/@xlink:href", &href) == S_OK ? href.str().str() : "";
}

TEST(Groups, StandInTheirPlacesAndReplaceTheOldOne) {
    NestedTree t;
    Ref<IQVRCatalog>& catalog = t.catalog;
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(newImage(catalog, "logo.png"), &images), S_OK);
    Ref<IQVRCatalogLink> first = newLink(catalog, "http://a/"),
                         second = newLink(catalog, "http://b/");
    Ref<IQVRCatalogExtrinsics> extrinsics = newExtrinsics(catalog);
    Listener listener(catalog);

    // On the root each lands right behind the last group ahead of it, before the chapters.
    ASSERT_EQ(catalog->putref_extrinsics(extrinsics), S_OK);
    ASSERT_EQ(catalog->putref_documents(newDocuments(catalog, "Manuals")), S_OK);
    ASSERT_EQ(catalog->putref_link(first), S_OK);
    ASSERT_EQ(catalog->putref_images(images), S_OK);
    EXPECT_EQ(childTags(catalog), "Desc Images Link Documents Extrinsics Chapter");
    Ref<IQVRCatalogObject> parent;
    ASSERT_EQ(first->get_parentNode(&parent), S_OK);
    EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(catalog.get()));
    listener.take();
    // A new one replaces the old one in its place; null removes it, and is told also when
    // there is nothing to remove.
    ASSERT_EQ(catalog->putref_link(second), S_OK);
    EXPECT_EQ(childTags(catalog), "Desc Images Link Documents Extrinsics Chapter");
    Ref<IQVRCatalogLink> link;
    ASSERT_EQ(catalog->get_link(&link), S_OK);
    EXPECT_EQ(hrefOf(link), "http://b/");
    ASSERT_EQ(catalog->putref_link(nullptr), S_OK);
    ASSERT_EQ(catalog->putref_link(nullptr), S_OK);
    EXPECT_EQ(catalog->get_link(&link), S_FALSE);
    EXPECT_FALSE(link);
    EXPECT_EQ(listener.take(), "changed Test | changed Test | changed Test");
    // A missing Extrinsics leaves the out value as it was.
    ASSERT_EQ(catalog->putref_extrinsics(nullptr), S_OK);
    Ref<IQVRCatalogExtrinsics> kept = extrinsics;
    EXPECT_EQ(catalog->get_extrinsics(&kept), S_FALSE);
    EXPECT_EQ(kept.get(), extrinsics.get());

    // The same on a part and a chapter, among their own neighbours.
    ASSERT_EQ(t.part->putref_extrinsics(extrinsics), S_OK);
    ASSERT_EQ(t.part->putref_link(first), S_OK);
    ASSERT_EQ(t.part->putref_documents(newDocuments(catalog, "Manuals")), S_OK);
    ASSERT_EQ(t.part->putref_documents(newDocuments(catalog, "Sheets")), S_OK);
    EXPECT_EQ(childTags(t.part), "Desc Link Documents Extrinsics TableRef");
    Ref<IQVRCatalogDocuments> documents;
    ASSERT_EQ(t.part->get_documents(&documents), S_OK);
    EXPECT_EQ(nameOf(documents), "Sheets");
    ASSERT_EQ(t.inner->putref_link(second), S_OK);
    ASSERT_EQ(t.inner->putref_images(images), S_OK);
    ASSERT_EQ(t.inner->putref_link(newLink(catalog, "http://c/")), S_OK);
    EXPECT_EQ(childTags(t.inner), "Desc Images Link Part");
    ASSERT_EQ(t.inner->get_link(&link), S_OK);
    EXPECT_EQ(hrefOf(link), "http://c/");
}

} // namespace
} // namespace qvr::testing
