// What the model's tests share: a catalog made through the public creator, a sink that writes down
// what it hears, and short readers of the error record and of the document.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <qvr/catalog.h>
#include <qvr/error_info.h>

#include "common/error_record.h"

namespace qvr::testing {

inline std::string keyOf(IQVRCatalogObject* object) {
    String key;
    if (object) object->get_key(&key);
    return key.str();
}

inline std::string nameOf(IQVRCatalogObject* object) {
    Variant name;
    return object && object->getValue("@name", &name) == S_OK ? name.str().str() : std::string();
}

// The element an object wraps.
inline Ref<IXMLDOMElement> elementOf(IQVRCatalogObject* object) {
    Ref<IXMLDOMElement> element;
    EXPECT_EQ(object->get_domNode(&element), S_OK);
    return element;
}

// The child at one-based `index` of an object's list of children; null when there is none.
inline Ref<IQVRCatalogObject> childAt(IQVRCatalogObject* object, std::int32_t index) {
    Ref<IQVRCatalogObjectList> list;
    Ref<IQVRCatalogObject> item;
    if (object && object->get_childNodes(&list) == S_OK) list->getItem(index, &item);
    return item;
}

// What the getter `get` of `object` answers, as text: the value it wrote when it answers S_OK
// ("(unwritten)" when it wrote none), "S_FALSE", or "failed" and the status. A getter checked this
// way in one line tells its status and its value together.
template <class Object, class Interface, class Value>
std::string got(Object* object, HRESULT (Interface::*get)(Value*)) {
    constexpr bool isText = std::is_same_v<Value, String>;
    Value value{};
    if constexpr (isText)
        value = String("(unwritten)");
    else
        value = static_cast<Value>(99);
    const HRESULT hr = (object->*get)(&value);
    if (hr == S_FALSE) return "S_FALSE";
    if (FAILED(hr)) return "failed " + std::to_string(hr);
    if constexpr (isText)
        return value.str();
    else
        return value == static_cast<Value>(99) ? "(unwritten)"
                                               : std::to_string(static_cast<long long>(value));
}
template <class Object, class Getter>
std::string got(const Ref<Object>& object, Getter get) {
    return got(object.get(), get);
}

// Loads a catalog document from text.
inline HRESULT loadXml(IQVRCatalog* catalog, const char* xml) {
    VARIANT_BOOL done = VARIANT_FALSE;
    return catalog->loadXML(xml, &done);
}

// The tag names of an element's children, joined by blanks.
inline std::string childTags(IQVRCatalogObject* object) {
    Ref<IXMLDOMElement> element;
    std::string tags;
    if (!object || object->get_domNode(&element) != S_OK) return tags;
    Ref<IXMLDOMNode> child;
    element->get_firstChild(&child);
    while (child) {
        String name;
        child->get_nodeName(&name);
        tags += (tags.empty() ? "" : " ") + name.str();
        Ref<IXMLDOMNode> next;
        child->get_nextSibling(&next);
        child = next;
    }
    return tags;
}

// The names of the objects of a list, joined by blanks.
inline std::string namesIn(IQVRCatalogObjectList* list) {
    std::string names;
    for (Ref<IQVRCatalogObject> item : *list) names += (names.empty() ? "" : " ") + nameOf(item);
    return names;
}

// A catalog with a document: name "Test", language "en".
inline Ref<IQVRCatalog> newCatalog(const char* name = "Test") {
    Ref<IQVRCatalog> catalog;
    EXPECT_EQ(CreateCatalog(&catalog), S_OK);
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(catalog->create("/tmp/qvr-test/", name, "en", &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    return catalog;
}

inline Ref<IQVRCatalogChapter> newChapter(IQVRCatalog* catalog, const char* name) {
    Ref<IQVRCatalogChapter> chapter;
    EXPECT_EQ(catalog->createChapter(name, &chapter), S_OK);
    return chapter;
}

inline Ref<IQVRCatalogPart> newPart(IQVRCatalog* catalog, const char* name) {
    Ref<IQVRCatalogPart> part;
    EXPECT_EQ(catalog->createPart(name, &part), S_OK);
    return part;
}

// A URL to `href` in `language` ("" for none), titled after the address.
inline Ref<IQVRCatalogURL> newURL(IQVRCatalog* catalog, const char* href,
                                  const char* language = "") {
    Ref<IQVRCatalogURL> url;
    EXPECT_EQ(catalog->createURL(href, href, language, &url), S_OK);
    return url;
}

// An image of `href`.
inline Ref<IQVRCatalogImage> newImage(IQVRCatalog* catalog, const char* href) {
    Ref<IQVRCatalogImage> image;
    EXPECT_EQ(catalog->createImage(newURL(catalog, href), &image), S_OK);
    return image;
}

// A catalog holding the chapter Top, which holds Inner, which holds the part M8.
struct NestedTree {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogChapter> top = newChapter(catalog, "Top");
    Ref<IQVRCatalogChapter> inner = newChapter(catalog, "Inner");
    Ref<IQVRCatalogPart> part = newPart(catalog, "M8");
    NestedTree() {
        EXPECT_EQ(catalog->appendChild(top, nullptr), S_OK);
        EXPECT_EQ(top->appendChild(inner, nullptr), S_OK);
        EXPECT_EQ(inner->appendChild(part, nullptr), S_OK);
    }
};

// A sink that writes each event down as "inserted Bolts @2", "changed Bolts", "removed Bolts",
// "query Bolts -1" (the subject's name, or its type number when it has none).
class RecordingSink final : public IQVRCatalogEvents {
public:
    std::vector<std::string> heard;
    // Set to make every call fail, or throw, after writing the event down.
    HRESULT answer = S_OK;
    bool throws = false;
    std::function<void()> whenCalled;
    // How a subject is written down; by default its name, or its type number without one.
    std::function<std::string(IQVRCatalogObject*)> describeWith;

    std::uint32_t AddRef() override { return ++refs_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --refs_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT onObjectInserted(IQVRCatalogObject* object, const Variant& position) override {
        std::string where;
        if (position.vt() == VT_I4) where = " @" + std::to_string(position.i4());
        if (position.vt() == VT_BSTR) where = " @" + position.str().str();
        return note("inserted " + describe(object) + where);
    }
    HRESULT onObjectChanged(IQVRCatalogObject* object) override {
        return note("changed " + describe(object));
    }
    HRESULT onObjectRemoved(IQVRCatalogObject* object) override {
        return note("removed " + describe(object));
    }
    HRESULT onObjectQuery(IQVRCatalogObject* object, VARIANT_BOOL flag) override {
        return note("query " + describe(object) + " " + std::to_string(flag));
    }

private:
    std::string describe(IQVRCatalogObject* object) const {
        if (describeWith) return describeWith(object);
        std::string name = nameOf(object);
        if (!name.empty() || !object) return name;
        QVRObjectType type;
        object->get_objectType(&type);
        return "#" + std::to_string(type);
    }
    HRESULT note(std::string text) {
        heard.push_back(std::move(text));
        if (whenCalled) whenCalled();
        if (throws) throw std::runtime_error("sink failure");
        return answer;
    }
    std::uint32_t refs_ = 0;
};

// A recording sink advised at a root (a catalog, or a table) for the life of the object.
template <class Root>
class RootListener {
public:
    explicit RootListener(Root* catalog) : catalog_(catalog), sink_(new RecordingSink) {
        EXPECT_EQ(catalog_->advise(sink_, &cookie_), S_OK);
    }
    ~RootListener() { catalog_->unadvise(cookie_); }
    RecordingSink& sink() { return *sink_; }
    // What was heard since the last call, joined by " | ".
    std::string take() {
        std::string all;
        for (const std::string& e : sink_->heard) all += (all.empty() ? "" : " | ") + e;
        sink_->heard.clear();
        return all;
    }

private:
    Ref<Root> catalog_;
    Ref<RecordingSink> sink_;
    std::uint32_t cookie_ = 0;
};

using Listener = RootListener<IQVRCatalog>;

} // namespace qvr::testing
