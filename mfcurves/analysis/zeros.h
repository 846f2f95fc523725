// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "mfcurves/analysis/boxes.h"
#include "mfcurves/curve/CurveDefinition.h"

namespace mf::analysis {

/// A place where a function takes a value.
struct Zero {
    double x;
    double error;  // the exact place is within this distance
};

struct Zeros {
    std::vector<Zero> places;  // ascending
    std::vector<Range> flat;   // stretches where the function is exactly the value
    // Boxes where the function may have no value, as around poles and outside a domain, and those left when
    // the budget was spent. A pole where two boxes meet is a box of length 0.
    std::vector<Range> unsure;
    bool complete = true;  // false: there may be other places; zerosOf() lists them in `unsure`
    bool hasGap = false;   // the function has no value on a stretch
};

/// Where order k of a smooth function is `value` on [from, to], ends included.
/// Places that rounding cannot separate, such as a multiple zero, count once.
Zeros zerosOf(BoxEvaluator& function, int k, double value, double from, double to);

/// The one zero of order k minus `value` between two x where it has different signs.
/// `slope` bounds the next order between them and does not contain 0.
Zero zeroBetween(BoxEvaluator& function, int k, double value, double from, double to,
                 const engine::Interval& slope);

}  // namespace mf::analysis
