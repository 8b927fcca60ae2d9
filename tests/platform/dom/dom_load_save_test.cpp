#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "dom_test_support.h"

namespace qvr {
namespace {

using namespace qvr::testing;
namespace fs = std::filesystem;

class DomLoadSave : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("qvr-dom-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        ASSERT_EQ(CreateDOMDocument(&doc_), S_OK);
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::string write(const char* name, const std::string& content) {
        const fs::path path = dir_ / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
    static std::string read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::stringstream all;
        all << in.rdbuf();
        return all.str();
    }
    struct Record {
        std::int32_t code = 0, line = 0, linepos = 0, filepos = 0;
        std::string url, reason, srcText;
    };
    Record parseError() {
        Ref<IXMLDOMParseError> error;
        EXPECT_EQ(doc_->get_parseError(&error), S_OK);
        Record r;
        String s;
        error->get_errorCode(&r.code);
        error->get_line(&r.line);
        error->get_linepos(&r.linepos);
        error->get_filepos(&r.filepos);
        error->get_url(&s);
        r.url = s.str();
        error->get_reason(&s);
        r.reason = s.str();
        error->get_srcText(&s);
        r.srcText = s.str();
        return r;
    }

    fs::path dir_;
    Ref<IXMLDOMDocument> doc_;
};

TEST_F(DomLoadSave, RoundTripKeepsCommentsAndProcessingInstruction) {
    const std::string path = write("in.xml", "<?xml version='1.0' encoding='UTF-8'?>\n"
                                             "<?xml-stylesheet type='text/xsl' href='s.xsl'?>\n"
                                             "<!-- (c) Fasteners Inc. -->\n"
                                             "<vCAT id='x'>\n  <Desc>Gr\xC3\xBC\xC3\x9F"
                                             "e &amp; more</Desc>\n"
                                             "  <Chapter>\n    <Part/>\n  </Chapter>\n</vCAT>\n");
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->load(Variant(path), &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    String url;
    doc_->get_url(&url);
    EXPECT_EQ(url.str(), "file://" + path);
    // Whitespace between elements is not kept.
    EXPECT_EQ(selectedValues(doc_, "/vCAT/Chapter/text()"), "");
    EXPECT_EQ(parseError().code, 0);

    const std::string out = (dir_ / "out.xml").string();
    ASSERT_EQ(doc_->save(Variant(out)), S_OK);
    EXPECT_EQ(read(out), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<?xml-stylesheet type='text/xsl' href='s.xsl'?>\n"
                         "<!-- (c) Fasteners Inc. -->\n"
                         "<vCAT id=\"x\">\n  <Desc>Gr\xC3\xBC\xC3\x9F"
                         "e &amp; more</Desc>\n"
                         "  <Chapter>\n    <Part/>\n  </Chapter>\n</vCAT>\n");
    Ref<IXMLDOMDocument> again;
    ASSERT_EQ(CreateDOMDocument(&again), S_OK);
    ASSERT_EQ(again->load(Variant(String("file://" + out)), &ok), S_OK);
    EXPECT_EQ(xmlOf(again), xmlOf(doc_));

    // Saving over a file replaces it and leaves nothing else behind.
    elementAt(again, "/vCAT")->setAttribute("id", "y");
    ASSERT_EQ(again->save(Variant(out)), S_OK);
    EXPECT_NE(read(out).find("id=\"y\""), std::string::npos);
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir_)) ++files;
    EXPECT_EQ(files, 2u);
}

TEST_F(DomLoadSave, LargeFilesAreReadWhole) {
    std::string xml = "<vCATTable><ColumnUnique id='C0'>";
    for (int i = 0; i < 5000; ++i)
        xml +=
            "<RowUnique id='R" + std::to_string(i) + "'>key " + std::to_string(i) + "</RowUnique>";
    xml += "</ColumnUnique></vCATTable>";
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->load(Variant(write("large.xml", xml)), &ok), S_OK);
    Ref<IXMLDOMNodeList> rows;
    ASSERT_EQ(doc_->selectNodes("/vCATTable/ColumnUnique/RowUnique", &rows), S_OK);
    std::int32_t length = 0;
    rows->get_length(&length);
    EXPECT_EQ(length, 5000);
    EXPECT_EQ(textOf(selectOne(doc_, "/vCATTable/ColumnUnique/RowUnique[. = 'key 4999']")),
              "key 4999");
    // An error far into a large file is located by reading the file back.
    xml.insert(xml.size() - 30, "\n<bad attr=1>\n");
    EXPECT_EQ(doc_->load(Variant(write("large-bad.xml", xml)), &ok), S_FALSE);
    EXPECT_EQ(parseError().line, 2);
    EXPECT_EQ(parseError().srcText, "<bad attr=1>");
}

TEST_F(DomLoadSave, MalformedFileGivesFullErrorRecord) {
    const std::string path = write("bad.xml", "<vCAT>\n  <Chapter>\n  <Part></Chapter>\n</vCAT>\n");
    ASSERT_EQ(doc_->loadXML("<old/>", nullptr), E_POINTER);
    VARIANT_BOOL ok = VARIANT_TRUE;
    ASSERT_EQ(doc_->loadXML("<old/>", &ok), S_OK);
    EXPECT_EQ(doc_->load(Variant(path), &ok), S_FALSE);
    EXPECT_EQ(ok, VARIANT_FALSE);
    const Record r = parseError();
    EXPECT_EQ(static_cast<std::uint32_t>(r.code), 0xC00CE000u + 76); // tag name mismatch
    EXPECT_NE(r.reason.find("Opening and ending tag mismatch"), std::string::npos) << r.reason;
    EXPECT_EQ(r.url, "file://" + path);
    EXPECT_EQ(r.line, 3);
    EXPECT_EQ(r.srcText, "  <Part></Chapter>");
    EXPECT_GT(r.linepos, 0);
    EXPECT_EQ(r.filepos, 7 + 12 + r.linepos - 1);
    // The document is empty after a failed load.
    Ref<IXMLDOMElement> root;
    EXPECT_EQ(doc_->get_documentElement(&root), S_FALSE);
    String url;
    doc_->get_url(&url);
    EXPECT_TRUE(url.isNull());

    // From text: no URL; the record is cleared by a load that works.
    EXPECT_EQ(doc_->loadXML("<a>\n<b x='1' x='2'/></a>", &ok), S_FALSE);
    EXPECT_EQ(parseError().line, 2);
    EXPECT_EQ(parseError().srcText, "<b x='1' x='2'/></a>");
    EXPECT_EQ(parseError().url, "");
    EXPECT_EQ(doc_->loadXML("", &ok), S_FALSE);
    EXPECT_NE(parseError().code, 0);
    EXPECT_EQ(doc_->loadXML("<a/>", &ok), S_OK);
    const Record clean = parseError();
    EXPECT_EQ(clean.code, 0);
    EXPECT_EQ(clean.reason, "");
    EXPECT_EQ(clean.line, 0);
}

TEST_F(DomLoadSave, SourcesThatCannotBeRead) {
    VARIANT_BOOL ok = VARIANT_TRUE;
    EXPECT_EQ(doc_->load(Variant((dir_ / "missing.xml").string()), &ok), S_FALSE);
    EXPECT_EQ(ok, VARIANT_FALSE);
    EXPECT_EQ(parseError().code, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(doc_->load(Variant(dir_.string()), &ok), S_FALSE); // a folder
    EXPECT_EQ(parseError().code, E_ACCESSDENIED);
    EXPECT_EQ(doc_->load(Variant("http://example.com/a.xml"), &ok), S_FALSE); // never fetched
    EXPECT_EQ(parseError().code, E_ACCESSDENIED);
    EXPECT_EQ(doc_->load(Variant(std::int32_t{3}), &ok), E_INVALIDARG);
    EXPECT_EQ(doc_->load(Variant(""), &ok), E_INVALIDARG);
    EXPECT_EQ(doc_->save(Variant()), E_INVALIDARG);
    EXPECT_EQ(doc_->save(Variant((dir_ / "no" / "such" / "dir.xml").string())),
              HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
}

TEST_F(DomLoadSave, EntitiesAreNeitherFetchedNorExpandedWithoutLimit) {
    const std::string secret = write("secret.txt", "SECRET");
    VARIANT_BOOL ok = VARIANT_FALSE;
    const std::string external =
        "<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + secret + "'>]><r>&e;</r>";
    ASSERT_EQ(doc_->loadXML(external, &ok), S_OK);
    EXPECT_EQ(textOf(doc_).find("SECRET"), std::string::npos);

    std::string bomb = "<!DOCTYPE r [<!ENTITY a0 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'>";
    for (int i = 1; i < 12; ++i)
        bomb += "<!ENTITY a" + std::to_string(i) + " '" + [&] {
            std::string refs;
            for (int k = 0; k < 10; ++k) refs += "&a" + std::to_string(i - 1) + ";";
            return refs;
        }() + "'>";
    bomb += "]><r>&a11;</r>";
    EXPECT_EQ(doc_->loadXML(bomb, &ok), S_FALSE);
    EXPECT_NE(parseError().code, 0);
}

} // namespace
} // namespace qvr
