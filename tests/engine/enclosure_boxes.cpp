// SPDX-License-Identifier: MIT

// Encloses every function of the expression language over many random boxes, and compares with
// MPFR: the exact value at a random point of the box, to 200 bits, is inside the enclosure.
//
//     enclosure_boxes [BOXES]        1,000,000 boxes for each function without a number
//
// Not one of the tests, which use 10,000 boxes and values in doubles. It is built if MPFR is found
// (Debian: libmpfr-dev). Exit status 1: a value is outside its enclosure.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mpfr.h>
#include <random>
#include <string>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/intervalRules.h"

namespace {

using mf::engine::Function;
using mf::engine::FunctionId;
using mf::engine::Interval;

constexpr mpfr_prec_t kBits = 200;

class Number {
public:
    explicit Number(double value = 0.0)
    {
        mpfr_init2(number_, kBits);
        mpfr_set_d(number_, value, MPFR_RNDN);
    }
    ~Number() { mpfr_clear(number_); }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;
    mpfr_ptr get() { return number_; }

private:
    mpfr_t number_;
};

using One = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
using Two = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

int sign(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t)
{
    return mpfr_set_si(y, mpfr_sgn(x), MPFR_RNDN);
}

int trunc(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t)
{
    return mpfr_trunc(y, x);
}

int floor(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t)
{
    return mpfr_floor(y, x);
}

int ceil(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t)
{
    return mpfr_ceil(y, x);
}

int nearest(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t)
{
    return mpfr_round(y, x);
}

int signOf(mpfr_ptr y, mpfr_srcptr a, mpfr_srcptr b, mpfr_rnd_t)
{
    mpfr_abs(y, a, MPFR_RNDN);
    return mpfr_sgn(b) < 0 ? mpfr_neg(y, y, MPFR_RNDN) : 0;
}

// The sign of a zero is ignored, as in the engine.
int angle(mpfr_ptr z, mpfr_srcptr y, mpfr_srcptr x, mpfr_rnd_t rounding)
{
    const bool isOnAxis = mpfr_zero_p(y) != 0;
    if (isOnAxis && (mpfr_zero_p(x) != 0 || mpfr_sgn(x) > 0)) {
        mpfr_set_zero(z, 1);
        return 0;
    }
    if (isOnAxis)
        return mpfr_const_pi(z, rounding);
    return mpfr_atan2(z, y, x, rounding);
}

const std::map<FunctionId, One> kOnes = {
    {FunctionId::Sin, mpfr_sin},   {FunctionId::Cos, mpfr_cos},     {FunctionId::Tan, mpfr_tan},
    {FunctionId::Asin, mpfr_asin}, {FunctionId::Acos, mpfr_acos},   {FunctionId::Atan, mpfr_atan},
    {FunctionId::Sinh, mpfr_sinh}, {FunctionId::Cosh, mpfr_cosh},   {FunctionId::Tanh, mpfr_tanh},
    {FunctionId::Sech, mpfr_sech}, {FunctionId::Exp, mpfr_exp},     {FunctionId::Ln, mpfr_log},
    {FunctionId::Log, mpfr_log},   {FunctionId::Log10, mpfr_log10}, {FunctionId::Sqrt, mpfr_sqrt},
    {FunctionId::Cbrt, mpfr_cbrt}, {FunctionId::Abs, mpfr_abs},     {FunctionId::Sign, sign},
    {FunctionId::Int, trunc},      {FunctionId::Nint, nearest},     {FunctionId::Floor, floor},
    {FunctionId::Ceil, ceil}};

const std::map<FunctionId, Two> kTwos = {{FunctionId::Atan2, angle},   {FunctionId::Hypot, mpfr_hypot},
                                         {FunctionId::SignOf, signOf}, {FunctionId::Min, mpfr_min},
                                         {FunctionId::Max, mpfr_max},  {FunctionId::Mod, mpfr_fmod},
                                         {FunctionId::Dim, mpfr_dim},  {FunctionId::Power, mpfr_pow}};

class Boxes {
public:
    // One of five is of any size that doubles have.
    Interval next(double largest)
    {
        const double size = uniform(0.0, 1.0) < 0.2 ? std::pow(10.0, uniform(-320.0, 307.0))
                                                    : largest * std::pow(10.0, uniform(-6.0, 0.0));
        double from = uniform(-size, size);
        if (uniform(0.0, 1.0) < 0.2)
            from = std::round(from);
        const double length = size * std::pow(10.0, uniform(-16.0, 0.3));
        return {from, uniform(0.0, 1.0) < 0.1 ? from : from + length};
    }
    double inside(const Interval& box)
    {
        const double share = uniform(-0.1, 1.1);  // ends too
        return share <= 0.0   ? box.lo
               : share >= 1.0 ? box.hi
                              : std::min(box.lo + share * (box.hi - box.lo), box.hi);
    }

private:
    double uniform(double from, double to)
    {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }

    std::mt19937_64 random_{1};
};

// Whether the enclosure contains the exact value. If that does not exist or is infinite, the enclosure has to
// say so.
bool holds(const Interval& y, mpfr_ptr exact)
{
    if (!mpfr_number_p(exact))
        return y.partial || !y.isFinite();
    const bool above = !(y.lo == y.lo) || mpfr_cmp_d(exact, y.lo) >= 0;
    const bool below = !(y.hi == y.hi) || mpfr_cmp_d(exact, y.hi) <= 0;
    return above && below && !y.isNothing();
}

bool check(const Function& function, long boxes)
{
    Boxes random;
    Number x, y, value;
    const bool isPower = function.id == FunctionId::Power;
    for (long i = 0; i < boxes; ++i) {
        const Interval a = random.next(1e3);
        mpfr_set_d(x.get(), random.inside(a), MPFR_RNDN);
        Interval found;
        Interval b;
        if (const auto one = kOnes.find(function.id); one != kOnes.end()) {
            one->second(value.get(), x.get(), MPFR_RNDN);
            found = function.interval1(a);
        } else {
            b = random.next(isPower ? 10.0 : 1e3);
            mpfr_set_d(y.get(), random.inside(b), MPFR_RNDN);
            kTwos.at(function.id)(value.get(), x.get(), y.get(), MPFR_RNDN);
            found = function.interval2(a, b);
        }
        if (holds(found, value.get()))
            continue;
        mpfr_printf(
            "%s: over [%.17g, %.17g] and [%.17g, %.17g] at %.17Rg, %.17Rg: %.25Rg is not in [%.17g, "
            "%.17g]%s\n",
            std::string(function.name).c_str(), a.lo, a.hi, b.lo, b.hi, x.get(), y.get(), value.get(),
            found.lo, found.hi, found.partial ? " partial" : "");
        return false;
    }
    std::printf("%s: %ld boxes\n", std::string(function.name).c_str(), boxes);
    std::fflush(stdout);
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    const long boxes = argc > 1 ? std::atol(argv[1]) : 1'000'000;
    bool ok = true;
    for (const Function& function : mf::engine::functions()) {
        if (function.value1 == nullptr && function.value2 == nullptr)
            continue;
        if (kOnes.count(function.id) == 0 && kTwos.count(function.id) == 0) {
            std::printf("%s: no function of MPFR is known for it\n", std::string(function.name).c_str());
            ok = false;
            continue;
        }
        ok &= check(function, boxes);
    }
    return ok ? 0 : 1;
}
