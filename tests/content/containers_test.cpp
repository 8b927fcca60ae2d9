// What the containers of the content share: the kind of child each takes, the last child the
// guarded ones keep, and one child per key where the children have one.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"
#include "content/media.h"
#include "core/object_factory.h"

namespace qvr::testing {
namespace {

using namespace elements;

// Every container of the content: what it takes, and whether it keeps its last child.
TEST(Containers, TakeTheirOwnKindAndGuardedOnesKeepTheirLastChild) {
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
        Made container;
        Made stray; // of the kind it takes for a guarded container; none where it can be emptied
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

// A second child of a key is refused, when it is inserted and when a sibling takes its key; a
// child's own key passes again and is heard.
TEST(Containers, TakeOneChildPerKey) {
    Ref<IQVRCatalog> catalog = newCatalog();
    // The key of a child is its domain, its country code or its language.
    auto domain = [](IQVRCatalogObject* o, const char* key) {
        Ref<IQVRCatalogClass> c = query<IQVRCatalogClass>(o);
        Ref<IQVRCatalogSupplierID> s = query<IQVRCatalogSupplierID>(o);
        return c   ? c->put_domain(key)
               : s ? s->put_domain(key)
                   : query<IQVRCatalogECommerceCenterID>(o)->put_domain(key);
    };
    auto code = [](IQVRCatalogObject* o, const char* key) {
        return query<IQVRCatalogCountryCode>(o)->put_isoCountryCode(key);
    };
    auto language = [](IQVRCatalogObject* o, const char* key) {
        return query<IQVRCatalogURL>(o)->put_lang(key);
    };
    const struct {
        const char* tag;
        Made container; // holding a child of the key `first`
        std::function<Made(C, const char*)> child;
        std::function<HRESULT(IQVRCatalogObject*, const char*)> rekey;
        const char *first, *second;
        bool reports = true; // an insertion: a message and E_FAIL, or QVR_E_DUPLICATE alone
    } containers[] = {
        {"Classifications", classifications(catalog),
         [](C c, const char* k) { return classObject(c, k); }, domain, "ETIM", "eCl@ss"},
        {"Availability", availability(catalog),
         [](C c, const char* k) { return countryCode(c, k); }, code, "DE", "FR"},
        {"SupplierIDs", supplierIds(catalog), [](C c, const char* k) { return supplierId(c, k); },
         domain, "DUNS", "VAT"},
        {"ECommerceCenterIDs", centerIds(catalog),
         [](C c, const char* k) { return centerId(c, k); }, domain, "GLN", "DUNS"},
        {"Link", link(catalog), [](C c, const char* k) { return url(c, "x.pdf", k); }, language,
         "en", "de"},
        {"Document", document(catalog), [](C c, const char* k) { return url(c, "x.pdf", k); },
         language, "en", "de"},
        {"Image", image(catalog), [](C c, const char* k) { return url(c, "x.png", k); }, language,
         "en", "de", false},
    };
    Listener listener(catalog);
    for (const auto& c : containers) {
        SCOPED_TRACE(c.tag);
        const Made other = c.child(catalog, c.second), twin = c.child(catalog, c.first);
        ASSERT_EQ(c.container->appendChild(other, nullptr), S_OK);
        const std::string before = childTags(c.container);
        listener.take();
        const HRESULT inserted = c.container->appendChild(twin, nullptr);
        EXPECT_EQ(inserted, c.reports ? E_FAIL : QVR_E_DUPLICATE);
        EXPECT_EQ(lastError(), c.reports ? "A child with the same id already exists." : "");
        EXPECT_EQ(c.rekey(other, c.first), E_FAIL);
        EXPECT_EQ(lastError(), "A child with the same id already exists.");
        EXPECT_EQ(keyOf(other), c.second);
        EXPECT_EQ(childTags(c.container), before);
        EXPECT_EQ(listener.take(), "");
        EXPECT_EQ(c.rekey(other, c.second), S_OK);
        EXPECT_NE(listener.take(), "");
    }
}

} // namespace
} // namespace qvr::testing
