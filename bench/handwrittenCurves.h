// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "bench/handwrittenCam.h"

namespace bench {

/// The motion law of one row, in a program that supports several laws.
class HandwrittenLaw {
public:
    virtual ~HandwrittenLaw();
    virtual double value(double x) const = 0;
    virtual Orders orders(double x) const = 0;
};

/// A table of any number of rows by the 3-4-5 polynomial: a search without branches over the
/// starts, then one virtual call to the row's law in Horner form.
class HandwrittenTable {
public:
    /// `values` has one more element than rows; all rows are `length` long.
    HandwrittenTable(double length, const std::vector<double>& values);

    double value(double x) const { return lawAt(x).value(x); }
    Orders orders(double x) const { return lawAt(x).orders(x); }

    /// orders[i] at x[i], ascending, row by row without any virtual call.
    void orders(const double* x, std::size_t count, Orders* orders) const;

private:
    const HandwrittenLaw& lawAt(double x) const;

    std::vector<double> starts_;
    std::vector<std::unique_ptr<HandwrittenLaw>> laws_;
    std::vector<CamRow> rows_;
};

/// The natural cubic spline through points whose second derivatives are known: a search without
/// branches over the knots, then Horner.
class HandwrittenSpline {
public:
    /// `pieces[i]` begins at x[i]; a, b, c, d of a polynomial in the distance from there.
    struct Piece {
        double a, b, c, d;
    };
    HandwrittenSpline(std::vector<double> x, std::vector<Piece> pieces);

    Orders orders(double x) const;

private:
    std::vector<double> x_;
    std::vector<Piece> pieces_;
};

/// The general function of handwritten.h, with the orders of each x stored together.
void generalOrders(const double* x, std::size_t count, Orders* orders);

}  // namespace bench
