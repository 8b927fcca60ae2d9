// Order information: dates, availability by country, order methods and their targets.
#include <gtest/gtest.h>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"
#include "common/user_locale.h"

namespace qvr::testing {
namespace {

// The text of the child `tag` of `object`'s element, or "-" when there is none.
std::string childText(IQVRCatalogObject* object, const char* tag) {
    Variant text;
    return object->getValue(tag, &text) == S_OK ? text.str().str() : "-";
}

TEST(OrderInfo, DatesAreStoredUnderTheUsersLocaleAndReadBackAsDates) {
    Ref<IQVRCatalog> catalog = newCatalog();
    const DATE march14 = 46095.0, december31 = 46387.0; // 2026-03-14, 2026-12-31
    struct Case {
        LCID lcid;
        const char* eff;
        const char* exp;
    };
    for (const Case& c : {Case{LCID_EN_US, "3/14/2026", "12/31/2026"},
                          Case{LCID_DE_DE, "14.03.2026", "31.12.2026"}}) {
        UserLocale locale(c.lcid);
        Ref<IQVRCatalogOrderInfo> info;
        ASSERT_EQ(catalog->createOrderInfo(Variant::date(march14), Variant::date(december31),
                                           nullptr, &info),
                  S_OK);
        EXPECT_EQ(childText(info, "EffDate"), c.eff);
        EXPECT_EQ(childText(info, "ExpDate"), c.exp);
        Variant eff, exp;
        ASSERT_EQ(info->get_effDate(&eff), S_OK);
        ASSERT_EQ(info->get_expDate(&exp), S_OK);
        EXPECT_EQ(eff.vt(), VT_DATE);
        EXPECT_EQ(eff.dateValue(), march14);
        EXPECT_EQ(exp.dateValue(), december31);
    }

    // A text is stored as it stands; one that is no date fails on reading, result untouched.
    Ref<IQVRCatalogOrderInfo> info;
    ASSERT_EQ(catalog->createOrderInfo(Variant("soon"), Variant::missing(), nullptr, &info), S_OK);
    EXPECT_EQ(childText(info, "EffDate"), "soon");
    Variant kept(7);
    EXPECT_TRUE(FAILED(info->get_effDate(&kept)));
    EXPECT_EQ(kept.vt(), VT_I4);
    EXPECT_EQ(info->get_expDate(&kept), S_FALSE);
    EXPECT_EQ(kept.vt(), VT_I4);
    EXPECT_EQ(info->get_effDate(nullptr), E_POINTER);
}

TEST(OrderInfo, ChildrenKeepTheirOrderAndEmptyDatesRemove) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogCountryCode> de;
    Ref<IQVRCatalogAvailability> availability;
    Ref<IQVRCatalogOrderInfo> info;
    ASSERT_EQ(catalog->createCountryCode("DE", "Germany", &de), S_OK);
    ASSERT_EQ(catalog->createAvailability(de, &availability), S_OK);
    ASSERT_EQ(catalog->createOrderInfo(Variant(), Variant(), availability, &info), S_OK);
    EXPECT_EQ(childTags(info), "Availability");
    Listener listener(catalog);

    // ExpDate goes ahead of the availability, EffDate ahead of everything.
    ASSERT_EQ(info->put_expDate(Variant("1/2/2027")), S_OK);
    ASSERT_EQ(info->put_effDate(Variant("1/1/2027")), S_OK);
    EXPECT_EQ(childTags(info), "EffDate ExpDate Availability");
    // An empty or missing value removes a date; on no date it does nothing and is not heard.
    ASSERT_EQ(info->put_effDate(Variant()), S_OK);
    ASSERT_EQ(info->put_effDate(Variant::missing()), S_OK);
    EXPECT_EQ(childTags(info), "ExpDate Availability");
    // Null removes the availability; a new one lands right behind the last date.
    ASSERT_EQ(info->putref_availability(nullptr), S_OK);
    ASSERT_EQ(info->putref_availability(availability), S_OK);
    EXPECT_EQ(childTags(info), "ExpDate Availability");
    EXPECT_EQ(listener.take(), "changed #7 | changed #7 | changed #7 | changed #7 | changed #7");
    Ref<IQVRCatalogAvailability> read;
    ASSERT_EQ(info->get_availability(&read), S_OK);
    EXPECT_EQ(childTags(read), "CountryCode");

    // OrderInfo takes no children the container way.
    Ref<IQVRCatalogObject> inserted;
    EXPECT_EQ(info->appendChild(de, &inserted), S_FALSE);
    EXPECT_EQ(info->removeChild(availability, &inserted), S_FALSE);
}

TEST(OrderMethods, TargetsOfEachKindAndProtocols) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogOrderTarget> target =
        query<IQVRCatalogOrderTarget>(orderTarget(catalog, url(catalog)));
    Ref<IQVRCatalogOrderMethod> method;
    ASSERT_EQ(catalog->createOrderMethod(target, "https", &method), S_OK);
    EXPECT_EQ(childTags(method), "OrderTarget OrderProtocol");

    // Each kind of target in turn replaces whatever kind stood there.
    const Made targets[] = {phone(catalog), email(catalog), fax(catalog), url(catalog)};
    Listener listener(catalog);
    std::string kinds;
    for (const Made& made : targets) {
        ASSERT_EQ(target->putref_target(made), S_OK);
        std::int32_t type = -1;
        Ref<IQVRCatalogObject> read, parent;
        ASSERT_EQ(target->get_targetType(&type), S_OK);
        ASSERT_EQ(target->get_target(&read), S_OK);
        ASSERT_EQ(read->get_parentNode(&parent), S_OK);
        EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(target.get()));
        kinds += std::to_string(type) + ":" + childTags(target) + " ";
    }
    EXPECT_EQ(kinds, "0:Phone 1:Email 2:Fax 3:URL ");
    EXPECT_EQ(listener.take(), "changed #12 | changed #12 | changed #12 | changed #12");

    // Refused: another kind of target, no target, no protocol; nothing changes.
    EXPECT_EQ(target->putref_target(street(catalog)), E_FAIL);
    EXPECT_EQ(lastError(), "This object is not a valid order target.");
    EXPECT_EQ(target->putref_target(nullptr), E_POINTER);
    EXPECT_EQ(method->putref_orderTarget(nullptr), E_POINTER);
    EXPECT_EQ(catalog->createOrderMethod(nullptr, "voice", &method), E_POINTER);
    EXPECT_EQ(catalog->createOrderMethod(target, nullptr, &method), E_INVALIDARG);
    EXPECT_EQ(childTags(target), "URL");
    listener.take();

    // The protocol: the empty text removes it, and is heard also when there is none.
    ASSERT_EQ(catalog->createOrderMethod(orderTarget(catalog, fax(catalog)), "fax", &method), S_OK);
    listener.take();
    ASSERT_EQ(method->put_orderProtocol(""), S_OK);
    ASSERT_EQ(method->put_orderProtocol(""), S_OK);
    String protocol;
    EXPECT_EQ(method->get_orderProtocol(&protocol), S_FALSE);
    EXPECT_EQ(listener.take(), "changed #10 | changed #10");

    // A stored target of no known kind, or none at all.
    ASSERT_EQ(loadXml(catalog, "<vCAT id='c'><Supplier><SupplierLocation><OrderMethods>"
                               "<OrderMethod><OrderTarget><Pager/></OrderTarget></OrderMethod>"
                               "<OrderMethod><OrderTarget/></OrderMethod>"
                               "</OrderMethods></SupplierLocation></Supplier></vCAT>"),
              S_OK);
    Ref<IQVRCatalogSupplier> supplier;
    Ref<IQVRCatalogObjectList> stored;
    Ref<IQVRCatalogOrderMethods> storedMethods;
    ASSERT_EQ(catalog->get_supplier(&supplier), S_OK);
    ASSERT_EQ(
        query<IQVRCatalogSupplierLocation>(childAt(supplier, 1))->get_orderMethods(&storedMethods),
        S_OK);
    ASSERT_EQ(storedMethods->get_childNodes(&stored), S_OK);
    std::string types;
    for (Ref<IQVRCatalogObject> item : *stored) {
        Ref<IQVRCatalogOrderTarget> storedTarget;
        ASSERT_EQ(query<IQVRCatalogOrderMethod>(item)->get_orderTarget(&storedTarget), S_OK);
        std::int32_t type = -1;
        const HRESULT hr = storedTarget->get_targetType(&type);
        types += std::to_string(type) + (hr == S_OK ? " " : "! " + lastError() + " ");
    }
    EXPECT_EQ(types, "4! An unknown order target name was found. 5 ");
}

} // namespace
} // namespace qvr::testing
