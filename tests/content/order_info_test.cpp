// Order information: dates, availability by country, order methods and their targets.
#include <gtest/gtest.h>

#include "common/catalog_elements.h"
#include "common/catalog_fixture.h"

namespace qvr::testing {
namespace {

// The text of the child `tag` of `object`'s element, or "-" when there is none.
std::string childText(IQVRCatalogObject* object, const char* tag) {
    Variant text;
    return object->getValue(tag, &text) == S_OK ? text.str().str() : "-";
}

// Restores the user's locale at the end of a test.
struct LocaleScope {
    LCID saved = GetUserLocale();
    ~LocaleScope() { SetUserLocale(saved); }
};

TEST(OrderInfo, DatesAreStoredUnderTheUsersLocaleAndReadBackAsDates) {
    LocaleScope locale;
    Ref<IQVRCatalog> catalog = newCatalog();
    const DATE march14 = 46095.0, december31 = 46387.0; // 2026-03-14, 2026-12-31
    struct Case {
        LCID lcid;
        const char* eff;
        const char* exp;
    };
    for (const Case& c : {Case{LCID_EN_US, "3/14/2026", "12/31/2026"},
                          Case{LCID_DE_DE, "14.03.2026", "31.12.2026"}}) {
        SetUserLocale(c.lcid);
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
    SetUserLocale(LCID_EN_US);
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

TEST(Availability, OneCountryCodePerCodeAndTheLastOneStays) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogCountryCode> de, fr, again;
    Ref<IQVRCatalogAvailability> availability;
    ASSERT_EQ(catalog->createCountryCode("DE", "Germany", &de), S_OK);
    ASSERT_EQ(catalog->createCountryCode("FR", "France", &fr), S_OK);
    ASSERT_EQ(catalog->createCountryCode("DE", "Deutschland", &again), S_OK);
    ASSERT_EQ(catalog->createAvailability(de, &availability), S_OK);
    ASSERT_EQ(availability->appendChild(fr, nullptr), S_OK);
    EXPECT_EQ(keyOf(fr), "FR");
    const std::string before = childTags(availability);

    Listener listener(catalog);
    Ref<IQVRCatalogObject> inserted, removed;
    EXPECT_EQ(availability->appendChild(again, &inserted), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    EXPECT_EQ(fr->put_isoCountryCode("DE"), E_FAIL);
    EXPECT_EQ(lastError(), "A child with the same id already exists.");
    for (const char* bad : {"de", "D", "DEU", "", "D1"}) {
        EXPECT_EQ(fr->put_isoCountryCode(bad), E_FAIL) << bad;
        EXPECT_EQ(lastError(), "This is not a valid ISO 3166 country code.") << bad;
    }
    EXPECT_EQ(fr->put_isoCountryCode(nullptr), E_INVALIDARG);
    Ref<IQVRCatalogChapter> chapter = newChapter(catalog, "Stranger");
    EXPECT_EQ(availability->appendChild(chapter, &inserted), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append CountryCodes as a child of this object.");
    String code;
    ASSERT_EQ(fr->get_isoCountryCode(&code), S_OK);
    EXPECT_EQ(code, "FR");
    EXPECT_EQ(childTags(availability), before);
    EXPECT_EQ(listener.take(), "");

    // Its own code again passes and is heard; any two capitals pass, known country or not.
    EXPECT_EQ(fr->put_isoCountryCode("FR"), S_OK);
    EXPECT_EQ(fr->put_isoCountryCode("QQ"), S_OK);
    EXPECT_EQ(listener.take(), "changed #9 | changed #9");

    ASSERT_EQ(availability->removeChild(fr, &removed), S_OK);
    EXPECT_EQ(availability->removeChild(de, &removed), E_FAIL);
    EXPECT_EQ(lastError(), "You can't remove the last child of this object.");
    EXPECT_EQ(childTags(availability), "CountryCode");
    // A code without parent has no siblings to clash with.
    EXPECT_EQ(again->put_isoCountryCode("FR"), S_OK);
}

TEST(OrderMethod, TargetsProtocolAndTheListOfMethods) {
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogOrderMethod> method;
    Ref<IQVRCatalogOrderTarget> target;
    Ref<IQVRCatalogOrderMethods> methods;
    // No target given: the method's own setter refuses null.
    EXPECT_EQ(catalog->createOrderMethod(nullptr, "phone", &method), E_POINTER);
    EXPECT_FALSE(method);
    EXPECT_EQ(catalog->createOrderMethod(nullptr, nullptr, &method), E_INVALIDARG);

    // Of the target kinds, get_targetType tells each; an empty target says so.
    VARIANT_BOOL done;
    ASSERT_EQ(catalog->loadXML("<vCAT id='c'><Supplier><SupplierLocation><OrderMethods>"
                               "<OrderMethod><OrderTarget/><OrderProtocol>p</OrderProtocol>"
                               "</OrderMethod><OrderMethod><OrderTarget><Phone/></OrderTarget>"
                               "</OrderMethod><OrderMethod><OrderTarget><Email/></OrderTarget>"
                               "</OrderMethod><OrderMethod><OrderTarget><Fax/></OrderTarget>"
                               "</OrderMethod><OrderMethod><OrderTarget><URL/></OrderTarget>"
                               "</OrderMethod><OrderMethod><OrderTarget><Pager/></OrderTarget>"
                               "</OrderMethod></OrderMethods></SupplierLocation></Supplier></vCAT>",
                               &done),
              S_OK);
    Ref<IQVRCatalogSupplier> supplier;
    Ref<IQVRCatalogObjectList> locations, list;
    Ref<IQVRCatalogObject> location;
    ASSERT_EQ(catalog->get_supplier(&supplier), S_OK);
    ASSERT_EQ(supplier->get_childNodes(&locations), S_OK);
    ASSERT_EQ(locations->getItem(1, &location), S_OK);
    ASSERT_EQ(query<IQVRCatalogSupplierLocation>(location)->get_orderMethods(&methods), S_OK);
    ASSERT_EQ(methods->get_childNodes(&list), S_OK);
    std::string types;
    for (Ref<IQVRCatalogObject> item : *list) {
        ASSERT_EQ(query<IQVRCatalogOrderMethod>(item)->get_orderTarget(&target), S_OK);
        std::int32_t type = -1;
        const HRESULT hr = target->get_targetType(&type);
        types += std::to_string(type) + (hr == S_OK ? " " : "! ");
    }
    EXPECT_EQ(types, "5 0 1 2 3 4! ");
    EXPECT_EQ(lastError(), "An unknown order target name was found.");

    // The protocol: an empty text removes it, and is heard also when there is none.
    ASSERT_EQ(list->getItem(1, &location), S_OK);
    method = query<IQVRCatalogOrderMethod>(location);
    String protocol;
    ASSERT_EQ(method->get_orderProtocol(&protocol), S_OK);
    EXPECT_EQ(protocol, "p");
    Listener listener(catalog);
    ASSERT_EQ(method->put_orderProtocol(""), S_OK);
    ASSERT_EQ(method->put_orderProtocol(""), S_OK);
    EXPECT_EQ(method->get_orderProtocol(&protocol), S_FALSE);
    EXPECT_EQ(listener.take(), "changed #10 | changed #10");

    // Only a Phone, Email, Fax or URL can be a target.
    ASSERT_EQ(method->get_orderTarget(&target), S_OK);
    EXPECT_EQ(target->putref_target(supplier), E_FAIL);
    EXPECT_EQ(lastError(), "This object is not a valid order target.");
    EXPECT_EQ(target->putref_target(nullptr), E_POINTER);
    EXPECT_EQ(method->putref_orderTarget(nullptr), E_POINTER);
    EXPECT_EQ(childTags(target), "");

    // OrderMethods can be emptied (its list follows), and takes nothing but methods.
    Ref<IQVRCatalogObject> first, removed;
    while (list->getItem(1, &first) == S_OK) ASSERT_EQ(methods->removeChild(first, &removed), S_OK);
    EXPECT_EQ(childTags(methods), "");
    EXPECT_EQ(methods->appendChild(target, &removed), E_FAIL);
    EXPECT_EQ(lastError(), "You can only append OrderMethod as a child of this object.");
}

TEST(OrderTarget, HoldsOnePhoneEmailFaxOrURLAndAnyKindReplacesAnother) {
    using namespace elements;
    Ref<IQVRCatalog> catalog = newCatalog();
    Ref<IQVRCatalogOrderTarget> target =
        query<IQVRCatalogOrderTarget>(orderTarget(catalog, url(catalog)));
    const Made kinds4[] = {phone(catalog), email(catalog), fax(catalog), url(catalog)};
    Listener listener(catalog);
    std::string kinds;
    for (const Made& made : kinds4) {
        ASSERT_EQ(target->putref_target(made), S_OK);
        std::int32_t type = -1;
        Ref<IQVRCatalogObject> read;
        ASSERT_EQ(target->get_targetType(&type), S_OK);
        ASSERT_EQ(target->get_target(&read), S_OK);
        Ref<IQVRCatalogObject> parent;
        ASSERT_EQ(read->get_parentNode(&parent), S_OK);
        EXPECT_EQ(parent.get(), static_cast<IQVRCatalogObject*>(target.get()));
        kinds += std::to_string(type) + ":" + childTags(target) + " ";
    }
    EXPECT_EQ(kinds, "0:Phone 1:Email 2:Fax 3:URL ");
    EXPECT_EQ(listener.take(), "changed #12 | changed #12 | changed #12 | changed #12");

    // Anything else is refused and the target stays.
    EXPECT_EQ(target->putref_target(street(catalog)), E_FAIL);
    EXPECT_EQ(lastError(), "This object is not a valid order target.");
    EXPECT_EQ(childTags(target), "URL");

    // A method's target is its first child, replaced in place and never removed.
    Ref<IQVRCatalogOrderMethod> method =
        query<IQVRCatalogOrderMethod>(orderMethod(catalog, email(catalog), "smtp"));
    EXPECT_EQ(childTags(method), "OrderTarget OrderProtocol");
    ASSERT_EQ(method->putref_orderTarget(target), S_OK);
    EXPECT_EQ(childTags(method), "OrderTarget OrderProtocol");
    Ref<IQVRCatalogOrderTarget> read;
    ASSERT_EQ(method->get_orderTarget(&read), S_OK);
    EXPECT_EQ(childTags(read), "URL");
}

} // namespace
} // namespace qvr::testing
