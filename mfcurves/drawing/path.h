// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/drawing/diagram.h"

namespace mf::drawing {

/// Reduces a line with many points per pixel to the first, lowest, highest and last point of each of
/// `columns` equal parts of [from, to]. The picture stays the same, however fast the curve changes.
Line thinned(const Line& line, double from, double to, std::size_t columns);

/// A line, in pixels, without the points that it can lose and still stay within a tenth of a pixel.
Line simplified(const Line& line);

/// "M1 2L3 4": a line, in pixels, as the data of an SVG path, rounded to hundredths.
std::string pathData(const Line& line);

/// A length in pixels, rounded to hundredths.
std::string pixels(double length);

}  // namespace mf::drawing
