// The dispatch interface through which expressions reach the host's objects: a named item added
// to the engine, or any object that such an item hands out. "Item.Member" calls
// invoke("Member", no arguments); "Item.Method(1, 2)" passes the two arguments in order; the
// item used where a value is needed ("Item + 1") calls its default member, invoke("").
#pragma once

#include <qvr/com.h>
#include <qvr/variant.h>

namespace qvr::vbscript {

class IScriptObject : public IUnknown {
public:
    QVR_INTERFACE_ID(IScriptObject)
    // Statuses: S_OK with `result` set; DISP_E_MEMBERNOTFOUND or DISP_E_UNKNOWNNAME for a member
    // the object lacks ("Object doesn't support this property or method"); DISP_E_BADPARAMCOUNT,
    // DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW for the errors of the same meaning; 0x800A0000 | n
    // for the language's error n. Any other failure ends the evaluation with that status, and
    // the description of the thread's error record when one was reported.
    virtual HRESULT invoke(const String& name, const Variant* args, int argc, Variant* result) = 0;
};

} // namespace qvr::vbscript
