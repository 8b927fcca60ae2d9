#include <qvr/string.h>

#include <gtest/gtest.h>

namespace qvr {
namespace {

TEST(String, NullAndEmptyDiffer) {
    String null, empty(""), fromNullPtr(static_cast<const char*>(nullptr));
    EXPECT_TRUE(null.isNull());
    EXPECT_TRUE(fromNullPtr.isNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_TRUE(null.isEmpty() && empty.isEmpty());
    EXPECT_NE(null, empty);
    EXPECT_EQ(null, String());
    EXPECT_EQ(String(std::string("a")), String(std::string_view("a")));
    EXPECT_LT(null, empty);
    String grown;
    grown += "x";
    EXPECT_EQ(grown, "x");
}

TEST(String, LengthCountsCodePoints) {
    EXPECT_EQ(String("").length(), 0u);
    EXPECT_EQ(String("de").length(), 2u);
    EXPECT_EQ(String("dé").length(), 2u);
    EXPECT_EQ(String("日本").length(), 2u);
    EXPECT_EQ(String("😀").length(), 1u);
    EXPECT_EQ(String("\xff\xfe").length(), 2u); // malformed bytes count one each
    EXPECT_EQ(String("\xe6\x97").length(), 2u); // truncated sequence
}

TEST(String, CaseInsensitiveComparisonFoldsUnicode) {
    EXPECT_TRUE(String("Length").equalsIgnoreCase("LENGTH"));
    EXPECT_TRUE(String("ÄRGER").equalsIgnoreCase("ärger"));
    EXPECT_FALSE(String("Length2").equalsIgnoreCase("Length"));
    EXPECT_LT(String("abc").compareIgnoreCase("ABD"), 0);
    EXPECT_GT(String("abcd").compareIgnoreCase("ABC"), 0);
    EXPECT_TRUE(String().equalsIgnoreCase(""));
}

TEST(String, LetterClassesFollowUnicode) {
    EXPECT_TRUE(isLowerLetter(U'a'));
    EXPECT_TRUE(isLowerLetter(U'ß'));
    EXPECT_FALSE(isLowerLetter(U'A'));
    EXPECT_FALSE(isLowerLetter(U'1'));
    EXPECT_TRUE(isUpperLetter(U'Ü'));
    EXPECT_FALSE(isUpperLetter(U'z'));
    EXPECT_FALSE(isUpperLetter(U'-'));
}

TEST(String, Utf16AndCodePointConversionsRoundTrip) {
    const std::string text = "Maß 😀 日本";
    EXPECT_EQ(fromUtf16(toUtf16(text)), text);
    EXPECT_EQ(toUtf16("😀").size(), 2u);
    EXPECT_EQ(fromCodePoints(toCodePoints(text)), text);
    EXPECT_EQ(fromUtf16(std::u16string(1, char16_t(0xD800))), "\xEF\xBF\xBD");
}

} // namespace
} // namespace qvr
