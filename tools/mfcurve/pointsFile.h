// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
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
    int unsortedLine = 0;           ///< the first whose x is below that of the previous line; 0 when none is
};

/// Reads one point per line: x and y, both finite. The output of `table` is taken as it is: its columns x and
/// value. Throws TextError with the line, what was found and what was expected.
PointList parsePoints(std::string_view bytes, const ColumnSettings& settings = {});

}  // namespace mfcurve
