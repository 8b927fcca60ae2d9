// The groups (images, link, documents, extrinsics, classifications) that the catalog, its
// chapters and its parts hold once each: their places and their replacement; and a catalog
// holding every kind of content, saved and loaded back.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"
#include "common/temp_files.h"

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

using ContentRoundTrip = TempFiles;

// Every kind of content in one catalog, saved, loaded into another catalog and read back.
TEST_F(ContentRoundTrip, EveryKindIsReadBackEqual) {
    NestedTree t;
    Ref<IQVRCatalog>& catalog = t.catalog;
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(newImage(catalog, "logo.png"), &images), S_OK);
    Ref<IQVRCatalogURL> german = newURL(catalog, "http://example.com/de", "de");
    ASSERT_EQ(german->put_show(qvrShowReplace), S_OK);
    Ref<IQVRCatalogLink> link = newLink(catalog, "http://example.com/");
    ASSERT_EQ(link->appendChild(german, nullptr), S_OK);
    ASSERT_EQ(catalog->putref_images(images), S_OK);
    ASSERT_EQ(catalog->putref_link(link), S_OK);
    ASSERT_EQ(catalog->putref_documents(newDocuments(catalog, "Manuals")), S_OK);
    Ref<IQVRCatalogClass> etim;
    Ref<IQVRCatalogClassifications> classes;
    ASSERT_EQ(catalog->createClass("ETIM", "EC000123", &etim), S_OK);
    ASSERT_EQ(catalog->createClassifications(etim, &classes), S_OK);
    ASSERT_EQ(t.part->putref_classifications(classes), S_OK);

    // The contact leaves have no place of their own yet: an extrinsic carries a copy.
    Ref<IQVRCatalogTelephoneNumber> number;
    Ref<IQVRCatalogPhone> phone;
    Ref<IQVRCatalogEmail> email;
    Ref<IQVRCatalogStreet> street;
    Ref<IQVRCatalogPostalAddress> postal;
    Ref<IQVRCatalogAddress> address;
    ASSERT_EQ(catalog->createTelephoneNumber("49", "DE", "731", "1234", "5", &number), S_OK);
    ASSERT_EQ(catalog->createPhone("Sales", number, &phone), S_OK);
    ASSERT_EQ(catalog->createEmail("Sales", "sales@example.com", &email), S_OK);
    ASSERT_EQ(catalog->createStreet("Hauptstr. 1", &street), S_OK);
    ASSERT_EQ(
        catalog->createPostalAddress("P1", "Ulm", "Germany", "DE", street, "BW", "89073", &postal),
        S_OK);
    ASSERT_EQ(catalog->createAddress("ACME", "DE", postal, email, phone, nullptr, &address), S_OK);
    Ref<IQVRCatalogExtrinsic> contact, note;
    ASSERT_EQ(catalog->createExtrinsic("contact", &contact), S_OK);
    ASSERT_EQ(contact->putref_content(address), S_OK);
    ASSERT_EQ(catalog->createExtrinsic("note", &note), S_OK);
    ASSERT_EQ(note->put_value("keep dry"), S_OK);
    Ref<IQVRCatalogExtrinsics> extrinsics = newExtrinsics(catalog);
    ASSERT_EQ(extrinsics->appendChild(contact, nullptr), S_OK);
    ASSERT_EQ(extrinsics->appendChild(note, nullptr), S_OK);
    ASSERT_EQ(t.top->putref_extrinsics(extrinsics), S_OK);

    VARIANT_BOOL done = VARIANT_FALSE;
    Ref<IQVRCatalog> loaded;
    ASSERT_EQ(catalog->saveAs(Variant(file("catalog.xml")), &done), S_OK);
    ASSERT_EQ(CreateCatalog(&loaded), S_OK);
    ASSERT_EQ(loaded->load(Variant(file("catalog.xml")), &done), S_OK);
    String before, after;
    ASSERT_EQ(catalog->get_xml(&before), S_OK);
    ASSERT_EQ(loaded->get_xml(&after), S_OK);
    EXPECT_EQ(after, before);

    // Read back through the objects of the loaded catalog.
    Ref<IQVRCatalogObjectList> list;
    Ref<IQVRCatalogObject> top, item, content;
    ASSERT_EQ(loaded->get_link(&link), S_OK);
    ASSERT_EQ(link->get_childNodes(&list), S_OK);
    ASSERT_EQ(list->get_item(Variant("de"), &item), S_OK);
    QVRURLShow show = qvrShowNew;
    ASSERT_EQ(query<IQVRCatalogURL>(item)->get_show(&show), S_OK);
    EXPECT_EQ(show, qvrShowReplace);
    ASSERT_EQ(loaded->findById(keyOf(t.top), &top), S_OK);
    ASSERT_EQ(query<IQVRCatalogChapter>(top)->get_extrinsics(&extrinsics), S_OK);
    ASSERT_EQ(extrinsics->get_childNodes(&list), S_OK);
    ASSERT_EQ(list->get_item(Variant("contact"), &item), S_OK);
    ASSERT_EQ(query<IQVRCatalogExtrinsic>(item)->get_content(&content), S_OK);
    ASSERT_EQ(query<IQVRCatalogAddress>(content)->get_phone(&phone), S_OK);
    ASSERT_EQ(phone->get_telephoneNumber(&number), S_OK);
    String code, text;
    ASSERT_EQ(number->get_countryCode(&code, &text), S_OK);
    EXPECT_EQ(code.str() + " " + text.str(), "DE 49");
}

} // namespace
} // namespace qvr::testing
