// SPDX-License-Identifier: MIT
#include "tools/mfcurve/rowAt.h"

namespace mfcurve {

int rowAt(const mf::Curve& curve, double x, mf::Side side)
{
    const auto* shape = std::get_if<mf::CurveDefinition::Segments>(&curve.definition().shape);
    if (shape == nullptr || !(x == x))
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
