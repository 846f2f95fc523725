// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "mfcurves/curve/CurveDefinition.h"

namespace mfcurve {

/// The x of the lines of a table over a range.
class Steps {
public:
    /// `count` evenly spaced places, both ends included; if `isOpen`, the last is one step before the end.
    static Steps byCount(mf::Range range, std::size_t count, bool isOpen);
    /// Places at distance `step` from the start up to the end, without the end if `isOpen`. Place i is the
    /// double nearest to the decimal number start + i * step. Throws UsageError for more than `most` places.
    static Steps byStep(mf::Range range, double step, bool isOpen, std::size_t most);

    std::size_t count() const { return count_; }
    double at(std::size_t index) const;

private:
    mf::Range range_{0.0, 0.0};
    std::size_t count_ = 0;
    std::size_t parts_ = 1;  // the number of steps in the range; 0: made by byStep
    double step_ = 0.0;
    bool isDecimal_ = false;  // start and step are start_ and increment_ times 10^exponent_
    long long start_ = 0;
    long long increment_ = 0;
    int exponent_ = 0;
};

}  // namespace mfcurve
