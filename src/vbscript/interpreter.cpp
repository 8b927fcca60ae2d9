#include "vbscript/interpreter.h"

#include <qvr/error_info.h>

#include <vector>

#include "vbscript/operators.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

// Programs this shallow run on a stack in the native frame, without allocating.
constexpr std::uint32_t kLocalSlots = 8;

// VBScript names a value that failed a conversion: '[string: "abc"]'.
std::string describeOperands(const Variant& l, const Variant& r) {
    const Variant& v = l.vt() == VT_BSTR ? l : r;
    if (v.vt() != VT_BSTR) return {};
    return "[string: \"" + v.str().str() + "\"]";
}

} // namespace

IScriptObject* Interpreter::findItem(std::string_view name) const {
    for (const NamedItem& item : items_)
        if (item.name.equalsIgnoreCase(name)) return item.object.get();
    return nullptr;
}

void Interpreter::callMember(IScriptObject* object, std::string_view member, std::string_view path,
                             Variant* args, int argc, Variant* result) {
    HRESULT hr = object->invoke(String(member), args, argc, result);
    if (SUCCEEDED(hr)) return;
    int n = errorFromStatus(hr);
    if (n != kInternalError) raise(n, path);
    ErrorInfo info;
    bool reported = GetErrorInfo(&info);
    throw ScriptError::foreign(hr, reported ? info.description.str() : std::string());
}

void Interpreter::member(const Program& p, const Instr& in, Variant* slots) {
    const NameRef& name = p.names[in.a];
    Variant& target = slots[0];
    if (!target.isObject() || !target.object()) raise(kObjectRequired, name.base());
    Ref<IScriptObject> object = query<IScriptObject>(target.object());
    if (!object) raise(kMemberNotFound, name.text);
    Variant result;
    callMember(object.get(), name.memberName(), name.text, slots + 1, in.argc, &result);
    target = std::move(result);
}

void Interpreter::index(const Program& p, const Instr& in, Variant* slots) {
    Variant& target = slots[0];
    std::string_view name = p.names[in.a].text;
    if (target.isObject()) {
        if (!target.object()) raise(kObjectVariableNotSet);
        Ref<IScriptObject> object = query<IScriptObject>(target.object());
        if (!object) raise(kMemberNotFound, name);
        Variant result;
        callMember(object.get(), "", name, slots + 1, in.argc, &result);
        target = std::move(result);
        return;
    }
    if (!target.isArray()) raise(kTypeMismatch, name);
    if (in.argc != 1) raise(kSubscriptOutOfRange);
    std::int32_t i = toLong(slots[1], cx_.lcid);
    const auto& items = target.items();
    std::int64_t at = static_cast<std::int64_t>(i) - target.lowerBound();
    if (at < 0 || at >= static_cast<std::int64_t>(items.size()))
        raise(kSubscriptOutOfRange, "[number: " + std::to_string(i) + "]");
    Variant element = items[static_cast<std::size_t>(at)];
    target = std::move(element);
}

void Interpreter::run(const Program& p, Variant* out) {
    if (p.isConstant()) {
        *out = p.constants[0];
        return;
    }
    Variant local[kLocalSlots];
    std::vector<Variant> heap;
    Variant* stack = local;
    if (p.maxStack > kLocalSlots) {
        heap.resize(p.maxStack);
        stack = heap.data();
    }
    std::uint32_t sp = 0;
    for (const Instr& in : p.code) {
        switch (in.op) {
        case Op::Const: stack[sp++] = p.constants[in.a]; break;
        case Op::Name: {
            IScriptObject* item = findItem(p.names[in.a].text);
            stack[sp++] = item ? Variant(static_cast<IUnknown*>(item)) : Variant();
            break;
        }
        case Op::CallName: {
            std::string_view name = p.names[in.a].text;
            IScriptObject* item = findItem(name);
            if (!item) raise(kTypeMismatch, name); // calling a name that is no function
            sp -= in.argc;
            Variant result;
            callMember(item, "", name, stack + sp, in.argc, &result);
            stack[sp++] = std::move(result);
            break;
        }
        case Op::Member:
            sp -= in.argc + 1u;
            member(p, in, stack + sp);
            ++sp;
            break;
        case Op::Index:
            sp -= in.argc + 1u;
            index(p, in, stack + sp);
            ++sp;
            break;
        case Op::Call: {
            const Builtin& b = builtinAt(static_cast<int>(in.a));
            sp -= in.argc;
            Variant result;
            try {
                b.fn(cx_, stack + sp, in.argc, &result);
            } catch (const ScriptError& e) {
                throw e.withDetail(b.name);
            }
            stack[sp++] = std::move(result);
            break;
        }
        case Op::Raise: raise(static_cast<int>(in.a), p.names[in.argc].text);
        case Op::Neg:
        case Op::Not:
            resolveDefault(stack[sp - 1]);
            applyUnary(in.op, stack[sp - 1]);
            break;
        case Op::Is:
            --sp;
            applyBinary(in.op, in.flags, stack[sp - 1], stack[sp], cx_.lcid, &stack[sp - 1]);
            break;
        default: {
            --sp;
            Variant& l = stack[sp - 1];
            Variant& r = stack[sp];
            resolveDefault(l);
            resolveDefault(r);
            try {
                applyBinary(in.op, in.flags, l, r, cx_.lcid, &l);
            } catch (const ScriptError& e) {
                if (e.number() != kTypeMismatch) throw;
                throw e.withDetail(describeOperands(l, r));
            }
            break;
        }
        }
    }
    *out = std::move(stack[0]);
}

} // namespace qvr::vbscript
