#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formulas/formula_evaluator.h"
#include "formulas/formula_template.h"
#include "vbscript/script_engine.h"
#include "vbscript/value_text.h"

namespace qvr {
namespace {

// Columns held in the test: a value (or none) per column, by exact name.
class HeldColumns final : public FormulaColumns {
public:
    struct Held {
        String name;
        bool isConst = false;
        bool isString = false;
        bool hasValue = true;
        String value;
    };
    std::vector<Held> held;

    HRESULT count(std::int32_t* n) override {
        *n = static_cast<std::int32_t>(held.size());
        return S_OK;
    }
    HRESULT name(std::int32_t i, String* name) override {
        if (name) *name = held[static_cast<std::size_t>(i)].name;
        return S_OK;
    }
    Lookup cell(const String& name, const String&) override { return find(name, false); }
    Lookup constant(const String& name) override { return find(name, true); }

private:
    Lookup find(const String& name, bool isConst) {
        Lookup found;
        for (const Held& h : held) {
            if (h.isConst != isConst || h.name != name || !h.hasValue) continue;
            found.outcome = Lookup::Found;
            found.text = h.value;
            found.isString = h.isString;
            break;
        }
        return found;
    }
};

// What pasting the text gives: status and value shown with its type.
std::string pasted(HeldColumns& columns, const String& formula) {
    String working;
    HRESULT hr = FormulaEvaluator::substitute(columns, "R1", formula, &working);
    if (hr != S_OK) return "status " + std::to_string(hr);
    vbscript::ScriptEngine engine;
    Variant value;
    if ((hr = engine.evaluate(working, &value, nullptr)) != S_OK)
        return "status " + std::to_string(hr);
    return vbscript::describeValue(value);
}

// The template's answer where it gives one.
bool templated(FormulaTemplate& shape, HeldColumns& columns, std::string* answer) {
    bool handled = false;
    Variant value;
    const HRESULT hr = shape.evaluate(columns, "R1", &value, &handled);
    if (handled)
        *answer = hr == S_OK ? vbscript::describeValue(value) : "status " + std::to_string(hr);
    return handled;
}

std::vector<String> namesOf(const HeldColumns& columns) {
    std::vector<String> names;
    for (const auto& h : columns.held) names.push_back(h.name);
    return names;
}

// Every formula, with every tricky value in each column and either quoting, answers through the
// template exactly what pasting the text answers, or leaves the row to the text.
TEST(FormulaTemplate, AnswersWhatPastingTheTextAnswers) {
    const char* formulas[] = {
        "A * B + C",   "A & B",          "-A + B",        "A ^ B", "2 - A",     "A = B",
        "A < \"5\"",   "Len(A) + B",     "(A) * (B)",     "A.B",   "\"A\" & A", "x\"y A z\" & B",
        "A 'comment",  "A & #1/1/2000#", "CStr(A)&B",     "A, B",  "f(A)",      "A B",
        "A.5",         "Rnd() + A",      "&HA + B",       "1E-A",  "Abs(A)-B",  "Not A = B",
        "-A = \"-3\"", "(-A) < \"10\"",  "a * b * c + A",
    };
    const char* values[] = {
        "3",    "-3",    "+4", "2.5", "1E3",    "1e",  "007", "32768", "99999999999", "1.5.2",
        "abc",  "B",     "C",  "\"q", "a b",    " ",   "x,y", "",      "\xC3\xA9",    "3 ",
        "&H10", "1E400", "\n", "5e",  "0.5e-2", "- 3", "--3", "e3",
    };
    int answered = 0, checked = 0;
    for (const char* formula : formulas) {
        for (int quoted = 0; quoted < 2; ++quoted) {
            for (const char* value : values) {
                HeldColumns columns;
                columns.held = {{"A", false, quoted == 1, true, value},
                                {"B", false, false, true, "2"},
                                {"C", true, false, true, "5"}};
                auto shape = FormulaTemplate::build(formula, namesOf(columns), GetUserLocale());
                if (!shape) continue;
                ++checked;
                std::string answer;
                if (!templated(*shape, columns, &answer)) continue;
                ++answered;
                EXPECT_EQ(answer, pasted(columns, formula))
                    << formula << " with A = [" << value << "]" << (quoted ? " quoted" : "");
            }
        }
    }
    // The ordinary shapes are answered, not all left to the text.
    EXPECT_GT(answered, 150);
    EXPECT_GT(checked, answered);
}

// What substitution decides beyond the values: a column without a value leaves its name, a
// second column of the same name fills it, a bare value spelt like a later column's name is
// replaced again, and a quote in a name makes no template.
TEST(FormulaTemplate, FollowsSubstitutionColumnByColumn) {
    HeldColumns columns;
    columns.held = {{"Len", false, false, false, ""},
                    {"LEN", false, false, true, "4"},
                    {"X", false, false, true, "7"}};
    auto shape = FormulaTemplate::build("len * X", namesOf(columns), GetUserLocale());
    ASSERT_TRUE(shape);
    std::string answer;
    ASSERT_TRUE(templated(*shape, columns, &answer));
    EXPECT_EQ(answer, pasted(columns, "len * X"));

    // "len" stays a word for the engine when no column has a value for it.
    columns.held[1].hasValue = false;
    EXPECT_FALSE(templated(*shape, columns, &answer));

    // A number whose tokens spell a column's name could be pasted over again.
    columns.held = {{"A", false, false, true, "1.5e3"}, {"e3", false, false, true, "9"}};
    shape = FormulaTemplate::build("A + 1", namesOf(columns), GetUserLocale());
    ASSERT_TRUE(shape);
    EXPECT_FALSE(templated(*shape, columns, &answer));

    columns.held = {{"A\"", false, false, true, "1"}};
    EXPECT_FALSE(FormulaTemplate::build("A\" + 1", namesOf(columns), GetUserLocale()));
}

} // namespace
} // namespace qvr
