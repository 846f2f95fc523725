// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

#include "mfcurves/engine/polynomials.h"
#include "mfcurves/engine/program.h"
#include "mfcurves/engine/values.h"

/// The operations of steps, each written once: a function object, made from a step, that
/// takes the operands. Single points and blocks of points use the same ones.
namespace mf::engine {

/// Applies a stage with these constants to v.
template <Stage stage, class Number>
[[gnu::always_inline]] inline Number throughStage(Number v, const StageConstants& c)
{
    if constexpr (stage == Stage::None)
        return v;
    else if constexpr (stage == Stage::Linear)
        return v * c.factor + c.last;
    else if constexpr (stage == Stage::Shifted)
        return (v + c.first) * c.factor + c.last;
    else
        return (v + c.first) / c.divisor * c.factor + c.last;
}

// On one operand, which has passed through the input stage.

struct Move {
    explicit Move(const Step&) {}
    double operator()(double a) const { return a; }
};

struct Chebyshev {
    std::span<const double> coefficients;
    explicit Chebyshev(const Step& step) : coefficients(step.constants, step.terms) {}
    double operator()(double a) const { return chebyshevValue(a, coefficients); }
};

struct Call1 {
    double (*function)(double);
    explicit Call1(const Step& step) : function(step.value1) {}
    double operator()(double a) const { return function(a); }
};

// On the operands a and b.

struct Sum {
    double k0, k1;
    explicit Sum(const Step& step) : k0(step.constants[0]), k1(step.constants[1]) {}
    double operator()(double a, double b) const { return k0 * a + k1 * b; }
};

struct Product {
    explicit Product(const Step&) {}
    double operator()(double a, double b) const { return a * b; }
};

struct Quotient {
    double k0;
    explicit Quotient(const Step& step) : k0(step.constants[0]) {}
    double operator()(double a, double b) const { return a / (b + k0); }
};

struct Call2 {
    double (*function)(double, double);
    explicit Call2(const Step& step) : function(step.value2) {}
    double operator()(double a, double b) const { return function(a, b); }
};

// On a list of operands.

struct ProductPlus {
    static constexpr std::size_t kOperands = 3;
    double k0, k1;
    explicit ProductPlus(const Step& step) : k0(step.constants[0]), k1(step.constants[1]) {}
    double operator()(double p, double q, double r) const { return k0 * (p * q) + k1 * r; }
};

struct TwoProducts {
    static constexpr std::size_t kOperands = 4;
    double k0, k1;
    explicit TwoProducts(const Step& step) : k0(step.constants[0]), k1(step.constants[1]) {}
    double operator()(double p, double q, double r, double s) const { return k0 * (p * q) + k1 * (r * s); }
};

struct ProductOver {
    static constexpr std::size_t kOperands = 3;
    double k0;
    explicit ProductOver(const Step& step) : k0(step.constants[0]) {}
    double operator()(double p, double q, double r) const { return p * q / (r + k0); }
};

struct ProductPlusOver {
    static constexpr std::size_t kOperands = 4;
    double k0, k1, k2;
    explicit ProductPlusOver(const Step& step)
        : k0(step.constants[0]), k1(step.constants[1]), k2(step.constants[2])
    {
    }
    double operator()(double p, double q, double r, double s) const
    {
        return (k0 * (p * q) + k1 * r) / (s + k2);
    }
};

struct ChooseLess {
    static constexpr std::size_t kOperands = 4;
    explicit ChooseLess(const Step&) {}
    double operator()(double p, double q, double ifLess, double otherwise) const
    {
        return chooseLessValue(p, q, ifLess, otherwise);
    }
};

struct ChooseSign {
    static constexpr std::size_t kOperands = 4;
    explicit ChooseSign(const Step&) {}
    double operator()(double c, double negative, double zero, double positive) const
    {
        return chooseSignValue(c, negative, zero, positive);
    }
};

struct ChooseStep {
    static constexpr std::size_t kOperands = 6;
    explicit ChooseStep(const Step&) {}
    double operator()(double x, double x0, double x1, double before, double between, double after) const
    {
        return chooseStepValue(x, x0, x1, before, between, after);
    }
};

}  // namespace mf::engine
