// SPDX-License-Identifier: MIT
#include "tools/mfcurve/rowAt.h"

#include <algorithm>

namespace mfcurve {

namespace {

int pointAt(const mf::PointShape& shape, double x)
{
    return static_cast<int>(std::upper_bound(shape.x.begin(), shape.x.end(), x) - shape.x.begin());
}

}  // namespace

int rowAt(const mf::Curve& curve, double x, mf::Side side)
{
    if (!(x == x))
        return 0;
    if (const auto* points = std::get_if<mf::CurveDefinition::Points>(&curve.definition().shape))
        return pointAt(*points, x);
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&curve.definition().shape);
    if (shape == nullptr)
        return 0;
    int row = 0;
    double start = shape->startX;
    for (const mf::CurveRow& candidate : shape->rows) {
        ++row;
        const bool hasLength = start < candidate.endX;
        const bool isInside = x < candidate.endX || (x == candidate.endX && side == mf::Side::Left);
        if (hasLength && isInside)
            return row;
        start = candidate.endX;
    }
    return row;
}

}  // namespace mfcurve
