#include "formulas/script_site.h"

namespace qvr {

Ref<CScriptSite> CScriptSite::create(IUnknown* column) {
    return Ref<CScriptSite>::adopt(new CScriptSite(column));
}

// The engine never needs another interface of the site.
HRESULT CScriptSite::QueryInterface(const IID&, void** object) {
    if (object) *object = nullptr;
    return E_NOTIMPL;
}

std::uint32_t CScriptSite::Release() {
    const std::uint32_t left = --refCount_;
    if (left == 0) delete this;
    return left;
}

// The engine keeps its own idea of the locale: nothing is written.
HRESULT CScriptSite::GetLCID(LCID*) {
    return S_OK;
}

HRESULT CScriptSite::GetItemInfo(const String& name, std::uint32_t returnMask, Ref<IUnknown>* item,
                                 ITypeInfo** typeInfo) {
    if (typeInfo) {
        *typeInfo = nullptr;
        if (returnMask & SCRIPTINFO_ITYPEINFO) return TYPE_E_ELEMENTNOTFOUND;
    }
    if (!item) return S_OK;
    *item = nullptr;
    // An unknown name is answered with success and no object, not with an error.
    if (!(returnMask & SCRIPTINFO_IUNKNOWN) || !name.equalsIgnoreCase(itemName)) return S_OK;
    *item = column_; // the one reference the caller receives
    return S_OK;
}

HRESULT CScriptSite::GetDocVersionString(String*) {
    return S_OK;
}

HRESULT CScriptSite::OnScriptTerminate(const Variant*, const ScriptExceptionRecord*) {
    return S_OK;
}

HRESULT CScriptSite::OnStateChange(std::int32_t) {
    return S_OK;
}

// Faults reach the host through the parse call's status and record; the error object is not read.
HRESULT CScriptSite::OnScriptError(IUnknown*) {
    return E_FAIL;
}

HRESULT CScriptSite::OnEnterScript() {
    return S_OK;
}

HRESULT CScriptSite::OnLeaveScript() {
    return S_OK;
}

} // namespace qvr
