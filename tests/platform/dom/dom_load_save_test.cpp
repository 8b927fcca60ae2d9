#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/error_record.h"
#include "common/temp_files.h"
#include "dom_test_support.h"
#include "platform/file/file_calls.h"

namespace qvr {
namespace {

using namespace qvr::testing;
namespace fs = std::filesystem;

class DomLoadSave : public TempFiles {
protected:
    void SetUp() override {
        TempFiles::SetUp();
        ASSERT_EQ(CreateDOMDocument(&doc_), S_OK);
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

    const std::string out = (dir / "out.xml").string();
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
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir)) ++files;
    EXPECT_EQ(files, 2u);
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
    EXPECT_EQ(doc_->load(Variant((dir / "missing.xml").string()), &ok), S_FALSE);
    EXPECT_EQ(ok, VARIANT_FALSE);
    EXPECT_EQ(parseError().code, HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(doc_->load(Variant(dir.string()), &ok), S_FALSE); // a folder
    EXPECT_EQ(parseError().code, E_ACCESSDENIED);
    EXPECT_EQ(doc_->load(Variant("http://example.com/a.xml"), &ok), S_FALSE); // never fetched
    EXPECT_EQ(parseError().code, E_ACCESSDENIED);
    EXPECT_EQ(doc_->load(Variant(std::int32_t{3}), &ok), E_INVALIDARG);
    EXPECT_EQ(parseError().reason, "The source is neither a file path nor a file: URL.");
    EXPECT_EQ(doc_->load(Variant(""), &ok), E_INVALIDARG);
    EXPECT_EQ(doc_->save(Variant()), E_INVALIDARG);
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
    // The same expanded in an attribute value, which the parser itself would build.
    bomb.replace(bomb.find("<r>&a11;</r>"), 12, "<r a='&a11;'/>");
    EXPECT_EQ(doc_->loadXML(bomb, &ok), S_FALSE);
    EXPECT_NE(parseError().reason.find("Entities expand to more than"), std::string::npos);

    // Entities may be used as long as they stay in proportion to the document.
    ASSERT_EQ(doc_->loadXML("<!DOCTYPE r [<!ENTITY e 'five'>]><r a='&e;&e;'>&e;&e;</r>", &ok),
              S_OK);
    EXPECT_EQ(textOf(doc_), "fivefive");

    std::string deep;
    for (int i = 0; i < 1025; ++i) deep += "<a>";
    for (int i = 0; i < 1025; ++i) deep += "</a>";
    EXPECT_EQ(doc_->loadXML(deep, &ok), S_FALSE);
    EXPECT_EQ(parseError().reason,
              "Elements nest deeper than 1024 levels: the document is refused");
    EXPECT_EQ(doc_->loadXML(deep.substr(3, deep.size() - 7), &ok), S_OK);
}

TEST_F(DomLoadSave, TextThatXmlCannotCarryIsRefusedWhereItEnters) {
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->loadXML("<r a='old'>old</r>", &ok), S_OK);
    Ref<IXMLDOMElement> root = elementAt(doc_, "/r");
    Ref<IXMLDOMNode> attribute = selectOne(doc_, "/r/@a");
    const struct {
        std::string text;
        const char* fault;
    } refused[] = {
        {"ab\x01", "U+0001 at character 3"},
        {"\xC3\xA4\xEF\xBF\xBE", "U+FFFE at character 2"},
        {"x\xED\xA0\x80", "U+D800 at character 2"}, // a lone surrogate
        {"ok\xFF", "the byte 0xFF (not UTF-8) at byte 3"},
        {std::string("a\0b", 3), "U+0000 at character 2"},
    };
    for (const auto& [text, fault] : refused) {
        const String value(text.data(), text.size());
        EXPECT_EQ(root->setAttribute("b", value), E_INVALIDARG) << fault;
        EXPECT_EQ(lastError(), std::string("The value of attribute \"b\" holds ") + fault +
                                   ", which XML cannot carry.");
        EXPECT_EQ(attribute->put_text(value), E_INVALIDARG);
        EXPECT_NE(lastError().find(fault), std::string::npos);
        EXPECT_EQ(root->put_text(value), E_INVALIDARG);
        EXPECT_EQ(lastError(),
                  std::string("The text holds ") + fault + ", which XML cannot carry.");
        Ref<IXMLDOMNode> node;
        EXPECT_EQ(doc_->createTextNode(value, &node), E_INVALIDARG);
    }
    Ref<IXMLDOMNode> node;
    EXPECT_EQ(doc_->createComment("a--b", &node), E_INVALIDARG);
    EXPECT_EQ(lastError(), "The comment holds \"--\" at character 2, which XML cannot carry.");
    EXPECT_EQ(doc_->createComment("a-", &node), E_INVALIDARG);
    EXPECT_EQ(doc_->createProcessingInstruction("pi", "x?>", &node), E_INVALIDARG);
    EXPECT_EQ(root->setAttribute(String("b\0c", 3), "v"), E_FAIL);
    EXPECT_EQ(xmlOf(doc_), "<?xml version=\"1.0\"?>\n<r a=\"old\">old</r>\n");

    // What XML carries passes and loads back: white space, characters beyond U+FFFF.
    const String allowed("\t\r\n\xF0\x9F\x94\xA9 \xEF\xBF\xBD");
    ASSERT_EQ(root->setAttribute("b", allowed), S_OK);
    ASSERT_EQ(root->put_text(allowed), S_OK);
    const std::string path = (dir / "allowed.xml").string();
    ASSERT_EQ(doc_->save(Variant(path)), S_OK);
    ASSERT_EQ(doc_->load(Variant(path), &ok), S_OK);
    EXPECT_EQ(attributeOf(elementAt(doc_, "/r"), "b"), allowed.str());
    EXPECT_EQ(textOf(doc_), allowed.str());
}

// Stands in for the system, failing one call of a save as a full disk or a failing device would,
// and writing down the calls in their order.
class FailingCalls : public file::FileCalls {
public:
    std::string failing; // "write", "fsync", "rename": the call that fails
    int error = 0;
    std::vector<std::string> calls;

    int open(const char* path, int flags, mode_t mode) override {
        calls.push_back((flags & O_DIRECTORY) ? "open folder"
                                              : "open " + fs::path(path).filename().string());
        return FileCalls::open(path, flags, mode);
    }
    ssize_t write(int fd, const void* data, std::size_t size) override {
        calls.push_back("write");
        // Half the data reach the file before the disk is full.
        if (failing == "write" && calls.size() > 2) return fail();
        return FileCalls::write(fd, data, failing == "write" ? size / 2 : size);
    }
    int fsync(int fd) override {
        calls.push_back("fsync");
        return failing == "fsync" ? fail() : FileCalls::fsync(fd);
    }
    int close(int fd) override {
        calls.push_back("close");
        return FileCalls::close(fd);
    }
    int rename(const char* from, const char* to) override {
        calls.push_back("rename");
        return failing == "rename" ? fail() : FileCalls::rename(from, to);
    }

private:
    int fail() {
        errno = error;
        return -1;
    }
};

TEST_F(DomLoadSave, ASaveReachesTheDiskWholeOrLeavesTheOldFile) {
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->loadXML("<r>new</r>", &ok), S_OK);
    const std::string path = write("doc.xml", "<r>old</r>");

    FailingCalls calls;
    {
        file::FileCalls::Scope scope(calls);
        ASSERT_EQ(doc_->save(Variant(path)), S_OK);
    }
    // The data are flushed before the rename, the folder after it.
    ASSERT_EQ(calls.calls.size(), 8u);
    EXPECT_EQ(calls.calls[0].rfind("open .doc.xml.qvr-save-", 0), 0u) << calls.calls[0];
    EXPECT_EQ(calls.calls[0].size(), std::string("open .doc.xml.qvr-save-XXXXXX").size());
    const std::vector<std::string> rest(calls.calls.begin() + 1, calls.calls.end());
    EXPECT_EQ(rest, (std::vector<std::string>{"write", "fsync", "close", "rename", "open folder",
                                              "fsync", "close"}));

    const struct {
        const char* failing;
        int error;
        HRESULT status;
        const char* reason;
    } faults[] = {
        {"write", ENOSPC, STG_E_MEDIUMFULL, "There is not enough space on the disk."},
        {"fsync", EIO, STG_E_WRITEFAULT, "The device does not work as it should."},
        {"rename", EACCES, E_ACCESSDENIED, "Access is denied."},
    };
    ASSERT_EQ(doc_->loadXML("<r>newer</r>", &ok), S_OK);
    for (const auto& fault : faults) {
        calls.failing = fault.failing;
        calls.error = fault.error;
        file::FileCalls::Scope scope(calls);
        EXPECT_EQ(doc_->save(Variant(path)), fault.status) << fault.failing;
        EXPECT_EQ(lastError(), "The file " + path + " cannot be saved: " + fault.reason + " (" +
                                   std::strerror(fault.error) + ")");
        EXPECT_EQ(read(path), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>new</r>\n");
        EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
    }
}

// A document larger than one read or one write: saved in several writes that make it whole (the
// same bytes a small document is written with in one), read back whole, and an error far into
// such a file located by reading the file back.
TEST_F(DomLoadSave, LargeDocumentsAreWrittenAndReadWhole) {
    std::string xml = "<vCATTable><ColumnUnique id='C0'>";
    for (int i = 0; i < 6000; ++i)
        xml +=
            "<RowUnique id='R" + std::to_string(i) + "'>key " + std::to_string(i) + "</RowUnique>";
    xml += "</ColumnUnique></vCATTable>";
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->loadXML(xml, &ok), S_OK);
    const std::string path = file("large.xml");
    FailingCalls calls;
    {
        file::FileCalls::Scope scope(calls);
        ASSERT_EQ(doc_->save(Variant(path)), S_OK);
    }
    EXPECT_GE(std::count(calls.calls.begin(), calls.calls.end(), "write"), 3);
    const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vCATTable>\n";
    EXPECT_EQ(read(path).substr(0, head.size()), head);

    String expected;
    ASSERT_EQ(doc_->get_xml(&expected), S_OK);
    Ref<IXMLDOMDocument> again;
    ASSERT_EQ(CreateDOMDocument(&again), S_OK);
    ASSERT_EQ(again->load(Variant(path), &ok), S_OK);
    String saved;
    ASSERT_EQ(again->get_xml(&saved), S_OK);
    EXPECT_EQ(saved, expected);
    Ref<IXMLDOMNodeList> rows;
    ASSERT_EQ(again->selectNodes("/vCATTable/ColumnUnique/RowUnique", &rows), S_OK);
    std::int32_t length = 0;
    rows->get_length(&length);
    EXPECT_EQ(length, 6000);
    EXPECT_EQ(textOf(selectOne(again, "/vCATTable/ColumnUnique/RowUnique[. = 'key 5999']")),
              "key 5999");

    xml.insert(xml.size() - 30, "\n<bad attr=1>\n");
    EXPECT_EQ(doc_->load(Variant(write("large-bad.xml", xml)), &ok), S_FALSE);
    EXPECT_EQ(parseError().line, 2);
    EXPECT_EQ(parseError().srcText, "<bad attr=1>");
}

TEST_F(DomLoadSave, ASaveWritesThroughLinks) {
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(doc_->loadXML("<r>new</r>", &ok), S_OK);
    // Through a link (a relative one, in another folder): the file it names is replaced and
    // keeps its mode and owner, the link stays a link.
    fs::create_directories(dir / "data");
    const std::string target = write("data/real.xml", "<r>old</r>");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(target.c_str(), 4321, 4321), 0);
    }
    const fs::path link = dir / "link.xml";
    fs::create_symlink("data/real.xml", link);
    ASSERT_EQ(doc_->save(Variant(link.string())), S_OK);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(read(target), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>new</r>\n");
    struct stat info {};
    ASSERT_EQ(::stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    if (root) {
        EXPECT_EQ(info.st_uid, 4321u);
    }
}

} // namespace
} // namespace qvr
