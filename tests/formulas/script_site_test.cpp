#include <gtest/gtest.h>

#include "formulas/script_site.h"
#include "platform/com/object_base.h"
#include "vbscript/script_object.h"

namespace qvr {
namespace {

// An object with one member, "Name".
class NamedThing : public ObjectBase<vbscript::IScriptObject> {
public:
    HRESULT invoke(const String& name, const Variant*, int argc, Variant* result) override {
        if (!name.equalsIgnoreCase("Name")) return DISP_E_MEMBERNOTFOUND;
        if (argc != 0) return DISP_E_BADPARAMCOUNT;
        *result = Variant("M8");
        return S_OK;
    }
    std::uint32_t count() {
        AddRef();
        return Release();
    }
};

TEST(ScriptSite, AnswersTheEngine) {
    Ref<NamedThing> column = makeObject<NamedThing>();
    Ref<CScriptSite> site = CScriptSite::create(column.get());
    // The site does not hold its column.
    EXPECT_EQ(column->count(), 1u);

    void* other = &site;
    EXPECT_EQ(site->QueryInterface(IUnknown::iid, &other), E_NOTIMPL);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(site->AddRef(), 2u); // the creator's count is the Ref's
    EXPECT_EQ(site->Release(), 1u);

    ITypeInfo* typeInfo = reinterpret_cast<ITypeInfo*>(&other);
    Ref<IUnknown> item;
    EXPECT_EQ(site->GetItemInfo(CScriptSite::itemName, SCRIPTINFO_IUNKNOWN | SCRIPTINFO_ITYPEINFO,
                                &item, &typeInfo),
              TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(typeInfo, nullptr);
    EXPECT_FALSE(item);
    EXPECT_EQ(site->GetItemInfo(CScriptSite::itemName, SCRIPTINFO_IUNKNOWN, nullptr, nullptr),
              S_OK);
    // Unknown names and a mask without the object: success and nothing.
    EXPECT_EQ(site->GetItemInfo("Other", SCRIPTINFO_IUNKNOWN, &item, nullptr), S_OK);
    EXPECT_FALSE(item);
    EXPECT_EQ(site->GetItemInfo(CScriptSite::itemName, 0, &item, &typeInfo), S_OK);
    EXPECT_FALSE(item);
    // The name with case ignored gives the column with one reference for the caller.
    EXPECT_EQ(site->GetItemInfo("qvrtablecalculatedcolumn", SCRIPTINFO_IUNKNOWN, &item, nullptr),
              S_OK);
    EXPECT_EQ(item.get(), static_cast<IUnknown*>(column.get()));
    EXPECT_EQ(column->count(), 2u);
    item = nullptr;

    EXPECT_EQ(site->OnScriptError(nullptr), E_FAIL);
    LCID lcid = 77;
    EXPECT_EQ(site->GetLCID(&lcid), S_OK);
    EXPECT_EQ(lcid, 77u);
    String version("v");
    EXPECT_EQ(site->GetDocVersionString(&version), S_OK);
    EXPECT_EQ(version, "v");
}

} // namespace
} // namespace qvr
