// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <variant>
#include <vector>

/// The forms of most motion laws as plain numbers. They take less memory than a formula, and
/// dedicated functions evaluate them.
namespace mf::engine {

class Formula;

/// The argument of a law: ((x + shift) / divisor) * scale + offset.
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
    /// The coefficients of the value, then those of each derivative up to the third, until no
    /// term is left.
    std::vector<double> coefficients;
    bool isFlat = false;  // the derivatives are 0 and have no coefficients, as in a dwell
};

/// Order k is (f(u) + shift) * factor + addend with its own three numbers, where f alternates
/// between sine and cosine.
struct SineLaw {
    struct Order {
        double shift;
        double factor;
        double addend;
    };

    LawArgument u;
    bool beginsWithCosine;
    std::array<Order, 4> orders;
    bool isFlat = false;  // the derivatives are 0, and their entries in `orders` are not used
};

/// std::monostate for a formula of another form, which is compiled up to order 3.
using LawForm = std::variant<std::monostate, PolynomialLaw, SineLaw>;

/// The form of a formula; it computes the same values, bit for bit.
LawForm lawFormOf(const Formula& formula);

}  // namespace mf::engine
