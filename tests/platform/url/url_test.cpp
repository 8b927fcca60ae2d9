#include "platform/url/url.h"

#include <gtest/gtest.h>

namespace qvr {
namespace {

String toUrl(const char* path) {
    String out;
    EXPECT_EQ(url::urlFromPath(path, &out), S_OK) << path;
    return out;
}
String toPath(std::string_view u) {
    String out;
    EXPECT_EQ(url::pathFromUrl(u, &out), S_OK) << u;
    return out;
}

TEST(Url, TellsUrlsAndRelativePaths) {
    const struct {
        const char* text;
        bool isUrl, isRelative;
    } cases[] = {
        {"file:///data/x.xml", true, false},
        {"http://example.org/x", true, false},
        {"mailto:someone@example.org", true, false},
        {"C:\\data\\x.xml", false, false},
        {"/data/x.xml", false, false},
        {"\\data\\x.xml", false, false},
        {"x.xml", false, true},
        {"tables/x.xml", false, true},
        {"..\\x.xml", false, true},
        {"", false, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(url::isUrl(c.text), c.isUrl) << c.text;
        EXPECT_EQ(url::isRelative(c.text), c.isRelative) << c.text;
    }
}

TEST(Url, PathsAndUrlsRoundTrip) {
    struct Case {
        const char* path;
        const char* url;
    } cases[] = {
        {"/data/cat/catalog.xml", "file:///data/cat/catalog.xml"},
        {"/data/my cat/a b.xml", "file:///data/my%20cat/a%20b.xml"},
        {"/data/Müller/Maß.xml", "file:///data/M%C3%BCller/Ma%C3%9F.xml"},
        {"/data/100%/#1?.xml", "file:///data/100%25/%231%3F.xml"},
        {"/", "file:///"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toUrl(c.path), String(c.url));
        EXPECT_EQ(toPath(c.url), String(c.path));
    }
    // Backslashes and drive letters become a URL path; the URL reads back with slashes.
    EXPECT_EQ(toUrl("C:\\data\\a b.xml"), String("file:///C:/data/a%20b.xml"));
    EXPECT_EQ(toPath("file:///C:/data/a%20b.xml"), String("C:/data/a b.xml"));
    EXPECT_EQ(toPath("file://localhost/data/x.xml"), String("/data/x.xml"));
    EXPECT_EQ(toPath("FILE:/data/x.xml"), String("/data/x.xml"));

    String out("kept");
    EXPECT_EQ(url::urlFromPath("relative/x.xml", &out), E_INVALIDARG);
    EXPECT_TRUE(out.isNull());
    EXPECT_EQ(url::pathFromUrl("http://example.org/x", &out), E_INVALIDARG);
    EXPECT_EQ(url::pathFromUrl("file://server/share/x", &out), E_INVALIDARG);
}

TEST(Url, PathToUrlKeepsUrlsAndTurnsBackslashesOfRelativePaths) {
    String out("kept");
    EXPECT_EQ(url::pathToUrl("file:///x.xml", &out), S_FALSE);
    EXPECT_TRUE(out.isNull());
    EXPECT_EQ(url::pathToUrl("tables\\sub dir\\x.xml", &out), S_OK);
    EXPECT_EQ(out, String("tables/sub dir/x.xml"));
    EXPECT_EQ(url::pathToUrl("/data/a b.xml", &out), S_OK);
    EXPECT_EQ(out, String("file:///data/a%20b.xml"));
    EXPECT_EQ(url::pathToUrl(String(), &out), E_INVALIDARG);
    EXPECT_EQ(url::pathToUrl("x", nullptr), E_POINTER);
}

TEST(Url, SchemeAndCombine) {
    String s;
    EXPECT_EQ(url::scheme("file:///x", &s), S_OK);
    EXPECT_EQ(s, String("file"));
    EXPECT_EQ(url::scheme("HTTP://x", &s), S_OK);
    EXPECT_EQ(s, String("HTTP"));
    EXPECT_EQ(url::scheme("/x", &s), E_INVALIDARG);
    EXPECT_TRUE(s.isNull());

    EXPECT_EQ(url::combine("file:///data/cat/", "tables/t1.xml"),
              String("file:///data/cat/tables/t1.xml"));
    EXPECT_EQ(url::combine("file:///data/cat/catalog.xml", "../t1.xml"),
              String("file:///data/t1.xml"));
    EXPECT_EQ(url::combine("file:///data/cat/", "tables\\t 1.xml"),
              String("file:///data/cat/tables/t 1.xml"));
    EXPECT_EQ(url::combine("file:///data/cat/", "/abs/t.xml"), String("file:///abs/t.xml"));
    EXPECT_EQ(url::combine("file:///data/cat/", "http://h/t.xml"), String("http://h/t.xml"));
    EXPECT_EQ(url::combine("/data/cat/", "./t.xml"), String("/data/cat/t.xml"));
}

} // namespace
} // namespace qvr
