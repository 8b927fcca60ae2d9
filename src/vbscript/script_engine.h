// The formula engine: evaluates one VBScript expression and hands back a typed value or an
// exception record.
//
//     ScriptEngine engine;
//     engine.addNamedItem("QVRTableCalculatedColumn", columnObject);
//     Variant value;
//     ScriptException error;
//     HRESULT hr = engine.evaluate("Round(Sqr(3^2 + 4^2), 2) & \" mm\"", &value, &error);
//
// The language is VBScript's expression language: literals (numbers, &H/&O, "text", #dates#,
// True, False, Empty, Null, Nothing), every operator at VBScript's precedence with the variant
// rules of the platform, the run-time library (math, conversions, strings, formatting, dates,
// inspection, arrays, the vb constants) and member access on named items. A name that is
// neither a function, a constant nor a named item is Empty; calling such a name with arguments
// is "Type mismatch". Exactly one expression: a second statement is "Expected end of statement".
//
// Results and statuses of evaluate():
//   S_OK                 `result` holds the value (objects stay objects).
//   OLESCRIPT_E_SYNTAX   the text does not compile; `exception` holds the compile error and its
//                        line and column.
//   DISP_E_EXCEPTION     evaluation failed; `exception` holds the run-time error.
//   E_POINTER            `result` is null.
//   E_OUTOFMEMORY        memory ran out.
// On failure `result` is left as it was. `exception` may be null.
//
// Conversions and formatting follow the user locale (GetUserLocale()) at the time of the call;
// date literals are always read in the US form (month/day/year). Compiled expressions are kept
// in a per-thread cache keyed by text and locale; the cache is invisible except in speed.
// An engine is used from one thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include <qvr/com.h>
#include <qvr/string.h>
#include <qvr/variant.h>

#include "vbscript/builtins.h"
#include "vbscript/interpreter.h"
#include "vbscript/program.h"
#include "vbscript/script_object.h"

namespace qvr::vbscript {

// The status of a text that does not compile.
constexpr HRESULT OLESCRIPT_E_SYNTAX = makeStatus(0x80020101);

// The exception record of a failed evaluation.
struct ScriptException {
    int number = 0;     // VBScript's error number: 13, 1002...
    String source;      // "Microsoft VBScript runtime error" or "... compilation error"
    String description; // "Type mismatch: 'CInt'"
    String helpFile;    // empty: the language's errors carry no help file
    std::uint32_t helpContext = 0;
    HRESULT scode = S_OK;     // 0x800A0000 | number (or a host object's own failure status)
    std::int32_t line = -1;   // compile errors: zero-based line of the fault
    std::int32_t column = -1; // compile errors: zero-based character position in that line
};

class ScriptEngine {
public:
    ScriptEngine() = default;
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    // Makes `object` reachable under `name` (case ignored). A later item of the same name
    // replaces the earlier one. E_INVALIDARG for an empty name or a null object.
    HRESULT addNamedItem(const String& name, IScriptObject* object);

    HRESULT evaluate(const String& expression, Variant* result, ScriptException* exception);

    // Turns the parse cache off (benchmarks measure both ways) or on (the default).
    void setParseCacheEnabled(bool enabled) { useCache_ = enabled; }

private:
    HRESULT run(const String& expression, Variant* result, ScriptException* exception);

    std::vector<NamedItem> items_;
    RandomState random_;
    bool useCache_ = true;
    Program scratch_; // the compiled form when the cache is off, its storage reused
};

} // namespace qvr::vbscript
