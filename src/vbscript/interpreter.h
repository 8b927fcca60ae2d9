// Runs a compiled Program: a stack machine over variants. Names are looked up among the
// engine's named items at run time (a name that is no item is Empty), so one compiled program
// serves every engine.
#pragma once

#include <span>

#include <qvr/string.h>
#include <qvr/variant.h>

#include "vbscript/builtins.h"
#include "vbscript/program.h"
#include "vbscript/script_object.h"

namespace qvr::vbscript {

struct NamedItem {
    String name;
    Ref<IScriptObject> object;
};

class Interpreter {
public:
    Interpreter(std::span<const NamedItem> items, CallContext& context)
        : items_(items), cx_(context) {}

    // Evaluates `program` into `out`; throws ScriptError.
    void run(const Program& program, Variant* out);

private:
    IScriptObject* findItem(std::string_view name) const;
    void callMember(IScriptObject* object, std::string_view member, std::string_view path,
                    Variant* args, int argc, Variant* result);
    void member(const Program& p, const Instr& in, Variant* slots);
    void index(const Program& p, const Instr& in, Variant* slots);

    std::span<const NamedItem> items_;
    CallContext& cx_;
};

} // namespace qvr::vbscript
