#include <qvr/error_info.h>

#include "eval_cases.h"
#include "platform/com/error_report.h"
#include "platform/com/object_base.h"
#include "vbscript/parse_cache.h"

namespace qvr::vbscript::testing {
namespace {

// A host object: "Length" 12.5, "Name" "Bolt", "Scale(x)" doubles its argument, "Child"
// another object, "Fail" reports a failure of its own; its default value is 7.
class FakeColumn : public ObjectBase<IScriptObject> {
public:
    HRESULT invoke(const String& name, const Variant* args, int argc, Variant* result) override {
        std::string_view n = name.view();
        if (n.empty()) {
            *result = argc == 1 ? Variant(std::int32_t{100}) : Variant(std::int16_t{7});
            return S_OK;
        }
        if (String(n).equalsIgnoreCase("Length"))
            *result = Variant(12.5);
        else if (n == "Name")
            *result = Variant("Bolt");
        else if (n == "Scale") {
            if (argc != 1) return DISP_E_BADPARAMCOUNT;
            Variant out;
            HRESULT hr = varMul(args[0], Variant(std::int16_t{2}), &out);
            if (FAILED(hr)) return hr;
            *result = out;
        } else if (n == "Child")
            *result = Variant(static_cast<IUnknown*>(this));
        else if (n == "Fail") {
            return reportError({"Test.Column", IScriptObject::iid}, String("The column broke."),
                               E_FAIL);
        } else
            return DISP_E_MEMBERNOTFOUND;
        return S_OK;
    }
};

class VbscriptEngine : public ::testing::Test {
protected:
    VbscriptEngine() {
        column_ = makeObject<FakeColumn>();
        engine_.addNamedItem("QVRTableCalculatedColumn", column_.get());
    }
    std::string eval(std::string_view text) { return evaluateLine(engine_, text); }

    Ref<FakeColumn> column_;
    ScriptEngine engine_;
};

TEST_F(VbscriptEngine, NamedItemsAndMembers) {
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Length * 2"), "5\t25");
    EXPECT_EQ(eval("qvrtablecalculatedcolumn.LENGTH"), "5\t12.5");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Name & \"-M8\""), "8\t\"Bolt-M8\"");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Scale(21)"), "2\t42");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Child.Child.Name"), "8\t\"Bolt\"");
    EXPECT_EQ(eval("QVRTableCalculatedColumn + 1"), "2\t8"); // the default value
    EXPECT_EQ(eval("QVRTableCalculatedColumn(1)"), "3\t100");
    EXPECT_EQ(eval("IsObject(QVRTableCalculatedColumn)"), "11\tTrue");
    EXPECT_EQ(eval("TypeName(QVRTableCalculatedColumn)"), "8\t\"Object\"");
    EXPECT_EQ(eval("QVRTableCalculatedColumn Is QVRTableCalculatedColumn.Child"), "11\tTrue");
    EXPECT_EQ(eval("QVRTableCalculatedColumn"), "9\tObject");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Missing"),
              "error\t438\tObject doesn't support this property or method: "
              "'QVRTableCalculatedColumn.Missing'");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Scale(1, 2)"),
              "error\t450\tWrong number of arguments or invalid property assignment: "
              "'QVRTableCalculatedColumn.Scale'");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Scale(\"x\")"),
              "error\t13\tType mismatch: 'QVRTableCalculatedColumn.Scale'");
    EXPECT_EQ(eval("OtherItem.Length"), "error\t424\tObject required: 'OtherItem'");

    // A failure of the host's own passes through with its status and description.
    Variant value;
    ScriptException error;
    EXPECT_EQ(engine_.evaluate("QVRTableCalculatedColumn.Fail", &value, &error), DISP_E_EXCEPTION);
    EXPECT_EQ(error.scode, E_FAIL);
    EXPECT_EQ(error.description, "The column broke.");
    EXPECT_TRUE(value.isEmpty());
}

TEST_F(VbscriptEngine, NamedItemRules) {
    EXPECT_EQ(engine_.addNamedItem("", column_.get()), E_INVALIDARG);
    EXPECT_EQ(engine_.addNamedItem("X", nullptr), E_INVALIDARG);
    // Another engine knows nothing of this one's items, though it shares compiled programs.
    ScriptEngine other;
    EXPECT_EQ(evaluateLine(other, "QVRTableCalculatedColumn.Length"),
              "error\t424\tObject required: 'QVRTableCalculatedColumn'");
    EXPECT_EQ(eval("QVRTableCalculatedColumn.Length"), "5\t12.5");
}

TEST_F(VbscriptEngine, ExceptionRecords) {
    Variant value(std::int16_t{5});
    ScriptException error;
    EXPECT_EQ(engine_.evaluate("CInt(\"x\")", &value, &error), DISP_E_EXCEPTION);
    EXPECT_EQ(value, Variant(std::int16_t{5})); // untouched on failure
    EXPECT_EQ(error.number, 13);
    EXPECT_EQ(error.scode, makeStatus(0x800A000D));
    EXPECT_EQ(error.description, "Type mismatch: 'CInt'");
    EXPECT_EQ(error.source, "Microsoft VBScript runtime error");
    EXPECT_EQ(error.helpFile, "");
    EXPECT_EQ(error.helpContext, 0u);
    EXPECT_EQ(error.line, -1);

    EXPECT_EQ(engine_.evaluate("1 + _\n  (2 * 3", &value, &error), OLESCRIPT_E_SYNTAX);
    EXPECT_EQ(error.number, 1006);
    EXPECT_EQ(error.scode, makeStatus(0x800A03EE));
    EXPECT_EQ(error.source, "Microsoft VBScript compilation error");
    EXPECT_EQ(error.description, "Expected ')'");
    EXPECT_EQ(error.line, 1);
    EXPECT_EQ(error.column, 8);

    EXPECT_EQ(engine_.evaluate("\"é\" @", &value, &error), OLESCRIPT_E_SYNTAX);
    EXPECT_EQ(error.column, 4); // characters, not bytes

    EXPECT_EQ(engine_.evaluate("1", nullptr, &error), E_POINTER);
    EXPECT_EQ(engine_.evaluate("1/0", &value, nullptr), DISP_E_EXCEPTION);
    EXPECT_EQ(engine_.evaluate(String(), &value, nullptr), S_OK);
    EXPECT_TRUE(value.isEmpty());
}

TEST_F(VbscriptEngine, TheParseCacheChangesNothingObservable) {
    ParseCache::clear();
    const char* formulas[] = {"12 * 2 + 5.5", "Left(\"abc\" & 5, 2)",           "1/0", "1 +",
                              "Rnd",          "QVRTableCalculatedColumn.Length"};
    std::vector<std::string> first;
    for (const char* f : formulas) first.push_back(eval(f));
    EXPECT_EQ(ParseCache::size(), 5u); // a text that does not compile is not kept
    ScriptEngine uncached;
    uncached.addNamedItem("QVRTableCalculatedColumn", column_.get());
    uncached.setParseCacheEnabled(false);
    for (std::size_t i = 0; i < std::size(formulas); ++i) {
        EXPECT_EQ(eval(formulas[i]), i == 4 ? "4\t0.533424" : first[i]) << formulas[i];
        EXPECT_EQ(evaluateLine(uncached, formulas[i]), first[i]) << formulas[i];
    }
    // Folded constants follow the locale the text is evaluated under.
    EXPECT_EQ(eval("1.5 & \"\""), "8\t\"1.5\"");
    qvr::testing::UserLocale german(LCID_DE_DE);
    EXPECT_EQ(eval("1.5 & \"\""), "8\t\"1,5\"");
}

TEST_F(VbscriptEngine, EachEngineStartsItsOwnRandomSequence) {
    ScriptEngine a, b;
    EXPECT_EQ(evaluateLine(a, "Rnd"), "4\t0.7055475");
    EXPECT_EQ(evaluateLine(a, "Rnd"), "4\t0.533424");
    EXPECT_EQ(evaluateLine(b, "Rnd"), "4\t0.7055475");
    EXPECT_EQ(evaluateLine(a, "Rnd(0)"), "4\t0.533424");
}

} // namespace
} // namespace qvr::vbscript::testing
