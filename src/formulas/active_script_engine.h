// The formula language's engine behind the script host protocol (formulas/active_script.h): a
// fresh VBScript expression engine for each evaluation, readied by its site and its named items.
// What engines share is only the compiled form of texts (the engine's parse cache), which cannot
// change what an evaluation observes.
#pragma once

#include "formulas/active_script.h"
#include "platform/com/object_base.h"
#include "vbscript/script_engine.h"

namespace qvr {

class ActiveScriptEngine final : public ObjectBase<IActiveScript, IActiveScriptParse> {
public:
    HRESULT SetScriptSite(IActiveScriptSite* site) override;
    // Asks the site for the item's object at once. An item the site does not know, or whose
    // object the script cannot call, stays a plain name (Empty in an expression).
    HRESULT AddNamedItem(const String& name, std::uint32_t flags) override;
    HRESULT InitNew() override;
    // Only expressions: a text without SCRIPTTEXT_ISEXPRESSION gives E_NOTIMPL.
    HRESULT ParseScriptText(const String& code, const String& itemName, IUnknown* context,
                            const String& delimiter, std::uint64_t sourceCookie,
                            std::uint32_t startingLine, std::uint32_t flags, Variant* result,
                            ScriptExceptionRecord* exception) override;

private:
    Ref<IActiveScriptSite> site_;
    vbscript::ScriptEngine engine_;
    bool initialized_ = false;
};

} // namespace qvr
