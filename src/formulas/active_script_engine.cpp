#include "formulas/active_script_engine.h"

#include "platform/com/failure.h"
#include "vbscript/script_object.h"

namespace qvr {

HRESULT createScriptEngine(Ref<IActiveScript>* script) {
    if (!script) return E_POINTER;
    return guarded([&] {
        *script = makeObject<ActiveScriptEngine>();
        return S_OK;
    });
}

HRESULT ActiveScriptEngine::SetScriptSite(IActiveScriptSite* site) {
    if (!site) return E_POINTER;
    if (site_) return E_UNEXPECTED; // a site is given once
    site_ = site;
    return S_OK;
}

HRESULT ActiveScriptEngine::InitNew() {
    if (initialized_) return E_UNEXPECTED;
    initialized_ = true;
    return S_OK;
}

HRESULT ActiveScriptEngine::AddNamedItem(const String& name, std::uint32_t) {
    if (name.isEmpty()) return E_INVALIDARG;
    if (!site_ || !initialized_) return E_UNEXPECTED;
    return guarded([&] {
        Ref<IUnknown> item;
        HRESULT hr = site_->GetItemInfo(name, SCRIPTINFO_IUNKNOWN, &item, nullptr);
        if (FAILED(hr)) return hr;
        Ref<vbscript::IScriptObject> object = query<vbscript::IScriptObject>(item);
        return object ? engine_.addNamedItem(name, object) : S_OK;
    });
}

HRESULT ActiveScriptEngine::ParseScriptText(const String& code, const String&, IUnknown*,
                                            const String&, std::uint64_t, std::uint32_t,
                                            std::uint32_t flags, Variant* result,
                                            ScriptExceptionRecord* exception) {
    if (!initialized_) return E_UNEXPECTED;
    if (!(flags & SCRIPTTEXT_ISEXPRESSION)) return E_NOTIMPL;
    return engine_.evaluate(code, result, exception);
}

} // namespace qvr
