#include "formulas/formula_evaluator.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formulas/active_script.h"
#include "formulas/formula_tokens.h"
#include "formulas/script_site.h"
#include "platform/com/failure.h"

namespace qvr {
namespace {

// The lines of the error text behind the engine's description, each ended by a line feed. The
// spellings are those users and their tools already know.
constexpr std::string_view kErrorHead = " while interpreting Formula in calulated column.\n\n";
constexpr std::array<std::string_view, 5> kErrorLabels = {
    "Formula: ", "Evaluated :", "Column Name: ", "Table : ", "Part: ",
};

// The text that stands for a value in the formula.
String pasted(const FormulaColumns::Lookup& found) {
    if (!found.isString) return found.text;
    return String("\"") + found.text.view() + "\"";
}

} // namespace

HRESULT FormulaEvaluator::substitute(FormulaColumns& columns, const String& rowId,
                                     const String& formula, String* working) {
    *working = formula;
    std::int32_t count = 0;
    HRESULT hr = columns.count(&count);
    if (FAILED(hr)) return hr;
    for (std::int32_t i = 0; i < count; ++i) {
        String name;
        if ((hr = columns.name(i, &name)) != S_OK) return hr;
        if (name.isEmpty() || !FormulaTokens::find(working->view(), name)) continue;
        FormulaColumns::Lookup found = columns.cell(name, rowId);
        if (found.outcome == FormulaColumns::Lookup::Missing) found = columns.constant(name);
        if (found.outcome != FormulaColumns::Lookup::Found) continue;
        if (found.status != S_OK) return found.status;
        // An empty value leaves the name: the engine decides what the bare word means.
        if (!found.text.isEmpty())
            *working = FormulaTokens::replace(*working, name, pasted(found).view());
    }
    return S_OK;
}

bool FormulaEvaluator::listNames(FormulaColumns& columns, std::vector<String>* names) {
    std::int32_t count = 0;
    if (columns.count(&count) != S_OK) return false;
    names->assign(static_cast<std::size_t>(count), String());
    for (std::int32_t i = 0; i < count; ++i)
        columns.name(i, &(*names)[static_cast<std::size_t>(i)]);
    return true;
}

HRESULT FormulaEvaluator::evaluateText(FormulaColumns& columns, Host& host, const String& rowId,
                                       const String& formula, Variant* result) {
    return guarded([&] {
        String working;
        HRESULT hr = substitute(columns, rowId, formula, &working);
        if (hr != S_OK) return hr;
        if (working.isNull()) return E_OUTOFMEMORY;

        // Released in the order engine, parse interface, site.
        Ref<CScriptSite> site;
        Ref<IActiveScriptParse> parse;
        Ref<IActiveScript> script;
        if (FAILED(hr = createScriptEngine(&script))) return hr;
        site = CScriptSite::create(host.scriptItem());
        if (FAILED(hr = script->SetScriptSite(site))) return hr;
        if (!(parse = query<IActiveScriptParse>(script))) return E_NOINTERFACE;
        if (FAILED(hr = parse->InitNew())) return hr;
        if (FAILED(hr = script->AddNamedItem(CScriptSite::itemName, SCRIPTITEM_ISVISIBLE)))
            return hr;

        ScriptExceptionRecord exception;
        hr = parse->ParseScriptText(working, CScriptSite::itemName, nullptr, String(), 0, 0,
                                    SCRIPTTEXT_ISEXPRESSION, result, &exception);
        if (hr == S_OK) return S_OK;
        String columnName, tableText, partText;
        host.describe(&columnName, &tableText, &partText);
        const String text =
            errorText(exception.description, formula, working, columnName, tableText, partText);
        reportError(host.reportSource(), text, hr, exception.helpContext, exception.helpFile);
        return hr;
    });
}

String FormulaEvaluator::errorText(const String& description, const String& formula,
                                   const String& working, const String& columnName,
                                   const String& tableText, const String& partText) {
    const std::array<const String*, kErrorLabels.size()> values = {
        &formula, &working, &columnName, &tableText, &partText,
    };
    std::string text(description.view());
    text += kErrorHead;
    for (std::size_t i = 0; i < kErrorLabels.size(); ++i) {
        text += kErrorLabels[i];
        text += values[i]->view();
        text += '\n';
    }
    return String(std::move(text));
}

FormulaRun::FormulaRun(FormulaColumns& columns, FormulaEvaluator::Host& host, const String& formula)
    : columns_(columns), host_(host), formula_(formula) {
    guarded([&] {
        std::vector<String> names;
        if (FormulaEvaluator::listNames(columns_, &names))
            template_ = FormulaTemplate::build(formula_, names, GetUserLocale());
        return S_OK;
    });
}

HRESULT FormulaRun::evaluate(const String& rowId, Variant* result) {
    if (template_) {
        bool handled = false;
        const HRESULT hr =
            guarded([&] { return template_->evaluate(columns_, rowId, result, &handled); });
        if (handled || FAILED(hr)) return hr;
    }
    return FormulaEvaluator::evaluateText(columns_, host_, rowId, formula_, result);
}

} // namespace qvr
