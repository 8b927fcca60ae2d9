#include <algorithm>
#include <map>
#include <memory_resource>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dom/text_table.h"

namespace qvr {
namespace {

// Random additions and removals over a few hundred texts, short and long, leave the table holding
// exactly what a plain map holds: through its growth, through runs of slots that wrap past the
// end, and through the moves that close the gap a removed text leaves; every element is held with
// its parent.
TEST(TextTable, HoldsWhatAMapHoldsThroughGrowthAndRemovals) {
    std::pmr::unsynchronized_pool_resource pool;
    dom::TextTable table(&pool);
    std::map<std::string, std::vector<xmlNodePtr>> expected;
    std::mt19937 random(7);
    auto textOf = [](unsigned n) {
        // Every fourth text is longer than a slot holds.
        return (n % 4 == 0 ? std::string(40, 'L') : std::string()) + "R" + std::to_string(n);
    };
    // Three elements, two below one parent and one below another.
    xmlNodePtr parents[2] = {xmlNewNode(nullptr, BAD_CAST "P"), xmlNewNode(nullptr, BAD_CAST "Q")};
    xmlNodePtr elements[3];
    for (int i = 0; i < 3; ++i)
        elements[i] = xmlNewChild(parents[i / 2], nullptr, BAD_CAST "E", nullptr);
    auto matches = [&] {
        if (table.size() != expected.size()) return false;
        for (unsigned n = 0; n < 400; ++n) {
            std::vector<xmlNodePtr> got;
            for (const auto& entry : table.find(textOf(n))) {
                if (entry.parent != entry.node->parent) return false;
                got.push_back(entry.node);
            }
            std::vector<xmlNodePtr> want;
            if (auto at = expected.find(textOf(n)); at != expected.end()) want = at->second;
            std::sort(got.begin(), got.end());
            std::sort(want.begin(), want.end());
            if (got != want) return false;
        }
        return true;
    };
    for (int step = 0; step < 20000; ++step) {
        // Texts fill up first, then come and go about evenly.
        const unsigned n = random() % (step < 3000 ? 400 : 300);
        const std::string text = textOf(n);
        auto& nodes = expected[text];
        const xmlNodePtr node = elements[random() % 3];
        if (random() % 2 != 0 || step < 3000) {
            table.add(text, node);
            nodes.push_back(node);
        } else {
            table.remove(text, node);
            if (auto at = std::find(nodes.begin(), nodes.end(), node); at != nodes.end())
                nodes.erase(at);
        }
        if (nodes.empty()) expected.erase(text);
        if (step % 500 == 0) {
            ASSERT_TRUE(matches()) << "step " << step;
        }
    }
    EXPECT_TRUE(matches());
    table.clear();
    EXPECT_EQ(table.size(), 0u);
    EXPECT_TRUE(table.find(textOf(1)).empty());

    // Enough texts for slots of several megabytes, which come from large pages, through two
    // growths: each text keeps its element, and all go again.
    for (unsigned n = 0; n < 60000; ++n) table.add(textOf(n), elements[n % 3]);
    bool all = table.size() == 60000;
    for (unsigned n = 0; n < 60000 && all; ++n) {
        const auto found = table.find(textOf(n));
        all = found.size() == 1 && found[0].node == elements[n % 3];
    }
    EXPECT_TRUE(all);
    for (unsigned n = 0; n < 60000; ++n) table.remove(textOf(n), elements[n % 3]);
    EXPECT_EQ(table.size(), 0u);
    xmlFreeNode(parents[0]);
    xmlFreeNode(parents[1]);
}

} // namespace
} // namespace qvr
