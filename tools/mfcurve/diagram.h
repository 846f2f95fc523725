// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/functions/mfPoint2D.h"

namespace mfcurve {

/// A run of points joined by a line, ascending in x.
using Line = std::vector<mfPoint2D_c>;

/// One quantity over the independent variable. A gap between two lines is a
/// stretch where the curve has no finite value.
struct Panel {
    std::string quantity;  ///< "Velocity"
    std::string unit;      ///< "mm/s", empty for none
    std::vector<Line> lines;
};

/// A stretch of the independent variable that has a name.
struct NamedStretch {
    double from = 0.0;
    double to = 0.0;
    std::string name;
};

/// What the picture of a curve shows: the stacked diagrams of a cam designer.
struct Diagram {
    std::string title;
    std::string variable;  ///< "Cycle angle"
    std::string variableUnit;
    double from = 0.0;
    double to = 1.0;
    std::vector<Panel> panels;           ///< by order, the value first
    std::vector<double> seams;           ///< where segments meet
    std::vector<NamedStretch> segments;  ///< the profiles, named above the picture
    std::vector<mfPoint2D_c> knots;      ///< the points of a data-point table
};

/// The picture as a complete SVG document.
std::string toSvg(const Diagram& diagram);

}  // namespace mfcurve
