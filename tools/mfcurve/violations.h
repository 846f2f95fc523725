// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// What `check` asks for. Limits are by the unit that derivatives are by.
struct Demands {
    std::optional<double> velocity;
    std::optional<double> acceleration;
    std::optional<double> jerk;
    std::optional<mf::Range> values;
    std::optional<int> continuity;
    bool areDerivativesChecked = false;

    bool isEmpty() const
    {
        return !velocity && !acceleration && !jerk && !values && !continuity && !areDerivativesChecked;
    }
};

/// A stretch where a demand is not met. NaN stands for what there is none of.
struct Violation {
    int order;
    double limit;
    double from;
    double to;
    double worst;
    double worstX;
};

/// Where a curve breaks the demands; `rate` multiplies order k by its power of k. Throws Failure, with
/// `place`, for a limit of an order that the curve does not have.
std::vector<Violation> violationsOf(const mf::Curve& curve, const Demands& demands, double rate,
                                    const std::string& place);

}  // namespace mfcurve
