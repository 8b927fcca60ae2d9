// Fuzz target of the formula engine: any bytes as an expression must compile or fail with a
// language error, and whatever compiles must evaluate or fail with one, without crashing,
// leaking or touching memory it does not own.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vbscript/script_engine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qvr;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    vbscript::ScriptEngine engine;
    engine.setParseCacheEnabled(false);
    Variant value;
    vbscript::ScriptException error;
    engine.evaluate(String(text), &value, &error);
    return 0;
}
