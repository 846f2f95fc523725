// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/mfcurve/columnText.h"

namespace mfcurve {

/// A point of a curve and its line in the file, from 1.
struct FilePoint {
    double x;
    double y;
    int line;
};

struct PointList {
    std::vector<FilePoint> points;  ///< ascending in x, at least one
    int unsortedLine = 0;           ///< the first line whose x is below the previous one; 0 if x ascends
    /// The lines of the first two points at nearly the same x; 0 without such points.
    std::pair<int, int> closeLines = {0, 0};
};

/// Reads one point per line: x and y, both finite. Also reads the output of `table`, from its columns x and
/// value. Throws TextError with the line, what was found and what was expected.
PointList parsePoints(std::string_view bytes, const ColumnSettings& settings = {});

}  // namespace mfcurve
