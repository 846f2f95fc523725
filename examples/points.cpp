// SPDX-License-Identifier: MIT

// A curve through points, and how it continues beyond its ends.

#include <cstdio>

#include "mfcurves/mfcurves.h"

namespace {

void print(const char* what, const mf::CurveValues& at)
{
    std::printf("%s: %g %g %g %g\n", what, at.y, at.d1, at.d2, at.d3);
}

}  // namespace

int main()
{
    mf::CurveDefinition definition;
    definition.name = "lift";
    definition.shape =
        mf::CurveDefinition::Points{{0.0, 1.0, 2.0}, {0.0, 1.0, 0.0}, mf::Interpolation::Cubic};
    const mf::Curve lift(definition);

    print("between the points", lift.at(0.5));
    // The third derivative jumps at a point: each side has its own.
    print("left of the point at 1", lift.at(1.0, mf::Side::Left));
    print("right of the point at 1", lift.at(1.0, mf::Side::Right));

    print("beyond the end, extended", lift.at(3.0));
    print("beyond the end, held", lift.with(mf::Outside::Hold).at(3.0));
    print("beyond the end, repeated", lift.with(mf::Outside::Repeat).at(2.5));

    // For many x, evaluating an array is fastest.
    const double x[] = {0.25, 0.5, 0.75};
    double y[3];
    lift.evaluate(x, 3, 0, y);
    std::printf("an array: %g %g %g\n", y[0], y[1], y[2]);
    return 0;
}
