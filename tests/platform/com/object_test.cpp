#include <gtest/gtest.h>

#include "platform/com/cookie_table.h"
#include "platform/com/failure.h"
#include "platform/com/object_base.h"

namespace qvr {
namespace {

class IThing : public IUnknown {
public:
    QVR_INTERFACE_ID(IThing)
    virtual int value() = 0;
};
class IOther : public IUnknown {
public:
    QVR_INTERFACE_ID(IOther)
};

int destroyed = 0;

class Thing : public ObjectBase<IThing, ISupportErrorInfo> {
public:
    int value() override { return 7; }
    HRESULT InterfaceSupportsErrorInfo(const IID& iid) override {
        return iid == IThing::iid ? S_OK : S_FALSE;
    }
    ~Thing() override { ++destroyed; }
};

TEST(Ref, CountsReferencesAndTheModuleUnloadsOnlyWithoutObjectsOrLocks) {
    destroyed = 0;
    ASSERT_EQ(CanUnloadNow(), S_OK);
    {
        Ref<IThing> a = makeObject<Thing>();
        Ref<IThing> b = a;
        EXPECT_EQ(a->AddRef(), 3u);
        EXPECT_EQ(a->Release(), 2u);
        Ref<IThing> c = std::move(b);
        EXPECT_FALSE(b);
        EXPECT_EQ(c, a);
        c = nullptr;
        EXPECT_EQ(destroyed, 0);
        EXPECT_EQ(CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(CanUnloadNow(), S_OK);
    LockServer(true);
    EXPECT_EQ(CanUnloadNow(), S_FALSE);
    LockServer(false);
    EXPECT_EQ(CanUnloadNow(), S_OK);
}

TEST(Query, AnswersOfferedInterfacesOnly) {
    Ref<IThing> thing = makeObject<Thing>();
    Ref<ISupportErrorInfo> sei = query<ISupportErrorInfo>(thing);
    ASSERT_TRUE(sei);
    EXPECT_EQ(sei->InterfaceSupportsErrorInfo(IThing::iid), S_OK);
    EXPECT_EQ(sei->InterfaceSupportsErrorInfo(IOther::iid), S_FALSE);
    EXPECT_FALSE(query<IOther>(thing));
    EXPECT_FALSE(query<IThing>(static_cast<IUnknown*>(nullptr)));
    EXPECT_EQ(query<IThing>(sei.get())->value(), 7);
}

// The same interfaces in another order: IThing stands at another place in the object.
class OtherThing : public ObjectBase<IOther, IThing> {
public:
    int value() override { return 8; }
};

TEST(Query, RepeatedQueriesFindTheRightSubobjectForEveryLayout) {
    Ref<Thing> thing = makeObject<Thing>();
    Ref<OtherThing> other = makeObject<OtherThing>();
    // IUnknown stands twice in each object; each of its places leads to the same IThing.
    IUnknown* starts[] = {static_cast<IThing*>(thing.get()),
                          static_cast<ISupportErrorInfo*>(thing.get()),
                          static_cast<IOther*>(other.get()), static_cast<IThing*>(other.get())};
    IThing* expected[] = {thing.get(), thing.get(), other.get(), other.get()};
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 4; ++i) {
            Ref<IThing> found = query<IThing>(starts[i]);
            ASSERT_EQ(found.get(), expected[i]) << "round " << round << ", start " << i;
            EXPECT_EQ(found->value(), i < 2 ? 7 : 8);
        }
        EXPECT_FALSE(query<IOther>(starts[0]));
        EXPECT_FALSE(query<IOther>(starts[1]));
        EXPECT_EQ(query<IOther>(starts[3]).get(), static_cast<IOther*>(other.get()));
    }
}

TEST(CookieTable, KeepsRegisteredObjectsAliveUntilRevoked) {
    destroyed = 0;
    auto& table = CookieTable::instance();
    std::uint32_t cookie = 0;
    {
        Ref<IThing> thing = makeObject<Thing>();
        ASSERT_EQ(table.registerInterface(thing, &cookie), S_OK);
        EXPECT_NE(cookie, 0u);
    }
    EXPECT_EQ(destroyed, 0);
    Ref<IThing> back;
    ASSERT_EQ(table.get(cookie, &back), S_OK);
    EXPECT_EQ(back->value(), 7);
    Ref<IOther> other;
    EXPECT_EQ(table.get(cookie, &other), E_NOINTERFACE);
    EXPECT_FALSE(other);

    back = nullptr;
    EXPECT_EQ(table.revoke(cookie), S_OK);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(table.revoke(cookie), E_INVALIDARG);
    EXPECT_EQ(table.get(cookie, &back), E_INVALIDARG);
    // A token given out after the revoke is another one, and the old stays unknown.
    std::uint32_t next = 0;
    Ref<IThing> again = makeObject<Thing>();
    ASSERT_EQ(table.registerInterface(again, &next), S_OK);
    EXPECT_NE(next, cookie);
    EXPECT_EQ(table.get(cookie, &back), E_INVALIDARG);
    EXPECT_EQ(table.get(next, &back), S_OK);
    EXPECT_EQ(back, again);
    back = nullptr;
    EXPECT_EQ(table.revoke(next), S_OK);
    again = nullptr;
    EXPECT_EQ(table.get(0, &back), E_INVALIDARG);
    EXPECT_EQ(table.registerInterface(nullptr, &cookie), E_INVALIDARG);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(CanUnloadNow(), S_OK);

    // Two registrations of one object are two tokens, each holding a reference.
    Ref<IThing> thing = makeObject<Thing>();
    std::uint32_t a = 0, b = 0;
    table.registerInterface(thing, &a);
    table.registerInterface(thing, &b);
    EXPECT_NE(a, b);
    EXPECT_EQ(thing->AddRef(), 4u);
    thing->Release();
    table.revoke(a);
    table.revoke(b);
    EXPECT_EQ(thing->AddRef(), 2u);
    thing->Release();
}

TEST(Guarded, TurnsExceptionsIntoStatuses) {
    EXPECT_EQ(guarded([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(guarded([]() -> HRESULT { raiseFailure(E_OUTOFMEMORY); }), E_OUTOFMEMORY);
    EXPECT_EQ(guarded([]() -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(guarded([]() -> HRESULT { throw 1; }), E_UNEXPECTED);
}

// The statuses are written down by their numbers; what is computed from them is checked.
TEST(Status, NumbersKeepTheirBitsAndSeverity) {
    EXPECT_EQ(static_cast<std::uint32_t>(E_FAIL), 0x80004005u);
    EXPECT_EQ(static_cast<std::uint32_t>(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)), 0x80070002u);
    EXPECT_TRUE(SUCCEEDED(S_FALSE) && FAILED(QVR_E_DUPLICATE));
}

} // namespace
} // namespace qvr
