// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <vector>

#include "mfcurves/host/Spline.h"

namespace mf::test {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

// The kinds of a spline; an unknown one is linear.
constexpr int kAkima = 0;
constexpr int kCubic = 1;
constexpr int kLinear = 2;
constexpr int kUnknown = 17;
constexpr int kKinds[] = {kAkima, kCubic, kLinear, kUnknown};

class FilledSpline : public host::Spline {
public:
    FilledSpline(int kind, const std::vector<double>& x, const std::vector<double>& y)
    {
        setKind(kind);
        for (std::size_t i = 0; i < x.size(); ++i)
            addPoint(x[i], y[i]);
    }
};

inline double derivative(host::Spline& spline, double x, int order)
{
    switch (order) {
        case 0:
            return spline.getValue(x);
        case 1:
            return spline.getFirstDerivative(x);
        case 2:
            return spline.getSecondDerivative(x);
        default:
            return spline.getThirdDerivative(x);
    }
}

inline std::vector<double> ordersAt(host::Spline& spline, double x)
{
    return {spline.getValue(x), spline.getFirstDerivative(x), spline.getSecondDerivative(x),
            spline.getThirdDerivative(x)};
}

}  // namespace mf::test
