// SPDX-License-Identifier: MIT

#include "mfcurves/engine/branches.h"

#include <cmath>
#include <optional>

#include "mfcurves/engine/operations.h"
#include "mfcurves/engine/values.h"

namespace mf::engine {
namespace {

// The value of a step on one side of an x.
struct SideValue {
    double value;
    bool isSettled;  // the nearby point is not at an edge of the step itself
};

// Empty if the step is not at an edge at x.
using AtEdge = std::optional<SideValue>;

bool isFunction(const Step& step, FunctionId id)
{
    return (step.code == Code::Call1 || step.code == Code::Call2) && step.function == id;
}

AtEdge lessBeside(const Step& step, const double* here, const double* beside)
{
    const double p = beside[step.list[0]];
    const double q = beside[step.list[1]];
    if (here[step.list[0]] != here[step.list[1]])
        return {};
    return SideValue{chooseLessValue(p, q, here[step.list[2]], here[step.list[3]]), p != q};
}

AtEdge signBeside(const Step& step, const double* here, const double* beside)
{
    const double c = beside[step.list[0]];
    if (here[step.list[0]] != 0.0)
        return {};
    return SideValue{chooseSignValue(c, here[step.list[1]], here[step.list[2]], here[step.list[3]]),
                     c != 0.0};
}

AtEdge stepBeside(const Step& step, const double* here, const double* beside)
{
    const auto at = [&](std::size_t i) { return here[step.list[i]]; };
    const double x = beside[step.list[0]];
    const double x0 = beside[step.list[1]];
    const double x1 = beside[step.list[2]];
    if (at(0) != at(1) && at(0) != at(2))
        return {};
    return SideValue{chooseStepValue(x, x0, x1, at(3), at(4), at(5)), x != x0 && x != x1};
}

// A function of one argument that is constant between its jumps.
AtEdge jumpBeside(const Step& step, double a, double aBeside)
{
    const bool isAtEdge = isFunction(step, FunctionId::Sign)   ? a == 0.0
                          : isFunction(step, FunctionId::Nint) ? std::fabs(a - std::trunc(a)) == 0.5
                                                               : a == std::trunc(a);
    if (!isAtEdge)
        return {};
    return SideValue{step.value1(aBeside), a != aBeside};
}

// a mod b = a - k b with a whole k, which jumps where a mod b is 0.
AtEdge modBeside(double a, double b, double aBeside, double bBeside)
{
    if (std::fmod(a, b) != 0.0)
        return {};
    const double rest = std::fmod(aBeside, bBeside);
    const double k = std::round((aBeside - rest) / bBeside);
    return SideValue{a - k * b, rest != 0.0};
}

AtEdge callBeside(const Step& step, const double* here, const double* beside)
{
    const std::uint32_t operand = step.input == Stage::None ? step.a : step.moved;
    const double a = here[operand];
    const double aBeside = beside[operand];
    if (step.code == Code::Call1)
        return jumpBeside(step, a, aBeside);
    const double b = here[step.b];
    const double bBeside = beside[step.b];
    if (isFunction(step, FunctionId::Mod))
        return modBeside(a, b, aBeside, bBeside);
    if (isFunction(step, FunctionId::SignOf))
        return b == 0.0 ? AtEdge({signOfValue(a, bBeside), bBeside != 0.0}) : AtEdge();
    // The angle of a point jumps on the left half of the x axis.
    return a == 0.0 && b < 0.0 ? AtEdge({std::copysign(kPi, aBeside), aBeside != 0.0}) : AtEdge();
}

}  // namespace

bool mayBranch(const Step& step)
{
    switch (step.code) {
        case Code::ChooseLess:
        case Code::ChooseSign:
        case Code::ChooseStep:
            return true;
        case Code::Call1:
        case Code::Call2:
            for (const FunctionId id :
                 {FunctionId::Sign, FunctionId::Int, FunctionId::Nint, FunctionId::Floor, FunctionId::Ceil,
                  FunctionId::Mod, FunctionId::SignOf, FunctionId::Atan2})
                if (isFunction(step, id))
                    return true;
            return false;
        default:
            return false;
    }
}

bool takeBranchBeside(const Step& step, double* registers, const double* beside)
{
    if (!mayBranch(step))
        return true;
    const AtEdge side = step.code == Code::ChooseLess   ? lessBeside(step, registers, beside)
                        : step.code == Code::ChooseSign ? signBeside(step, registers, beside)
                        : step.code == Code::ChooseStep ? stepBeside(step, registers, beside)
                                                        : callBeside(step, registers, beside);
    if (!side)
        return true;
    registers[step.value] = side->value;
    if (step.output != Stage::None)
        registers[step.target] = throughStage<Stage::General>(side->value, step.after);
    return side->isSettled;
}

}  // namespace mf::engine
