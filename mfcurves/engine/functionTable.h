// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "mfcurves/engine/term.h"

namespace mf::engine {

struct Interval;

/// The rows of the function table, in its order.
enum class FunctionId : std::uint8_t {
    Sin,
    Cos,
    Tan,
    Asin,
    Acos,
    Atan,
    Atan2,
    Sinh,
    Cosh,
    Tanh,
    Exp,
    Ln,
    Log,
    Log10,
    Sqrt,
    Cbrt,
    Hypot,
    Abs,
    Sign,
    SignOf,
    Min,
    Max,
    Mod,
    Dim,
    Int,
    Nint,
    Floor,
    Ceil,
    If,
    Step,
    Step5,
    Havsin,
    Poly,
    Cheby,
    Shf,
    Forsin,
    Forcos,
    Power,  // the operator ^
    Sech    // only derivatives ask for it
};

/// Any number of arguments.
constexpr int kAnyNumber = 1 << 30;

/// One function of the expression language: all that is known about it.
///
/// A function is computed by `value1` or `value2`, or made of others by `expand`. Where
/// it has both, as `min` does, `expand` makes calls with two arguments of one with many.
struct Function {
    FunctionId id;
    std::string_view name;       // lower case; empty where texts cannot call it
    std::string_view arguments;  // as the reference page shows them
    int fewest = 1;
    int most = 1;
    std::string_view formula;
    std::string_view remarks = {};

    double (*value1)(double) = nullptr;
    double (*value2)(double, double) = nullptr;

    /// All values for arguments of the intervals; as many arguments as the value has.
    Interval (*interval1)(const Interval&) = nullptr;
    Interval (*interval2)(const Interval&, const Interval&) = nullptr;

    /// The derivative of f = function(a) with respect to a.
    Term (*slope1)(Term f, Term a) = nullptr;
    /// The derivative of f = function(a, b), where a and b have the derivatives da and db.
    Term (*slope2)(Term f, Term a, Term b, Term da, Term db) = nullptr;

    Term (*expand)(std::span<const Term> arguments) = nullptr;
};

/// All rows, in the order of FunctionId.
std::span<const Function> functions();

const Function& function(FunctionId id);

/// The rows of that name (any case), which differ in their numbers of arguments;
/// none when no function has that name.
std::span<const Function> functionsNamed(std::wstring_view name);

/// The name among those of the functions that is closest to `name`, empty when
/// none is close.
std::string_view closestFunctionName(std::wstring_view name);

}  // namespace mf::engine
