// URLs with their XLink attributes, and the containers that offer one target per language and
// keep their last child.
#include <gtest/gtest.h>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"
#include "content/media.h"
#include "core/object_factory.h"

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
    ASSERT_EQ(url->get_href(&href), S_OK);
    EXPECT_EQ(href, "http://example.com/a b.pdf");
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

TEST(Media, OneTargetPerLanguage) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogLink> link;
    Ref<IQVRCatalogDocument> document;
    Ref<IQVRCatalogImage> image;
    ASSERT_EQ(catalog->createLink(newURL(catalog, "a.pdf", "en"), &link), S_OK);
    ASSERT_EQ(catalog->createDocument(newURL(catalog, "b.pdf", "en"), "Manual", &document), S_OK);
    ASSERT_EQ(catalog->createImage(newURL(catalog, "c.png", "en"), &image), S_OK);
    Ref<IQVRCatalogURL> another = newURL(catalog, "x", "en"), de = newURL(catalog, "d", "de");
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

    // Other languages, and URLs without one, stand side by side.
    ASSERT_EQ(link->appendChild(de, nullptr), S_OK);
    ASSERT_EQ(link->appendChild(newURL(catalog, "e.pdf"), nullptr), S_OK);
    ASSERT_EQ(link->appendChild(newURL(catalog, "f.pdf"), nullptr), S_OK);
    EXPECT_EQ(childTags(link), "URL URL URL URL");
    listener.take();

    // A language a sibling holds is refused, its own passes and is told; codes of the wrong
    // shape change nothing; the empty text removes the language.
    EXPECT_EQ(de->put_lang("en"), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    ASSERT_EQ(de->put_lang("de"), S_OK);
    EXPECT_EQ(listener.take(), "changed #30");
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

// Every container of the content: what it takes, and whether it keeps its last child.
TEST(Containers, TakeTheirOwnKindAndGuardedOnesKeepTheirLastChild) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    // The further files of a view are made by the table; here straight in the catalog.
    auto referencedFiles = [](C c) {
        Ref<IXMLDOMDocument> dom;
        Ref<CQVRCatalogReferencedFiles> files;
        EXPECT_EQ(elementOf(c)->get_ownerDocument(&dom), S_OK);
        EXPECT_EQ(createNewWrapper<CQVRCatalogReferencedFiles>(dom, c, &files), S_OK);
        EXPECT_EQ(files->appendChild(url(c, "x.dwg"), nullptr), S_OK);
        return Made(files->self());
    };
    const struct {
        const char* tag;
        Made container, stray; // the stray is of the kind the container takes (guarded ones)
        const char* wrongKind;
    } containers[] = {
        {"Link", link(catalog), url(catalog, "b.pdf"),
         "You can only append URL's as a child of this object."},
        {"Image", image(catalog), url(catalog, "b.png"),
         "You can only append URL's as a child of this object."},
        {"Document", document(catalog), url(catalog, "b.pdf"),
         "You can only append URL's as a child of this object."},
        {"ReferencedFiles", referencedFiles(catalog), url(catalog, "y.dwg"),
         "You can only append URL's as a child of this object."},
        {"Images", images(catalog), image(catalog),
         "You can only append an Image as a child of this object."},
        {"Documents", documents(catalog), document(catalog),
         "You can only append a Document as a child of this object."},
        {"Classifications", classifications(catalog), classObject(catalog),
         "You can only append childs from type Class."},
        {"Availability", availability(catalog), countryCode(catalog, "FR"),
         "You can only append CountryCodes as a child of this object."},
        {"SupplierIDs", supplierIds(catalog), supplierId(catalog),
         "You can only append SupplierID as a child of this object."},
        {"ECommerceCenterIDs", centerIds(catalog), centerId(catalog),
         "You can only append ECommerceCenterID as a child of this object."},
        {"PostalAddress", postalAddress(catalog), street(catalog),
         "You can only append Street-Objects as a child of this object."},
        {"Extrinsics", extrinsics(catalog), nullptr,
         "You can only append a Extrinsic as child of this object."},
        {"OrderMethods", orderMethods(catalog), nullptr,
         "You can only append OrderMethod as a child of this object."},
        {"Supplier", supplier(catalog), nullptr,
         "You can only append SupplierLoation objects as a child of this object."},
    };
    const Made stranger = newChapter(catalog, "Stranger");
    Listener listener(catalog);
    for (const auto& c : containers) {
        SCOPED_TRACE(c.tag);
        const std::string before = childTags(c.container);
        EXPECT_EQ(c.container->appendChild(stranger, nullptr), E_FAIL);
        EXPECT_EQ(lastError(), c.wrongKind);
        if (c.stray) {
            // The only child stays, also when the object given is not that child.
            const Made only = childAt(c.container, 1);
            for (IQVRCatalogObject* child : {c.stray.get(), only.get()}) {
                EXPECT_EQ(c.container->removeChild(child, nullptr), E_FAIL);
                EXPECT_EQ(lastError(), "You can't remove the last child of this object.");
            }
            EXPECT_EQ(childTags(c.container), before);
            EXPECT_EQ(listener.take(), "");
        } else {
            while (Made first = childAt(c.container, 1))
                ASSERT_EQ(c.container->removeChild(first, nullptr), S_OK);
            EXPECT_EQ(childAt(c.container, 1), nullptr);
        }
    }

    // With a second child, the first can go.
    Made link1 = containers[0].container, only = childAt(link1, 1);
    ASSERT_EQ(link1->appendChild(newURL(catalog, "c.pdf", "de"), nullptr), S_OK);
    ASSERT_EQ(link1->removeChild(only, nullptr), S_OK);
    EXPECT_EQ(childTags(link1), "URL");

    // The factories pass a refusal on: no container is born empty.
    Ref<IQVRCatalogImage> none;
    Ref<IQVRCatalogDocument> wrong;
    Ref<IQVRCatalogURL> noUrl;
    EXPECT_EQ(catalog->createImage(nullptr, &none), E_POINTER);
    EXPECT_EQ(catalog->createDocument(containers[2].container, "x", &wrong), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append URL's as a child of this object.");
    EXPECT_EQ(catalog->createURL("a", "b", nullptr, &noUrl), E_INVALIDARG);
    EXPECT_EQ(catalog->createURL("a", "b", "EN", &noUrl), E_FAIL);
    EXPECT_FALSE(none || wrong || noUrl);
}

} // namespace
} // namespace qvr::testing
