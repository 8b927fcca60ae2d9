// The demo: a small catalog built through the public API, the events a listener heard while it
// was built, and the document that came out.
#include <cstdio>
#include <string>
#include <vector>

#include <qvr/catalog.h>
#include <qvr/qvr.h>

using namespace qvr;

namespace {

std::string nameOf(IQVRCatalogObject* object) {
    Variant name;
    return object && object->getValue("@name", &name) == S_OK ? name.str().str() : "(unnamed)";
}

// Writes down every event it hears.
class Listener final : public IQVRCatalogEvents {
public:
    std::vector<std::string> heard;

    std::uint32_t AddRef() override { return ++refs_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --refs_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant&) override {
        return note("inserted", object);
    }
    HRESULT onObjectChanged(IQVRCatalogObject* object) override { return note("changed", object); }
    HRESULT onObjectRemoved(IQVRCatalogObject* object) override { return note("removed", object); }
    HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL) override {
        return note("query", object);
    }

private:
    HRESULT note(const char* what, IQVRCatalogObject* object) {
        heard.push_back(std::string(what) + " " + nameOf(object));
        return S_OK;
    }
    std::uint32_t refs_ = 0;
};

} // namespace

int main() {
    Ref<IQVRCatalog> catalog;
    CreateCatalog(&catalog);
    Ref<Listener> listener(new Listener);
    std::uint32_t cookie = 0;
    catalog->advise(listener, &cookie);

    VARIANT_BOOL ok = VARIANT_FALSE;
    catalog->create("/tmp/qvr-demo/", "Fasteners", "en", &ok);
    catalog->put_desc("Bolts, nuts and what holds them");

    Ref<IQVRCatalogChapter> bolts, metric;
    Ref<IQVRCatalogPart> m8, m10;
    catalog->createChapter("Bolts", &bolts);
    catalog->createChapter("Metric", &metric);
    catalog->createPart("M8 x 40", &m8);
    catalog->createPart("M10 x 60", &m10);
    catalog->appendChild(bolts, nullptr);
    bolts->appendChild(metric, nullptr);
    metric->appendChild(m10, nullptr);
    metric->insertBefore(m8, Variant(std::int32_t{1}), nullptr); // ahead of M10
    m8->put_desc("Hexagon head, zinc plated");

    // A live list follows the chapter, and a deep copy gets new ids throughout.
    Ref<IQVRCatalogObjectList> parts;
    metric->get_childNodes(&parts);
    Ref<IQVRCatalogObject> copy;
    bolts->cloneNode(VARIANT_TRUE, &copy);
    m8->put_tableRef("tables/m8.xml");
    Ref<IQVRCatalogObject> removed;
    metric->removeChild(m10, &removed);

    std::printf("Events heard:\n");
    for (const std::string& event : listener->heard) std::printf("  %s\n", event.c_str());
    String sourceId, copyId;
    bolts->get_key(&sourceId);
    if (copy) copy->get_key(&copyId);
    std::printf("\nDeep copy of Bolts: id %s (the source has %s)\n", copyId.c_str(),
                sourceId.c_str());
    std::printf("Parts of Metric, from the live list:");
    for (Ref<IQVRCatalogObject> part : *parts) std::printf(" [%s]", nameOf(part).c_str());

    String xml;
    catalog->get_xml(&xml);
    std::printf("\n\nThe document:\n%s\n", xml.c_str());

    catalog->unadvise(cookie);
    parts = nullptr;
    copy = removed = nullptr;
    bolts = metric = nullptr;
    m8 = m10 = nullptr;
    catalog = nullptr;
    std::printf("Library can unload: %s\n", CanUnloadNow() == S_OK ? "yes" : "no");
    return ok == VARIANT_TRUE ? 0 : 1;
}
