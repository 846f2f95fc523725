// SPDX-License-Identifier: MIT

// The cam of the README: a rise, a dwell, a return and a dwell over one turn of the cam
// shaft. Prints x, value and three derivatives.

#include <cstdio>

#include "mfcurves/mfcurves.h"

int main()
{
    // README begins
    mf::SegmentShape shape;
    shape.rows = {{90, 25, "3-4-5-Polynomial"},  // where a row ends, the value there, the motion law
                  {150, 25, "3-4-5-Polynomial"},
                  {240, 0, "4-5-6-7-Polynomial"},
                  {360, 0, "4-5-6-7-Polynomial"}};
    mf::CurveDefinition cam;
    cam.shape = shape;
    cam.over = mf::Over::CycleAngle;
    const mf::Curve curve(cam);  // or mf::Curve::read("cam.xml"); constant, for any number of threads
    for (const double degrees : {30.0, 120.0, 180.0}) {
        const mf::CurveValues at = curve.at(degrees);
        std::printf("%g: %.6g %.6g %.6g %.6g\n", degrees, at.y, at.d1, at.d2, at.d3);
    }
    // README ends
    return 0;
}
