// URLs with their XLink attributes, and the containers that offer one target per language and
// keep their last child.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

std::string attributeOf(IQVRCatalogObject* object, const char* name) {
    Variant value;
    return object->getValue(std::string("@") + name, &value) == S_OK ? value.str().str() : "-";
}

TEST(URL, XLinkAttributes) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogURL> url = newURL(catalog, "docs\\m8.pdf", "en");
    // Made simple, the address in URL form.
    EXPECT_EQ(attributeOf(url, "xlink:href") + " " + attributeOf(url, "xlink:type"),
              "docs/m8.pdf simple");
    Listener listener(catalog);

    // Set, then cleared by the empty text; clearing what is absent is not told.
    ASSERT_EQ(url->put_role("datasheet"), S_OK);
    ASSERT_EQ(url->put_title(""), S_OK);
    ASSERT_EQ(url->put_role(nullptr), S_OK);
    ASSERT_EQ(url->put_role(""), S_OK);
    EXPECT_EQ(attributeOf(url, "xlink:title") + attributeOf(url, "xlink:role"), "--");
    EXPECT_EQ(listener.take(), "changed #30 | changed #30 | changed #30");

    // Numbered attributes are written as their texts; a text outside the table (case counts)
    // reads as the table's last number.
    ASSERT_EQ(url->put_show(qvrShowEmbed), S_OK);
    EXPECT_EQ(attributeOf(url, "xlink:show"), "embed");
    EXPECT_EQ(url->put_type(static_cast<QVRURLType>(7)), E_INVALIDARG);
    ASSERT_EQ(elementOf(url)->setAttribute("xlink:actuate", "OnLoad"), S_OK);
    ASSERT_EQ(elementOf(url)->setAttribute("xlink:type", "bogus"), S_OK);
    QVRURLActuate actuate = qvrActuateOnLoad;
    QVRURLType type = qvrTypeSimple;
    ASSERT_EQ(url->get_actuate(&actuate), S_OK);
    ASSERT_EQ(url->get_type(&type), S_OK);
    EXPECT_EQ(actuate, qvrActuateUndefined);
    EXPECT_EQ(type, qvrTypeNone);

    // A URL is kept as it stands, an absolute path becomes a file URL, null is refused.
    String href;
    ASSERT_EQ(url->put_href("http://example.com/a b.pdf"), S_OK);
    EXPECT_EQ(got(url, &IQVRCatalogURL::get_href), "http://example.com/a b.pdf");
    ASSERT_EQ(url->put_href("/data/m8.pdf"), S_OK);
    EXPECT_EQ(url->put_href(nullptr), E_INVALIDARG);
    ASSERT_EQ(url->get_href(&href), S_OK);
    EXPECT_EQ(href.view().substr(0, 8), "file:///");

    // Inside a catalog the xlink namespace is declared once, on the root.
    Ref<IQVRCatalogLink> link;
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createLink(url, &link), S_OK);
    ASSERT_EQ(catalog->putref_link(link), S_OK);
    ASSERT_EQ(catalog->createImages(newImage(catalog, "m8.png"), &images), S_OK);
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    ASSERT_EQ(chapter->putref_images(images), S_OK);
    ASSERT_EQ(catalog->appendChild(chapter, nullptr), S_OK);
    String xml;
    ASSERT_EQ(catalog->get_xml(&xml), S_OK);
    const std::string text = xml.str();
    EXPECT_EQ(text.find("xmlns:xlink"), text.rfind("xmlns:xlink")) << text;
}

TEST(Media, URLsWithoutALanguageStandSideBySide) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogLink> link;
    ASSERT_EQ(catalog->createLink(newURL(catalog, "a.pdf", "en"), &link), S_OK);
    Ref<IQVRCatalogURL> de = newURL(catalog, "d", "de");
    ASSERT_EQ(link->appendChild(de, nullptr), S_OK);
    ASSERT_EQ(link->appendChild(newURL(catalog, "e.pdf"), nullptr), S_OK);
    ASSERT_EQ(link->appendChild(newURL(catalog, "f.pdf"), nullptr), S_OK);
    EXPECT_EQ(childTags(link), "URL URL URL URL");
    Listener listener(catalog);

    // Codes of the wrong shape change nothing; the empty text removes the language.
    for (const char* bad : {"DE", "d", "deu", "d1"}) {
        EXPECT_EQ(de->put_lang(bad), E_FAIL) << bad;
        EXPECT_EQ(lastError(), "This is not a valid ISO 639 language code.");
    }
    EXPECT_EQ(keyOf(de), "de");
    EXPECT_EQ(listener.take(), "");
    ASSERT_EQ(de->put_lang(""), S_OK);
    EXPECT_EQ(attributeOf(de, "xml:lang"), "-");
    EXPECT_EQ(keyOf(de).size(), 36u); // the wrapper's own key
}

} // namespace
} // namespace qvr::testing
