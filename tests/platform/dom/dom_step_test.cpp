// Walking a column's cells in step: only elements of the asked name with the asked attribute stop
// the walk, and an element made for the caller is the one whose value matches. Writing cells in
// step: an element appended whole, or nothing at all.
#include <gtest/gtest.h>

#include "dom_test_support.h"
#include "platform/dom/element_append.h"
#include "platform/dom/selection.h"

namespace qvr {
namespace {

using namespace qvr::testing;
using dom::Selection;

TEST(DomStep, StopsAtTheNextElementOfTheNameWithTheAttribute) {
    const auto doc = parseXml(
        "<Column><Row idref='a'>1</Row><x:Row xmlns:x='urn:x' idref='b'/><Other idref='b'/>"
        "<!-- note --><Row>none</Row><Row idref='b'>2</Row><Row idref='c'>3</Row></Column>"
        "<!-- after -->");
    const Ref<IXMLDOMNode> column = selectOne(doc, "/Column");
    struct Step {
        const char* after; // the node to walk on from; null: from the first child
        const char* tag;
        const char* value;
        HRESULT status;
        bool equal;
        const char* found; // the text of the element handed out; null: none
    };
    const Step steps[] = {
        {nullptr, "Row", "a", S_OK, true, "1"},
        // Another namespace's prefix, another name, a comment and a Row without idref: passed.
        {"/Column/Row[1]", "Row", "b", S_OK, true, "2"},
        // The next cell names another row: it stays, and no object is made for it.
        {"/Column/Row[3]", "Row", "b", S_OK, false, nullptr},
        {"/Column/Row[4]", "Row", "c", S_FALSE, false, nullptr},
        // The name as the node gives it, prefix and all.
        {nullptr, "x:Row", "b", S_OK, true, ""},
        {"/Column/Row[1]", "Other", "b", S_OK, true, ""},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(std::string(step.tag) + " " + step.value);
        const Ref<IXMLDOMNode> after = step.after ? selectOne(doc, step.after) : nullptr;
        Ref<IXMLDOMNode> found;
        bool equal = true;
        EXPECT_EQ(Selection::nextChildWithAttribute(column, after, step.tag, "idref", step.value,
                                                    &found, &equal),
                  step.status);
        EXPECT_EQ(equal, step.equal);
        if (step.found)
            EXPECT_EQ(found ? textOf(found) : "(none)", step.found);
        else
            EXPECT_FALSE(found);
    }
    // A node that is no child of the parent is refused.
    Ref<IXMLDOMNode> found;
    bool equal = false;
    EXPECT_EQ(
        Selection::nextChildWithAttribute(column, column, "Row", "idref", "a", &found, &equal),
        E_INVALIDARG);
}

TEST(DomStep, AppendsAWholeElementOrNothing) {
    const auto doc = parseXml("<Column><Row idref='a'>1</Row></Column>");
    const Ref<IXMLDOMNode> column = selectOne(doc, "/Column");
    using dom::ElementAppend;
    EXPECT_EQ(ElementAppend::textElement(column, "Row", "idref", "b", "2.5"), S_OK);
    EXPECT_EQ(xmlOf(column), "<Column><Row idref=\"a\">1</Row><Row idref=\"b\">2.5</Row></Column>");
    // The new cell is found by the lookup tables like any other.
    EXPECT_EQ(textOf(selectOne(column, "*[@idref = 'b']")), "2.5");
    EXPECT_EQ(ElementAppend::textElement(column, "Row", "idref", "c", "bad \x01"), E_INVALIDARG);
    EXPECT_EQ(ElementAppend::textElement(column, "Row", "idref", "c\x02", "3"), E_INVALIDARG);
    EXPECT_EQ(ElementAppend::textElement(column, "1Row", "idref", "c", "3"), E_FAIL);
    EXPECT_EQ(ElementAppend::textElement(doc, "Row", "idref", "c", "3"), E_INVALIDARG);
    EXPECT_EQ(ElementAppend::textElement(nullptr, "Row", "idref", "c", "3"), E_INVALIDARG);
    EXPECT_EQ(xmlOf(column), "<Column><Row idref=\"a\">1</Row><Row idref=\"b\">2.5</Row></Column>");
}

} // namespace
} // namespace qvr
