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
    Sech    // only derivatives use it
};

/// Function::most of a function that takes any number of arguments.
constexpr int kAnyNumber = 1 << 30;

/// All that the engine knows about one function of the expression language.
///
/// `value1` or `value2` computes a function, or `expand` builds it from others. A function
/// with both, such as `min`, uses `expand` to turn a call with many arguments into calls
/// with two.
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

    /// An interval of all values for arguments in the given intervals. Set together with
    /// value1 or value2.
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

/// The rows with that name in any case, which differ in their numbers of arguments;
/// empty if no function has that name.
std::span<const Function> functionsNamed(std::wstring_view name);

/// The function name closest to `name`; empty if it takes more than two edits to get
/// there, or more than one for up to three letters.
std::string_view closestFunctionName(std::wstring_view name);

}  // namespace mf::engine
