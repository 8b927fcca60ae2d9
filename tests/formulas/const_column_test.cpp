// Const columns: one value for all rows, a float one kept with a decimal point and shown in the
// user's notation.
#include "formulas/formula_fixture.h"

namespace qvr::testing {
namespace {

// The user's locale for one scope.
class UserLocale {
public:
    explicit UserLocale(LCID lcid) : saved_(GetUserLocale()) { SetUserLocale(lcid); }
    ~UserLocale() { SetUserLocale(saved_); }

private:
    LCID saved_;
};

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

    {
        UserLocale german(LCID_DE_DE);
        ASSERT_EQ(density->put_constant("7,85"), S_OK);
        EXPECT_EQ(stored(density), "7.85");
        String shown;
        ASSERT_EQ(density->get_constant(&shown), S_OK);
        EXPECT_EQ(shown, "7,85");
        // A text that is no number stays as it is, both ways.
        ASSERT_EQ(density->put_constant("steel"), S_OK);
        EXPECT_EQ(stored(density), "steel");
        ASSERT_EQ(density->get_constant(&shown), S_OK);
        EXPECT_EQ(shown, "steel");
    }
    ASSERT_EQ(density->put_constant("1234.5"), S_OK);
    String shown;
    ASSERT_EQ(density->get_constant(&shown), S_OK);
    EXPECT_EQ(shown, "1234.5");
    EXPECT_EQ(listener.take(), "changed Density | changed Density | changed Density");

    // Any other type is stored and shown as given.
    Ref<IQVRTableConstColumn> count = addConstColumn(table, "Count", qvrDataTypeInt, "");
    UserLocale german(LCID_DE_DE);
    ASSERT_EQ(count->put_constant("1,5"), S_OK);
    EXPECT_EQ(stored(count), "1,5");
    ASSERT_EQ(count->get_constant(&shown), S_OK);
    EXPECT_EQ(shown, "1,5");
    EXPECT_EQ(count->get_constant(nullptr), E_POINTER);
}

TEST(ConstColumn, IsALeafOfTheColumnFamily) {
    Ref<IQVRCatalogTable> table = newTable();
    Ref<IQVRTableConstColumn> density = addConstColumn(table, "Density", qvrDataTypeFloat, "7.85");
    QVRObjectType type = qvrCatalog;
    ASSERT_EQ(density->get_objectType(&type), S_OK);
    EXPECT_EQ(type, qvrConstColumn);
    Ref<IQVRCatalogObjectList> children;
    EXPECT_EQ(density->get_childNodes(&children), S_FALSE);
    EXPECT_FALSE(children);
    Ref<IQVRTableCell> cell;
    ASSERT_EQ(table->createCell("A-10", Variant(1.0), &cell), S_OK);
    Ref<IQVRCatalogObject> inserted;
    EXPECT_EQ(density->insertBefore(cell, Variant(), &inserted), S_FALSE);
    EXPECT_EQ(density->removeChild(cell, nullptr), S_FALSE);
    EXPECT_EQ(rowKeys(table), "");

    // An absent constant reads as S_FALSE with the text untouched.
    Ref<IXMLDOMElement> element;
    ASSERT_EQ(density->get_domNode(&element), S_OK);
    ASSERT_EQ(element->removeAttribute("constant"), S_OK);
    String constant("kept");
    EXPECT_EQ(density->get_constant(&constant), S_FALSE);
    EXPECT_EQ(constant, "kept");

    // A copy has a new id, the same constant.
    ASSERT_EQ(density->put_constant("8"), S_OK);
    Ref<IQVRCatalogObject> copy;
    ASSERT_EQ(density->cloneNode(VARIANT_TRUE, &copy), S_OK);
    EXPECT_NE(keyOf(copy), keyOf(density));
    EXPECT_EQ(stored(copy), "8");
}

} // namespace
} // namespace qvr::testing
