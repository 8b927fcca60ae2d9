// The script host protocol between a calculated column and the formula engine: the engine is made
// fresh for each evaluation, given a site, readied, told of the one named item and handed the
// formula as one expression. The site answers the engine's questions on the host's behalf.
//
//   createScriptEngine  →  SetScriptSite  →  (parse interface)  →  InitNew
//                       →  AddNamedItem("QVRTableCalculatedColumn", SCRIPTITEM_ISVISIBLE)
//                       →  ParseScriptText(text, ..., SCRIPTTEXT_ISEXPRESSION, &result, &error)
//
// The engine is never started, connected or closed; releasing it ends it.
#pragma once

#include <cstdint>

#include <qvr/com.h>
#include <qvr/string.h>
#include <qvr/variant.h>

#include "vbscript/script_engine.h"

namespace qvr {

// What GetItemInfo is asked to hand out.
constexpr std::uint32_t SCRIPTINFO_IUNKNOWN = 0x1;
constexpr std::uint32_t SCRIPTINFO_ITYPEINFO = 0x2;
// A named item the script may use by name.
constexpr std::uint32_t SCRIPTITEM_ISVISIBLE = 0x2;
// The item's members are global names too (never given by the formula host).
constexpr std::uint32_t SCRIPTITEM_GLOBALMEMBERS = 0x8;
// The text is one expression whose value is wanted.
constexpr std::uint32_t SCRIPTTEXT_ISEXPRESSION = 0x20;
// No type information exists for the item.
constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = makeStatus(0x8002802B);

// The exception record a failed parse or evaluation fills.
using ScriptExceptionRecord = vbscript::ScriptException;

// Type information is never handed out; the type stays incomplete.
class ITypeInfo;

// The host's side of the protocol.
class IActiveScriptSite : public IUnknown {
public:
    QVR_INTERFACE_ID(IActiveScriptSite)
    virtual HRESULT QueryInterface(const IID& iid, void** object) = 0;
    virtual HRESULT GetLCID(LCID* lcid) = 0;
    virtual HRESULT GetItemInfo(const String& name, std::uint32_t returnMask, Ref<IUnknown>* item,
                                ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetDocVersionString(String* version) = 0;
    virtual HRESULT OnScriptTerminate(const Variant* result,
                                      const ScriptExceptionRecord* exception) = 0;
    virtual HRESULT OnStateChange(std::int32_t state) = 0;
    virtual HRESULT OnScriptError(IUnknown* error) = 0;
    virtual HRESULT OnEnterScript() = 0;
    virtual HRESULT OnLeaveScript() = 0;
};

// The engine, as the host drives it.
class IActiveScript : public IUnknown {
public:
    QVR_INTERFACE_ID(IActiveScript)
    // The engine keeps its own reference to the site.
    virtual HRESULT SetScriptSite(IActiveScriptSite* site) = 0;
    // Makes `name` known; the engine asks the site for the object behind it.
    virtual HRESULT AddNamedItem(const String& name, std::uint32_t flags) = 0;
};

// The engine's parse interface, reached from IActiveScript by an interface query.
class IActiveScriptParse : public IUnknown {
public:
    QVR_INTERFACE_ID(IActiveScriptParse)
    virtual HRESULT InitNew() = 0;
    // With SCRIPTTEXT_ISEXPRESSION: evaluates `code` at once into `result`; a failure fills
    // `exception` and leaves `result` alone.
    virtual HRESULT ParseScriptText(const String& code, const String& itemName, IUnknown* context,
                                    const String& delimiter, std::uint64_t sourceCookie,
                                    std::uint32_t startingLine, std::uint32_t flags,
                                    Variant* result, ScriptExceptionRecord* exception) = 0;
};

// A fresh engine of the formula language, as the platform's class factory would give one.
HRESULT createScriptEngine(Ref<IActiveScript>* script);

} // namespace qvr
