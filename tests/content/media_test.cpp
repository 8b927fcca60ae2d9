// URLs with their XLink attributes, and the containers that offer one target per language and
// keep their last child.
#include <gtest/gtest.h>

#include "common/catalog_fixture.h"
#include "content/media.h"
#include "core/object_factory.h"

namespace qvr::testing {
namespace {

std::string attributeOf(IQVRCatalogObject* object, const char* name) {
    Variant value;
    return object->getValue(std::string("@") + name, &value) == S_OK ? value.str().str()
                                                                     : "(absent)";
}

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(URL, XLinkAttributes) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogURL> url = newURL(catalog, "docs\\m8.pdf", "en");
    // Made simple, with the address in URL form and the title and language given.
    EXPECT_EQ(attributeOf(url, "xlink:href"), "docs/m8.pdf");
    EXPECT_EQ(attributeOf(url, "xlink:type"), "simple");
    EXPECT_EQ(attributeOf(url, "xlink:title"), "docs\\m8.pdf");
    EXPECT_EQ(keyOf(url), "en");
    Listener listener(catalog);

    // Clearable texts: set, then removed by the empty text; removing what is absent is not told.
    ASSERT_EQ(url->put_role("datasheet"), S_OK);
    ASSERT_EQ(url->put_title(""), S_OK);
    ASSERT_EQ(url->put_role(nullptr), S_OK);
    ASSERT_EQ(url->put_role(""), S_OK);
    EXPECT_EQ(attributeOf(url, "xlink:title") + attributeOf(url, "xlink:role"), "(absent)(absent)");
    EXPECT_EQ(listener.take(), "changed #30 | changed #30 | changed #30");

    // Numbered attributes: written by their text, read back by number; a text outside the table
    // (case counts) reads as its last number, an absent one as S_FALSE.
    ASSERT_EQ(url->put_show(qvrShowEmbed), S_OK);
    ASSERT_EQ(url->put_actuate(qvrActuateOnRequest), S_OK);
    EXPECT_EQ(attributeOf(url, "xlink:show") + attributeOf(url, "xlink:actuate"), "embedonRequest");
    Ref<IXMLDOMElement> element;
    ASSERT_EQ(url->get_domNode(&element), S_OK);
    ASSERT_EQ(element->setAttribute("xlink:actuate", "OnLoad"), S_OK);
    ASSERT_EQ(element->setAttribute("xlink:type", "none"), S_OK);
    QVRURLActuate actuate = qvrActuateOnLoad;
    QVRURLType type = qvrTypeSimple;
    EXPECT_EQ(url->get_actuate(&actuate), S_OK);
    EXPECT_EQ(actuate, qvrActuateUndefined);
    EXPECT_EQ(url->get_type(&type), S_OK);
    EXPECT_EQ(type, qvrTypeNone);
    ASSERT_EQ(element->setAttribute("xlink:type", "bogus"), S_OK);
    type = qvrTypeSimple;
    EXPECT_EQ(url->get_type(&type), S_OK);
    EXPECT_EQ(type, qvrTypeNone);
    ASSERT_EQ(element->removeAttribute("xlink:show"), S_OK);
    QVRURLShow show = qvrShowNew;
    EXPECT_EQ(url->get_show(&show), S_FALSE);
    EXPECT_EQ(show, qvrShowNew);
    EXPECT_EQ(url->put_type(static_cast<QVRURLType>(7)), E_INVALIDARG);
    EXPECT_EQ(url->get_type(&type), S_OK);
    EXPECT_EQ(type, qvrTypeNone);

    // Addresses: a URL stays, an absolute path becomes a file URL; null is refused.
    String href;
    ASSERT_EQ(url->put_href("http://example.com/a b.pdf"), S_OK);
    ASSERT_EQ(url->get_href(&href), S_OK);
    EXPECT_EQ(href, "http://example.com/a b.pdf");
    ASSERT_EQ(url->put_href("/data/m8.pdf"), S_OK);
    ASSERT_EQ(url->get_href(&href), S_OK);
    EXPECT_EQ(href.view().substr(0, 8), "file:///");
    EXPECT_EQ(url->put_href(nullptr), E_INVALIDARG);
    ASSERT_EQ(url->get_href(&href), S_OK);
    EXPECT_EQ(href.view().substr(0, 8), "file:///");
    listener.take();

    // Inside a catalog, the xlink namespace is declared once, on the root.
    Ref<IQVRCatalogLink> link;
    ASSERT_EQ(catalog->createLink(url, &link), S_OK);
    ASSERT_EQ(catalog->putref_link(link), S_OK);
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(newImage(catalog, "m8.png"), &images), S_OK);
    ASSERT_EQ(part->putref_images(images), S_OK);
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Bolts");
    ASSERT_EQ(chapter->appendChild(part, nullptr), S_OK);
    ASSERT_EQ(catalog->appendChild(chapter, nullptr), S_OK);
    String xml;
    ASSERT_EQ(catalog->get_xml(&xml), S_OK);
    EXPECT_EQ(occurrences(xml.str(), "xmlns:xlink"), 1u) << xml.str();
    EXPECT_EQ(occurrences(xml.str(), "xlink:href"), 3u); // the table reference is one
}

TEST(Media, OneTargetPerLanguage) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogURL> en = newURL(catalog, "a.pdf", "en");
    Ref<IQVRCatalogLink> link;
    Ref<IQVRCatalogDocument> document;
    Ref<IQVRCatalogImage> image;
    ASSERT_EQ(catalog->createLink(en, &link), S_OK);
    ASSERT_EQ(catalog->createDocument(newURL(catalog, "b.pdf", "en"), "Manual", &document), S_OK);
    ASSERT_EQ(catalog->createImage(newURL(catalog, "c.png", "en"), &image), S_OK);
    Ref<IQVRCatalogURL> another = newURL(catalog, "x", "en");
    Listener listener(catalog);

    // A second target of a language: Link and Document report it, Image only answers.
    EXPECT_EQ(link->appendChild(another, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(document->appendChild(another, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(image->appendChild(another, nullptr), QVR_E_DUPLICATE);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(childTags(link) + childTags(document) + childTags(image), "URLURLURL");
    EXPECT_EQ(listener.take(), "");

    // Other languages, and any number of URLs without one, stand side by side.
    Ref<IQVRCatalogURL> de = newURL(catalog, "d.pdf", "de");
    ASSERT_EQ(link->appendChild(de, nullptr), S_OK);
    Ref<IQVRCatalogURL> plain = newURL(catalog, "e.pdf");
    ASSERT_EQ(link->appendChild(plain, nullptr), S_OK);
    ASSERT_EQ(link->appendChild(newURL(catalog, "f.pdf"), nullptr), S_OK);
    EXPECT_EQ(childTags(link), "URL URL URL URL");
    // Without a language the key is the wrapper's own: another wrapper has another.
    Ref<IQVRCatalogObjectList> urls;
    Ref<IQVRCatalogObject> again;
    ASSERT_EQ(link->get_childNodes(&urls), S_OK);
    ASSERT_EQ(urls->getItem(3, &again), S_OK);
    EXPECT_EQ(keyOf(again).size(), 36u);
    EXPECT_NE(keyOf(again), keyOf(plain));
    listener.take();

    // A language taken by a sibling is refused; the URL's own passes and is told.
    EXPECT_EQ(de->put_lang("en"), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(plain->put_lang("en"), E_FAIL);
    ASSERT_EQ(de->put_lang("de"), S_OK);
    EXPECT_EQ(listener.take(), "changed #30");
    // Codes of the wrong shape: message 123, nothing changed.
    for (const char* bad : {"DE", "d", "deu", "d1"}) {
        EXPECT_EQ(de->put_lang(bad), E_FAIL) << bad;
        EXPECT_EQ(lastError(), "This is not a valid ISO 639 language code.");
    }
    EXPECT_EQ(keyOf(de), "de");
    EXPECT_EQ(listener.take(), "");
    // The empty text takes the language away; the key falls back to the wrapper's.
    ASSERT_EQ(de->put_lang(""), S_OK);
    EXPECT_EQ(attributeOf(de, "xml:lang"), "(absent)");
    EXPECT_EQ(keyOf(de).size(), 36u);
}

TEST(Media, ContainersKeepTheirLastChildAndTheirKind) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogURL> only = newURL(catalog, "a.pdf", "en");
    Ref<IQVRCatalogLink> link;
    ASSERT_EQ(catalog->createLink(only, &link), S_OK);
    Ref<IQVRCatalogImage> first = newImage(catalog, "a.png"), stray = newImage(catalog, "b.png");
    Ref<IQVRCatalogImages> images;
    ASSERT_EQ(catalog->createImages(first, &images), S_OK);
    Ref<IQVRCatalogDocument> document;
    ASSERT_EQ(catalog->createDocument(newURL(catalog, "m.pdf"), "Manual", &document), S_OK);
    Ref<IQVRCatalogDocuments> documents;
    ASSERT_EQ(catalog->createDocuments(document, "All", &documents), S_OK);
    Ref<IXMLDOMElement> root;
    Ref<IXMLDOMDocument> dom;
    ASSERT_EQ(catalog->get_domNode(&root), S_OK);
    ASSERT_EQ(root->get_ownerDocument(&dom), S_OK);
    Ref<CQVRCatalogReferencedFiles> files;
    ASSERT_EQ(createNewWrapper<CQVRCatalogReferencedFiles>(dom, catalog, &files), S_OK);
    Ref<IQVRCatalogURL> file = newURL(catalog, "extra.dwg");
    ASSERT_EQ(files->appendChild(file, nullptr), S_OK);
    Listener listener(catalog);

    // The only child of its name stays, also when the object given is not that child.
    const std::pair<IQVRCatalogObject*, IQVRCatalogObject*> lastOnes[] = {
        {link, only}, {images, stray}, {documents, document}, {files->self(), file}};
    for (auto [container, child] : lastOnes) {
        EXPECT_EQ(container->removeChild(child, nullptr), E_FAIL);
        EXPECT_EQ(lastError(), "You can't remove the last child of this object.");
        EXPECT_EQ(childTags(container).find(' '), std::string::npos);
    }
    EXPECT_EQ(listener.take(), "");
    // With two, one may go.
    ASSERT_EQ(link->appendChild(newURL(catalog, "b.pdf", "de"), nullptr), S_OK);
    ASSERT_EQ(link->removeChild(only, nullptr), S_OK);
    EXPECT_EQ(childTags(link), "URL");

    // Each takes its own kind only.
    EXPECT_EQ(link->appendChild(first, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append URL's as a child of this object.");
    EXPECT_EQ(images->appendChild(document, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append an Image as a child of this object.");
    EXPECT_EQ(documents->appendChild(first, nullptr), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append a Document as a child of this object.");
    // A container is never born empty: the factories pass on the insertion's refusal.
    Ref<IQVRCatalogImage> none;
    Ref<IQVRCatalogDocument> wrong;
    EXPECT_EQ(catalog->createImage(nullptr, &none), E_POINTER);
    EXPECT_EQ(catalog->createDocument(document, "x", &wrong), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append URL's as a child of this object.");
    EXPECT_FALSE(none);
    EXPECT_FALSE(wrong);
    Ref<IQVRCatalogURL> url;
    EXPECT_EQ(catalog->createURL("a", "b", nullptr, &url), E_INVALIDARG);
    EXPECT_EQ(catalog->createURL("a", "b", "EN", &url), E_FAIL);
    EXPECT_FALSE(url);

    // Names of documents clear; copies are plain copies with keys of their own.
    ASSERT_EQ(documents->put_name(""), S_OK);
    String name("kept");
    EXPECT_EQ(documents->get_name(&name), S_FALSE);
    Ref<IQVRCatalogObject> copy;
    ASSERT_EQ(images->cloneNode(VARIANT_TRUE, &copy), S_OK);
    EXPECT_EQ(childTags(copy), "Image");
    EXPECT_NE(keyOf(copy), keyOf(images));
}

} // namespace
} // namespace qvr::testing
