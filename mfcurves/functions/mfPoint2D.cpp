// SPDX-License-Identifier: MIT

#include "mfcurves/functions/mfPoint2D.h"

#include <cmath>

double mfPoint2D_c::length() const
{
    return std::sqrt(sqrLength());
}
