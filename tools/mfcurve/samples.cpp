// SPDX-License-Identifier: MIT
#include "tools/mfcurve/samples.h"

#include <cmath>

namespace mfcurve {

mf::CurveValues atRate(mf::CurveValues values, double rate)
{
    return {values.y, values.d1 * rate, values.d2 * rate * rate, values.d3 * rate * rate * rate};
}

bool isFinite(const mf::CurveValues& values, int orders)
{
    for (int order = 0; order < orders; ++order) {
        if (!std::isfinite(values[order]))
            return false;
    }
    return true;
}

}  // namespace mfcurve
