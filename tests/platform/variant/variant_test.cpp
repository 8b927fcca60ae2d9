#include <qvr/variant.h>

#include <gtest/gtest.h>

#include "variant_values.h"

namespace qvr {
namespace {

TEST(Variant, CopiesAndMovesKeepTypeAndValue) {
    std::vector<Variant> values = {Empty(),
                                   Null(),
                                   I2(-3),
                                   I4(70000),
                                   R8(2.5),
                                   Str(""),
                                   Str("long enough to live on the heap, not inline"),
                                   Variant(String()),
                                   Bool(true),
                                   Date(36527),
                                   Variant::missing(),
                                   Variant::array({I2(1), Str("two")}, 1)};
    for (const Variant& v : values) {
        SCOPED_TRACE(v.vt());
        Variant copy(v);
        EXPECT_EQ(copy, v);
        Variant moved(std::move(copy));
        EXPECT_EQ(moved, v);
        EXPECT_TRUE(copy.isEmpty()); // a variant moved from is Empty
        Variant assigned = I2(1);
        assigned = v;
        EXPECT_EQ(assigned, v);
        assigned = Str("replaced");
        assigned = std::move(moved);
        EXPECT_EQ(assigned, v);
    }
    EXPECT_TRUE(Variant(String()).str().isNull()); // a null string stays null
}

TEST(Variant, AccessorsOfOtherTypesAnswerNothing) {
    Variant number = R8(1.5);
    EXPECT_TRUE(number.str().isNull());
    EXPECT_EQ(number.mutableStr(), nullptr);
    EXPECT_EQ(number.object(), nullptr);
    EXPECT_TRUE(number.items().empty());
    EXPECT_EQ(number.mutableItems(), nullptr);
    EXPECT_EQ(number.lowerBound(), 0);
}

TEST(Variant, AssignsFromInsideItself) {
    // An element of an array assigned over the array that holds it.
    Variant list = Variant::array({Str("inner text that does not fit inline"), I2(2)});
    list = list.items()[0];
    EXPECT_EQ(list, Str("inner text that does not fit inline"));
    Variant nested = Variant::array({Variant::array({I2(7)})});
    nested = std::move((*nested.mutableItems())[0]);
    EXPECT_EQ(nested, Variant::array({I2(7)}));
    Variant self = Str("same");
    Variant& alias = self;
    self = alias;
    EXPECT_EQ(self, Str("same"));
    self = std::move(alias); // NOLINT: moving into itself is allowed and keeps the value
    EXPECT_EQ(self, Str("same"));
}

TEST(Variant, ArraysShareItemsUntilChanged) {
    Variant a = Variant::array({I2(1), I2(2)});
    Variant b = a;
    (*b.mutableItems())[0] = Str("changed");
    EXPECT_EQ(a.items()[0], I2(1));
    EXPECT_EQ(b.items()[0], Str("changed"));
}

} // namespace
} // namespace qvr
