// The site through which the formula engine reaches its host. It knows one named item,
// "QVRTableCalculatedColumn": the calculated column being evaluated. Its pointer to the column
// is not counted, so the site (which the engine holds) never keeps the column alive and no cycle
// arises; the site lives only for one evaluation, inside a call on that column.
//
// Everything else the protocol asks is answered with success and nothing: the system learns of a
// fault only from the status and exception record of the parse call, never from OnScriptError.
#pragma once

#include <cstdint>

#include "formulas/active_script.h"

namespace qvr {

class CScriptSite final : public IActiveScriptSite {
public:
    // The name under which the column is known to formulas.
    static constexpr const char* itemName = "QVRTableCalculatedColumn";

    // A new site with a count of 1, which the returned reference owns.
    static Ref<CScriptSite> create(IUnknown* column);

    HRESULT QueryInterface(const IID& iid, void** object) override;
    std::uint32_t AddRef() override { return ++refCount_; }
    std::uint32_t Release() override;
    HRESULT GetLCID(LCID* lcid) override;
    HRESULT GetItemInfo(const String& name, std::uint32_t returnMask, Ref<IUnknown>* item,
                        ITypeInfo** typeInfo) override;
    HRESULT GetDocVersionString(String* version) override;
    HRESULT OnScriptTerminate(const Variant* result,
                              const ScriptExceptionRecord* exception) override;
    HRESULT OnStateChange(std::int32_t state) override;
    HRESULT OnScriptError(IUnknown* error) override;
    HRESULT OnEnterScript() override;
    HRESULT OnLeaveScript() override;

private:
    explicit CScriptSite(IUnknown* column) : column_(column) {}
    ~CScriptSite() override = default;

    std::uint32_t refCount_ = 1; // plain: a site is used on one thread, inside one call
    IUnknown* column_;           // not counted
};

} // namespace qvr
