// SPDX-License-Identifier: MIT
#pragma once

// Short ways to make curves for the tests of the analysis.

#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace analysis_test {

inline mf::Curve expression(const std::string& text, double from, double to)
{
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{text, from, to};
    return mf::Curve(definition);
}

inline mf::Curve rows(const std::vector<mf::CurveRow>& rows, const std::vector<mf::LawText>& laws = {})
{
    mf::CurveDefinition definition;
    definition.shape = mf::SegmentShape{0.0, 0.0, rows, laws, false};
    return mf::Curve(definition);
}

inline mf::Curve points(const std::vector<double>& x, const std::vector<double>& y, mf::Interpolation kind)
{
    mf::CurveDefinition definition;
    definition.shape = mf::PointShape{x, y, kind};
    return mf::Curve(definition);
}

/// A cam with rise, dwell, return and dwell, 25 high.
inline mf::Curve cam()
{
    return rows({{90.0, 25.0, "3-4-5-Polynomial"},
                 {150.0, 25.0, "Linear"},
                 {240.0, 0.0, "4-5-6-7-Polynomial"},
                 {360.0, 0.0, "Linear"}});
}

}  // namespace analysis_test
