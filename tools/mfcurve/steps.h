// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "mfcurves/curve/CurveDefinition.h"

namespace mfcurve {

/// The places of a table over a stretch.
class Steps {
public:
    /// `count` places, evenly spaced; both ends are among them, or the last is a step before the end.
    static Steps byCount(mf::Range range, std::size_t count, bool isOpen);
    /// Places `step` apart from the start, up to the end, which an open stretch leaves out. Place i is the
    /// double nearest to the decimal number start + i * step. Throws UsageError for more than `most` places.
    static Steps byStep(mf::Range range, double step, bool isOpen, std::size_t most);

    std::size_t count() const { return count_; }
    double at(std::size_t index) const;

private:
    mf::Range range_{0.0, 0.0};
    std::size_t count_ = 0;
    std::size_t parts_ = 1;  // that the stretch has; 0: by step
    double step_ = 0.0;
    bool isDecimal_ = false;  // start and step are these whole numbers times a power of ten
    long long start_ = 0;
    long long increment_ = 0;
    int exponent_ = 0;
};

}  // namespace mfcurve
