#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <qvr/error_info.h>

#include "formulas/formula_evaluator.h"
#include "platform/com/object_base.h"
#include "vbscript/script_engine.h"
#include "vbscript/script_object.h"

namespace qvr {
namespace {

// The columns of a table as plain data. A lookup compares names exactly, as a selection does.
class FakeColumns : public FormulaColumns {
public:
    struct Column {
        std::optional<std::string> name;
        bool isConst = false;
        std::string dataType = "int";
        std::map<std::string, std::string> cells; // row id → text
        std::optional<std::string> constant;
    };

    FakeColumns& add(Column column) {
        columns.push_back(std::move(column));
        return *this;
    }

    HRESULT count(std::int32_t* count) override {
        *count = static_cast<std::int32_t>(columns.size());
        return listStatus;
    }
    HRESULT name(std::int32_t index, String* name) override {
        const Column& c = columns.at(static_cast<std::size_t>(index));
        if (!c.name) return S_FALSE;
        *name = *c.name;
        return S_OK;
    }
    Lookup cell(const String& name, const String& rowId) override {
        Lookup found;
        if (name.view().find('\'') != std::string_view::npos) found.outcome = Lookup::Broken;
        for (const Column& c : columns) {
            if (found.outcome != Lookup::Missing) break;
            if (c.isConst || c.name != name.str()) continue;
            auto cell = c.cells.find(rowId.str());
            if (cell == c.cells.end()) continue;
            found = {Lookup::Found, S_OK, cell->second, c.dataType == "string"};
        }
        return found;
    }
    Lookup constant(const String& name) override {
        for (const Column& c : columns) {
            if (!c.isConst || c.name != name.str()) continue;
            if (!c.constant) return {Lookup::Found, S_FALSE, String(), false};
            return {Lookup::Found, S_OK, *c.constant, c.dataType == "string"};
        }
        return {};
    }

    std::vector<Column> columns;
    HRESULT listStatus = S_OK;
};

// The calculated column: reachable from formulas, with a name, a table and a part.
class FakeHost : public FormulaEvaluator::Host {
public:
    class Item : public ObjectBase<vbscript::IScriptObject> {
    public:
        HRESULT invoke(const String& member, const Variant*, int, Variant* result) override {
            if (!member.equalsIgnoreCase("Name")) return DISP_E_MEMBERNOTFOUND;
            *result = Variant("Weight");
            return S_OK;
        }
    };

    IUnknown* scriptItem() override { return item.get(); }
    void describe(String* columnName, String* tableText, String* partText) override {
        *columnName = "Weight";
        *tableText = table;
        *partText = part;
    }
    ErrorSource reportSource() const override { return {"Test.Calc", IUnknown::iid}; }

    Ref<Item> item = makeObject<Item>();
    String table = "Bolts DIN 933";
    String part = "Hexagon bolt";
};

class FormulaEvaluation : public ::testing::Test {
protected:
    FormulaEvaluation() {
        columns.add({"Length", false, "int", {{"R1", "25"}, {"R2", ""}}, {}})
            .add({"Thread", false, "string", {{"R1", "M8"}}, {}})
            .add({"Density", true, "float", {}, "7.85"});
    }
    std::string substituted(const char* formula, const char* row = "R1") {
        String working;
        status = FormulaEvaluator::substitute(columns, row, formula, &working);
        return working.str();
    }
    Variant evaluated(const char* formula, const char* row = "R1") {
        Variant result;
        status = FormulaEvaluator::evaluate(columns, host, row, formula, &result);
        return result;
    }

    FakeColumns columns;
    FakeHost host;
    HRESULT status = E_UNEXPECTED;
};

TEST_F(FormulaEvaluation, Substitution) {
    // Names outside strings are replaced, inside they stay; only "string" columns are quoted.
    EXPECT_EQ(substituted("Length & \" Length \" & Thread & Density"),
              "25 & \" Length \" & \"M8\" & 7.85");
    EXPECT_EQ(status, S_OK);
    // Case ignored in the formula; the lookup uses the name as the column has it.
    EXPECT_EQ(substituted("LENGTH*2+length"), "25*2+25");
    EXPECT_EQ(substituted("Length2 + Length"), "Length2 + 25");
    // An empty cell and a row without a cell leave the name.
    EXPECT_EQ(substituted("Length + Thread", "R2"), "Length + Thread");
    EXPECT_EQ(substituted("Length + 1", "R9"), "Length + 1");
    // Without any name the formula goes on unchanged.
    EXPECT_EQ(substituted("(3 + 4) * 2"), "(3 + 4) * 2");
}

TEST_F(FormulaEvaluation, ValuesAreSubstitutedAgainByLaterColumns) {
    FakeColumns chain;
    chain.add({"A", false, "int", {{"R1", "B"}}, {}})
        .add({"S", false, "string", {{"R1", "B"}}, {}})
        .add({"B", false, "int", {{"R1", "7"}}, {}});
    String working;
    // A's bare value names B, which comes later and is replaced in turn; S's quoted value is not.
    EXPECT_EQ(FormulaEvaluator::substitute(chain, "R1", "A + S", &working), S_OK);
    EXPECT_EQ(working, "7 + \"B\"");
    // An earlier column is not visited again.
    FakeColumns backwards;
    backwards.add({"B", false, "int", {{"R1", "7"}}, {}})
        .add({"A", false, "int", {{"R1", "B"}}, {}});
    EXPECT_EQ(FormulaEvaluator::substitute(backwards, "R1", "A", &working), S_OK);
    EXPECT_EQ(working, "B");
}

TEST_F(FormulaEvaluation, WalksThatEndEarly) {
    // A const column without `constant`, named in the formula: S_FALSE, no value.
    columns.add({"Rate", true, "float", {}, std::nullopt});
    Variant result = evaluated("Rate * Length");
    EXPECT_EQ(status, S_FALSE);
    EXPECT_TRUE(result.isEmpty());
    // Not named: the column is passed over.
    EXPECT_EQ(evaluated("Length + 1").i2(), 26);
    EXPECT_EQ(status, S_OK);
    // A column without a name ends every walk that reaches it.
    columns.add({std::nullopt, false, "int", {}, {}});
    EXPECT_TRUE(evaluated("1 + 1").isEmpty());
    EXPECT_EQ(status, S_FALSE);
    // A failing list ends before anything else.
    columns.listStatus = E_FAIL;
    evaluated("1");
    EXPECT_EQ(status, E_FAIL);
    // A broken lookup passes the column over and leaves its name.
    FakeColumns odd;
    odd.add({"it's", false, "int", {{"R1", "1"}}, {}});
    String working;
    EXPECT_EQ(FormulaEvaluator::substitute(odd, "R1", "it's + 1", &working), S_OK);
    EXPECT_EQ(working, "it's + 1");
}

TEST_F(FormulaEvaluation, TheEngineDecides) {
    Variant value = evaluated("Length * 2 + Len(Thread)");
    EXPECT_EQ(status, S_OK);
    EXPECT_EQ(value.vt(), VT_I4); // Len gives a Long
    EXPECT_EQ(value.i4(), 52);
    // The name left for an empty cell is an unknown word: Empty.
    value = evaluated("IsEmpty(Length)", "R2");
    EXPECT_EQ(value.vt(), VT_BOOL);
    EXPECT_EQ(value.boolVal(), VARIANT_TRUE);
    // The calculated column itself is a named item.
    EXPECT_EQ(evaluated("QVRTableCalculatedColumn.Name & Length").str(), "Weight25");
}

TEST_F(FormulaEvaluation, RefusedFormulasAreReportedWithEveryLabel) {
    ClearErrorInfo();
    Variant result = evaluated("Length + * Thread");
    EXPECT_EQ(status, vbscript::OLESCRIPT_E_SYNTAX);
    EXPECT_TRUE(result.isEmpty());
    ErrorInfo info;
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(info.description.str(),
              "Expected expression while interpreting Formula in calulated column.\n\n"
              "Formula: Length + * Thread\n"
              "Evaluated :25 + * \"M8\"\n"
              "Column Name: Weight\n"
              "Table : Bolts DIN 933\n"
              "Part: Hexagon bolt\n");
    EXPECT_EQ(info.source, "Test.Calc");

    // A run-time fault, with nothing to say about table and part.
    host.table = String();
    host.part = String();
    evaluated("Length / 0");
    EXPECT_EQ(status, DISP_E_EXCEPTION);
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(info.description.str(),
              "Division by zero while interpreting Formula in calulated column.\n\n"
              "Formula: Length / 0\nEvaluated :25 / 0\nColumn Name: Weight\nTable : \nPart: \n");
}

} // namespace
} // namespace qvr
