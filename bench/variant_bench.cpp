// Figures for the conversions and operators that every cell read and formula evaluation uses.
#include <benchmark/benchmark.h>

#include <qvr/variant.h>

namespace {

using namespace qvr;

void textToDouble(benchmark::State& state) {
    Variant text("1.234,5"), out;
    for (auto _ : state) {
        changeType(&out, text, LCID_DE_DE, 0, VT_R8);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(textToDouble);

void doubleToText(benchmark::State& state) {
    Variant number(1234.5678), out;
    for (auto _ : state) {
        changeType(&out, number, LCID_EN_US, 0, VT_BSTR);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(doubleToText);

void textToDate(benchmark::State& state) {
    Variant text("1/2/2000 3:04:05 PM"), out;
    for (auto _ : state) {
        changeType(&out, text, LCID_EN_US, 0, VT_DATE);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(textToDate);

void dateToText(benchmark::State& state) {
    Variant date = Variant::date(36527.627835648), out;
    for (auto _ : state) {
        changeType(&out, date, LCID_DE_DE, 0, VT_BSTR);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(dateToText);

void addIntegers(benchmark::State& state) {
    Variant a(std::int16_t{30000}), b(std::int16_t{5000}), out;
    for (auto _ : state) {
        varAdd(a, b, &out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(addIntegers);

void addTextAndNumber(benchmark::State& state) {
    Variant a("10"), b(5.5), out;
    for (auto _ : state) {
        varAdd(a, b, &out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(addTextAndNumber);

void compareText(benchmark::State& state) {
    Variant a("Bolt M8x40"), b("bolt m8x40");
    for (auto _ : state) benchmark::DoNotOptimize(varCmp(a, b, LCID_EN_US, NORM_IGNORECASE));
}
BENCHMARK(compareText);

} // namespace

BENCHMARK_MAIN();
