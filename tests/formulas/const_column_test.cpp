// Const columns: one value for all rows, a float one kept with a decimal point and shown in the
// user's notation.
#include <utility>

#include "common/user_locale.h"
#include "formulas/formula_fixture.h"

namespace qvr::testing {
namespace {

std::string stored(IQVRCatalogObject* column) {
    Variant value;
    return column->getValue("@constant", &value) == S_OK ? value.str().str() : "(none)";
}

TEST(ConstColumn, FloatConstantsUnderTheUsersLocale) {
    Ref<IQVRCatalogTable> table = newTable();
    TableListener listener(table);
    // Made with a decimal comma: stored as it stands, since no type stands yet; the change is
    // told for the new column.
    Ref<IQVRTableConstColumn> density;
    ASSERT_EQ(table->createConstColumn(qvrDataTypeFloat, "Density", "7,85", "", "", "",
                                       VARIANT_TRUE, &density),
              S_OK);
    EXPECT_EQ(stored(density), "7,85");
    EXPECT_EQ(listener.take(), "changed ");
    Ref<IQVRTableConstColumn> count = addConstColumn(table, "Count", qvrDataTypeInt, "");
    listener.take();

    // A float is stored with a point and shown in the user's notation; a text that is no
    // number, and any other type, are stored and shown as given.
    struct Case {
        IQVRTableConstColumn* column;
        LCID lcid;
        const char* given;
        const char* stored;
        const char* shown;
    } cases[] = {
        {density, LCID_DE_DE, "7,85", "7.85", "7,85"},
        {density, LCID_DE_DE, "steel", "steel", "steel"},
        {density, LCID_EN_US, "1234.5", "1234.5", "1234.5"},
        {count, LCID_DE_DE, "1,5", "1,5", "1,5"},
    };
    for (const Case& c : cases) {
        UserLocale locale(c.lcid);
        ASSERT_EQ(c.column->put_constant(c.given), S_OK);
        EXPECT_EQ(stored(c.column), c.stored) << c.given;
        String shown;
        ASSERT_EQ(c.column->get_constant(&shown), S_OK);
        EXPECT_EQ(shown, c.shown) << c.given;
    }
    EXPECT_EQ(listener.take(),
              "changed Density | changed Density | changed Density | changed Count");
    EXPECT_EQ(count->get_constant(nullptr), E_POINTER);
}

// Const and calculated columns hold no children, not even cells, and read an absent
// attribute as S_FALSE with the caller's text untouched.
using LeafColumns = BoltTable;

TEST_F(LeafColumns, HoldNoChildrenAndReadAnAbsentValueAsFalse) {
    Ref<IQVRTableCell> cell;
    ASSERT_EQ(table->createCell("A-10", Variant(1.0), &cell), S_OK);
    const std::pair<IQVRCatalogObject*, QVRObjectType> leaves[] = {
        {density.get(), qvrConstColumn}, {weight.get(), qvrCalculatedColumn}};
    for (auto [column, expected] : leaves) {
        QVRObjectType type = qvrCatalog;
        ASSERT_EQ(column->get_objectType(&type), S_OK);
        EXPECT_EQ(type, expected);
        Ref<IQVRCatalogObjectList> children;
        EXPECT_EQ(column->get_childNodes(&children), S_FALSE);
        EXPECT_FALSE(children);
        Ref<IQVRCatalogObject> inserted = column;
        EXPECT_EQ(column->insertBefore(cell, Variant(), &inserted), S_FALSE);
        EXPECT_FALSE(inserted);
        EXPECT_EQ(column->insertBefore(cell, Variant(), nullptr), E_POINTER);
        EXPECT_EQ(column->appendChild(nullptr, &inserted), E_POINTER);
        EXPECT_EQ(column->removeChild(cell, nullptr), S_FALSE);
    }
    EXPECT_EQ(rowKeys(table), "A-10 A-20 B-30");

    Ref<IXMLDOMElement> element;
    ASSERT_EQ(density->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("constant"), S_OK);
    String constant("kept");
    EXPECT_EQ(density->get_constant(&constant), S_FALSE);
    EXPECT_EQ(constant, "kept");
    ASSERT_EQ(weight->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("expression"), S_OK);
    EXPECT_EQ(weight->get_expression(&constant), S_FALSE);
    EXPECT_EQ(constant, "kept");
}

} // namespace
} // namespace qvr::testing
