#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "mfcurves/engine/graph.h"

namespace mf::engine {

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

/// As many arguments as one likes.
constexpr int kAnyNumber = 1 << 30;

/// One function of the expression language: all that is known about it.
///
/// A function of one or two arguments is computed by `value1` or `value2`; any
/// other is made of such by `expand`.
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

    /// The derivative of f = function(a) with respect to a.
    NodeId (*slope1)(Graph& graph, NodeId f, NodeId a) = nullptr;
    /// The derivative of f = function(a, b), where a and b have the derivatives da and db.
    NodeId (*slope2)(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db) = nullptr;

    NodeId (*expand)(Graph& graph, std::span<const NodeId> arguments) = nullptr;
};

/// All rows, in the order of FunctionId.
std::span<const Function> functions();

const Function& function(FunctionId id);

/// The function of that name (any case) that takes `argumentCount` arguments;
/// if none takes as many, one of that name; null when there is none.
const Function* findFunction(std::wstring_view name, int argumentCount);

/// The name among those of the functions that is closest to `name`, empty when
/// none is close.
std::string_view closestFunctionName(std::wstring_view name);

}  // namespace mf::engine
