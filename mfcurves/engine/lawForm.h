// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <variant>
#include <vector>

/// The forms that most laws of motion have, as plain numbers: what is left of a formula is
/// then small, and a function of its own runs it.
namespace mf::engine {

class Formula;

/// What becomes of x on its way into a law: ((x + shift) / divisor) * scale + offset.
struct LawArgument {
    double shift;
    double divisor;
    double scale;
    double offset;
};

/// The value is polynomial(u) * factor + addend, and its derivatives are polynomials in u.
struct PolynomialLaw {
    LawArgument u;
    double factor;
    double addend;
    std::uint32_t terms;  // of the value's polynomial, u^lowest * (c0 + c1 u + ...)
    unsigned lowest;
    /// The coefficients of the value and of each derivative after it, up to the third, as long
    /// as there are terms left.
    std::vector<double> coefficients;
    bool isFlat = false;  // the derivatives are 0 and have no coefficients, as in a dwell
};

/// Order k is (f(u) + shift) * factor + addend with its own three numbers, where f is the sine or
/// the cosine, in turn.
struct SineLaw {
    struct Order {
        double shift;
        double factor;
        double addend;
    };

    LawArgument u;
    bool beginsWithCosine;
    std::array<Order, 4> orders;
    bool isFlat = false;  // the derivatives are 0, whatever their numbers
};

/// std::monostate for a formula of another form, which is compiled up to order 3.
using LawForm = std::variant<std::monostate, PolynomialLaw, SineLaw>;

/// The form that computes the very bits of the formula.
LawForm lawFormOf(const Formula& formula);

}  // namespace mf::engine
