// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "bench/handwritten.h"
#include "mfcurves/functions/mfPoint2D.h"

namespace bench {

/// A row of a cam as an engineer writes it for speed: the value and its three
/// derivatives as polynomials in u, from 0 at `start` to 1 at `end`, constant term
/// first; the coefficients include the powers of the row's length.
struct CamRow {
    double start;
    double end;
    double perLength;
    std::array<double, 6> value;
    std::array<double, 5> first;
    std::array<double, 4> second;
    std::array<double, 3> third;
};

/// The row from (start, startValue) to (end, endValue) by the 3-4-5 polynomial.
CamRow polynomial345(double start, double startValue, double end, double endValue);

/// Value and derivatives over one row, 100 points each, both ends included.
struct CamSamples {
    std::vector<mfPoint2D_c> value;
    std::vector<mfPoint2D_c> first;
    std::vector<mfPoint2D_c> second;
    std::vector<mfPoint2D_c> third;
};

/// Three rows: a rise of 10 from 0 to 2, a dwell up to 3 and a return up to 5, by
/// the 3-4-5 polynomial.
class HandwrittenCam {
public:
    HandwrittenCam();

    double value(double x) const;
    Orders orders(double x) const;
    CamSamples samples(int row) const;

private:
    const CamRow& rowAt(double x) const;

    std::array<CamRow, 3> rows_;
};

}  // namespace bench
