// Abs, Atn, Cos, Exp, Fix, Int, Log, Round, Sgn, Sin, Sqr, Tan, Rnd, Randomize.
#include <cmath>
#include <cstring>
#include <ctime>

#include "vbscript/builtins.h"
#include "vbscript/operators.h"
#include "vbscript/runtime_support.h"
#include "vbscript/script_error.h"

namespace qvr::vbscript {
namespace {

using VariantFn = HRESULT (*)(const Variant&, Variant*);

// Functions of the platform that keep the argument's type (Abs, Fix, Int).
void keepType(VariantFn fn, Variant* args, Variant* out) {
    resolveDefault(args[0]);
    check(fn(args[0], out));
}

// Functions of a Double (Null is "Invalid use of Null", as for any typed argument).
template <double (*F)(double)>
void real(CallContext& cx, Variant* args, int, Variant* out) {
    double r = F(toDouble(args[0], cx.lcid));
    if (std::isinf(r)) raise(kOverflow);
    if (std::isnan(r)) raise(kInvalidCall);
    *out = Variant(r);
}

double atn(double x) {
    return std::atan(x);
}
double cosine(double x) {
    return std::cos(x);
}
double sine(double x) {
    return std::sin(x);
}
double tangent(double x) {
    return std::tan(x);
}
double exponential(double x) {
    return std::exp(x);
}
double logarithm(double x) {
    if (x <= 0) raise(kInvalidCall);
    return std::log(x);
}
double squareRoot(double x) {
    if (x < 0) raise(kInvalidCall);
    return std::sqrt(x);
}

void absFn(CallContext&, Variant* args, int, Variant* out) {
    keepType(varAbs, args, out);
}
void fixFn(CallContext&, Variant* args, int, Variant* out) {
    keepType(varFix, args, out);
}
void intFn(CallContext&, Variant* args, int, Variant* out) {
    keepType(varInt, args, out);
}

void roundFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    resolveDefault(args[0]);
    std::int32_t digits = optionalLong(args, argc, 1, 0, cx.lcid);
    if (digits < 0) raise(kInvalidCall);
    if (args[0].isNull()) {
        *out = Variant::null();
        return;
    }
    if (args[0].vt() == VT_BOOL) { // a whole value already, and it stays a Boolean
        *out = args[0];
        return;
    }
    Variant value = args[0];
    if (value.vt() == VT_BSTR || value.vt() == VT_EMPTY) value = convertTo(value, VT_R8, cx.lcid);
    if (value.vt() == VT_R8 && digits <= 15) {
        // Scaled by a power of ten, a value that lies clearly off a half rounds the same as its
        // exact decimal form would; only near-ties need the platform's exact rounding.
        static constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
        double scaled = value.r8() * kPowers[digits];
        double whole = std::floor(scaled);
        double fraction = scaled - whole;
        if (std::fabs(scaled) < 1e15 && std::fabs(fraction - 0.5) > 1e-6) {
            double rounded = (fraction < 0.5 ? whole : whole + 1) / kPowers[digits];
            *out = Variant(rounded == 0 ? 0.0 : rounded);
            return;
        }
    }
    check(varRound(value, digits, out));
}

void sgnFn(CallContext& cx, Variant* args, int, Variant* out) {
    double v = toDouble(args[0], cx.lcid);
    *out = Variant(static_cast<std::int16_t>(v > 0 ? 1 : v < 0 ? -1 : 0));
}

// The generator of the language: a 24-bit linear congruential sequence.
float nextRandom(RandomState& r) {
    r.seed = (r.seed * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
    return static_cast<float>(r.seed) / 16777216.0f;
}

void rndFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    RandomState local;
    RandomState& r = cx.random ? *cx.random : local;
    float result;
    if (!present(args, argc, 0)) {
        result = nextRandom(r);
    } else {
        float x = static_cast<float>(toDouble(args[0], cx.lcid));
        if (x < 0) {
            // A negative argument restarts the sequence from its own bits.
            std::uint32_t bits;
            std::memcpy(&bits, &x, sizeof bits);
            r.seed = (bits + (bits >> 24)) & 0xFFFFFFu;
            result = nextRandom(r);
        } else if (x == 0) {
            result =
                r.started ? static_cast<float>(r.last) : static_cast<float>(r.seed) / 16777216.0f;
        } else {
            result = nextRandom(r);
        }
    }
    r.started = true;
    r.last = result;
    *out = Variant(result);
}

void randomizeFn(CallContext& cx, Variant* args, int argc, Variant* out) {
    double seed;
    if (present(args, argc, 0)) {
        seed = toDouble(args[0], cx.lcid);
    } else {
        std::timespec ts{};
        std::timespec_get(&ts, TIME_UTC);
        seed = static_cast<double>(ts.tv_sec % 86400) + ts.tv_nsec / 1e9;
    }
    if (cx.random) {
        std::uint64_t bits;
        std::memcpy(&bits, &seed, sizeof bits);
        auto high = static_cast<std::uint32_t>(bits >> 32);
        std::uint32_t mixed = ((high & 0xFFFFu) ^ (high >> 16)) << 8;
        cx.random->seed = (mixed | (cx.random->seed & 0xFFu)) & 0xFFFFFFu;
    }
    // Randomize is a statement: it reseeds, but has no value to give an expression.
    (void)out;
    raise(kTypeMismatch);
}

constexpr Builtin kMath[] = {
    {"Abs", 1, 1, kPure, absFn},
    {"Atn", 1, 1, kPure, real<atn>},
    {"Cos", 1, 1, kPure, real<cosine>},
    {"Exp", 1, 1, kPure, real<exponential>},
    {"Fix", 1, 1, kPure, fixFn},
    {"Int", 1, 1, kPure, intFn},
    {"Log", 1, 1, kPure, real<logarithm>},
    {"Randomize", 0, 1, kVolatile, randomizeFn},
    {"Rnd", 0, 1, kVolatile, rndFn},
    {"Round", 1, 2, kPure, roundFn},
    {"Sgn", 1, 1, kPure, sgnFn},
    {"Sin", 1, 1, kPure, real<sine>},
    {"Sqr", 1, 1, kPure, real<squareRoot>},
    {"Tan", 1, 1, kPure, real<tangent>},
};

} // namespace

std::span<const Builtin> mathBuiltins() {
    return kMath;
}

} // namespace qvr::vbscript
