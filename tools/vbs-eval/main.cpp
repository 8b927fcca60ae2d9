// vbs-eval: evaluates VBScript expressions, one per line of standard input, and prints one line
// for each: "<VarType>\t<value>" or "error\t<number>\t<description>". Values are written in a
// canonical text: numbers as CStr writes them under en-US, strings in double quotes with inner
// quotes doubled, True/False, Empty, Null, dates as yyyy-mm-ddThh:mm:ss, arrays as
// Array(a, b). A line that does not compile prints its compile error.
// Options: --locale LCID sets the user locale (default 1033).
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include <qvr/variant.h>

#include "vbscript/script_engine.h"
#include "vbscript/value_text.h"

using namespace qvr;
using namespace qvr::vbscript;

int main(int argc, char** argv) {
    LCID locale = LCID_EN_US;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--locale") == 0 && i + 1 < argc) {
            locale = static_cast<LCID>(std::strtoul(argv[++i], nullptr, 10));
        } else {
            std::fprintf(stderr, "usage: vbs-eval [--locale LCID] < expressions\n");
            return 2;
        }
    }
    SetUserLocale(locale);
    ScriptEngine engine;
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        Variant value;
        ScriptException error;
        HRESULT hr = engine.evaluate(String(line), &value, &error);
        if (SUCCEEDED(hr)) {
            std::cout << describeValue(value) << '\n';
        } else if (error.number != 0) {
            std::cout << "error\t" << error.number << '\t' << error.description << '\n';
        } else {
            std::cout << "error\t0\tstatus " << std::hex << static_cast<std::uint32_t>(hr)
                      << std::dec << '\n';
        }
    }
    return 0;
}
