#include "core/ids.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <set>

namespace qvr {
namespace {

std::uint64_t hexValue(const String& id) {
    return std::stoull(id.str().substr(1), nullptr, 16);
}

TEST(Ids, GuidIsThirtySixCapitalsWithoutBraces) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i) {
        String id = newGuidId();
        ASSERT_EQ(id.length(), 36u);
        ASSERT_TRUE(std::regex_match(id.str(), form)) << id;
        seen.insert(id.str());
    }
    EXPECT_EQ(seen.size(), 1000u);
}

TEST(Ids, ColumnAndRowIdsAreLetterAndLowerHexOfClockPlusSharedCounter) {
    const std::regex column("C[0-9a-f]+"), row("R[0-9a-f]+");
    using namespace std::chrono;
    const auto ms = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const std::uint64_t now = 116444736000000000ull + static_cast<std::uint64_t>(ms) * 10000u;

    const std::uint32_t before = idCounter();
    String c = newColumnId();
    String r = newRowId();
    EXPECT_EQ(idCounter(), before + 2); // one counter for both
    EXPECT_TRUE(std::regex_match(c.str(), column)) << c;
    EXPECT_TRUE(std::regex_match(r.str(), row)) << r;
    // 100-nanosecond ticks since 1601: within a minute of the clock read here.
    EXPECT_NEAR(static_cast<double>(hexValue(c)), static_cast<double>(now), 600000000.0);
    EXPECT_LT(hexValue(c), hexValue(r));
}

TEST(Ids, ClockIdsNeverRepeatInATightLoop) {
    std::set<std::uint64_t> values;
    for (int i = 0; i < 20000; ++i) values.insert(hexValue(i % 2 ? newRowId() : newColumnId()));
    EXPECT_EQ(values.size(), 20000u);
}

} // namespace
} // namespace qvr
