// Table-driven checks of the formula engine: each case is an expression and the line vbs-eval
// would print for it ("<VarType>\t<value>" or "error\t<number>\t<description>").
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include <qvr/variant.h>

#include <gtest/gtest.h>

#include "common/user_locale.h"
#include "vbscript/script_engine.h"
#include "vbscript/value_text.h"

namespace qvr::vbscript::testing {

struct Case {
    const char* expression;
    const char* expected;
};

inline std::string evaluateLine(ScriptEngine& engine, std::string_view expression) {
    Variant value;
    ScriptException error;
    HRESULT hr = engine.evaluate(String(expression), &value, &error);
    if (SUCCEEDED(hr)) return describeValue(value);
    return "error\t" + std::to_string(error.number) + "\t" + error.description.str();
}

inline std::string evaluateLine(std::string_view expression) {
    ScriptEngine engine;
    return evaluateLine(engine, expression);
}

// Every case under `lcid`, each in a fresh engine; the user locale is restored afterwards.
inline void expectCases(std::initializer_list<Case> cases, LCID lcid = LCID_EN_US) {
    qvr::testing::UserLocale locale(lcid);
    for (const Case& c : cases) EXPECT_EQ(evaluateLine(c.expression), c.expected) << c.expression;
}

} // namespace qvr::vbscript::testing
