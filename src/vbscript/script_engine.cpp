#include "vbscript/script_engine.h"

#include <algorithm>

#include "platform/com/failure.h"
#include "vbscript/parse_cache.h"
#include "vbscript/parser.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

// Line and character position of byte `offset` in `text`, both zero-based.
void locate(std::string_view text, std::size_t offset, std::int32_t* line, std::int32_t* column) {
    *line = 0;
    *column = 0;
    offset = std::min(offset, text.size());
    for (std::size_t i = 0; i < offset; ++i) {
        char c = text[i];
        if (c == '\n' || (c == '\r' && !(i + 1 < text.size() && text[i + 1] == '\n'))) {
            ++*line;
            *column = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80 && c != '\r') {
            ++*column;
        }
    }
}

void fill(ScriptException* record, const ScriptError& e, std::string_view text) {
    if (!record) return;
    *record = ScriptException{};
    record->number = e.number();
    bool compile = isCompileError(e.number()) || e.position() >= 0;
    record->source =
        compile ? "Microsoft VBScript compilation error" : "Microsoft VBScript runtime error";
    record->description = String(e.description());
    record->helpFile = String("");
    record->scode = e.status();
    if (e.position() >= 0)
        locate(text, static_cast<std::size_t>(e.position()), &record->line, &record->column);
}

} // namespace

HRESULT ScriptEngine::addNamedItem(const String& name, IScriptObject* object) {
    if (name.isEmpty() || !object) return E_INVALIDARG;
    return guarded([&] {
        for (NamedItem& item : items_) {
            if (item.name.equalsIgnoreCase(name.view())) {
                item.object = object;
                return S_OK;
            }
        }
        items_.push_back(NamedItem{name, Ref<IScriptObject>(object)});
        return S_OK;
    });
}

HRESULT ScriptEngine::evaluate(const String& expression, Variant* result,
                               ScriptException* exception) {
    if (!result) return E_POINTER;
    return guarded([&] { return run(expression, result, exception); });
}

HRESULT ScriptEngine::run(const String& expression, Variant* result, ScriptException* exception) {
    LCID lcid = GetUserLocale();
    std::string_view text = expression.view();
    std::shared_ptr<const Program> cached;
    const Program* program = &scratch_;
    try {
        if (useCache_) {
            cached = ParseCache::lookup(text, lcid);
            program = cached.get();
        } else {
            Parser::compileInto(text, lcid, scratch_);
        }
    } catch (const ScriptError& e) {
        fill(exception, e, text);
        // A fault found while compiling is a compile error even when its number is a
        // run-time one (a nesting too deep to follow).
        return isCompileError(e.number()) || e.position() >= 0 ? OLESCRIPT_E_SYNTAX
                                                               : DISP_E_EXCEPTION;
    }
    if (program == &scratch_ && scratch_.isConstant()) {
        // A folded formula's value is its one constant, which the next compile discards.
        *result = std::move(scratch_.constants[0]);
        return S_OK;
    }
    CallContext context{lcid, &random_};
    Interpreter interpreter(items_, context);
    Variant value;
    try {
        interpreter.run(*program, &value);
    } catch (const ScriptError& e) {
        fill(exception, e, text);
        return DISP_E_EXCEPTION;
    }
    *result = std::move(value);
    return S_OK;
}

} // namespace qvr::vbscript
