// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/drawing/quantities.h"
#include "mfcurves/platform/mfExport.h"

/// Pictures of curves: their contents as plain data, and as SVG.
///
///     const mf::Curve cam = mf::Curve::read("cam.xml");
///     const std::string svg = mf::drawing::toSvg(mf::drawing::diagramOf({cam}));
namespace mf::drawing {

/// A place in a diagram, in the units of the curve.
struct Point {
    double x;  ///< of the variable
    double y;  ///< of the value or derivative
};

/// Points joined by a line, ascending in x. Two points with the same x are a jump.
using Line = std::vector<Point>;

/// Where a lower order jumps, so that this one is infinite.
struct Impulse {
    double x;       ///< its place
    bool isUpward;  ///< the lower order jumps to a greater value
};

/// One curve in one panel. A gap between two lines is a stretch without a finite value.
struct Trace {
    std::vector<Line> lines;        ///< in ascending x
    std::vector<Point> knots;       ///< the points of a curve through points; only in the panel of the value
    std::optional<Point> least;     ///< the first of equal ones; empty without a finite value
    std::optional<Point> greatest;  ///< the same
    bool areExtremesProved = true;  ///< false: the curve may exceed them
    /// Set if a pole would make the rest of the curve invisible: the values that the axis shows. The lines
    /// end shortly outside them.
    std::optional<Range> beside;
    std::vector<Impulse> impulses;  ///< ascending in x
};

/// One quantity over the variable.
struct Panel {
    int order = 0;              ///< 0 the value, 1 to 3 its derivatives
    std::string quantity;       ///< "Velocity"
    std::string unit;           ///< "mm/s", or empty
    std::vector<Trace> traces;  ///< one for each curve
};

/// A stretch of the variable that has a name.
struct Stretch {
    double from;       ///< its start
    double to;         ///< its end
    std::string name;  ///< a law, "Dwell" or "Constant"
};

/// The contents of a picture: stacked panels that share one horizontal axis, as cam designers use them.
struct Diagram {
    std::string title;               ///< may be empty
    std::string variable;            ///< "Cycle angle"
    std::string variableUnit;        ///< "deg", or empty
    double from = 0.0;               ///< start of the shared axis
    double to = 1.0;                 ///< its end, not below `from`
    std::vector<std::string> names;  ///< of the curves, in the order of traces
    std::vector<Panel> panels;       ///< from top to bottom
    std::vector<double> seams;       ///< where rows meet; only for a single curve
    std::vector<Stretch> stretches;  ///< its rows, named by their laws
};

/// Which part of the curves is drawn, and how.
struct Contents {
    std::optional<Range> range;  ///< of x; else from the first x of all curves to the last one
    std::optional<Units> units;  ///< labels; else the usual ones of the first curve
    std::vector<int> orders;     ///< 0 to 3, others are ignored; empty: the orders that have a name
    double rate = 1.0;           ///< order k is multiplied by rate to the power of k
    std::string title;           ///< else the name of a single curve
};

/// The contents of a picture of one or several curves, which share each panel. The least and greatest values
/// and the impulses come from mf::analysis, not from the drawn points.
MFCURVES_API Diagram diagramOf(const std::vector<Curve>& curves, const Contents& contents = {});

/// How a picture looks.
struct Style {
    int width = 920;      ///< pixels, at least 300
    int height = 0;       ///< pixels; 0: as high as the panels need. Each panel is at least 40 high
    bool isDark = false;  ///< light letters on a dark ground
};

/// The picture as a complete SVG document in UTF-8, with a title and a description for people who cannot see
/// it.
MFCURVES_API std::string toSvg(const Diagram& diagram, const Style& style = {});

}  // namespace mf::drawing
