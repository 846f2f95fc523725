// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace mfcurve {

/// The requirements of `check`. Limits are by degrees or by seconds, like the derivatives.
struct Demands {
    std::optional<double> velocity;
    std::optional<double> acceleration;
    std::optional<double> jerk;
    std::optional<mf::Range> values;
    std::optional<int> continuity;
    bool isCyclic = false;  // the end has to meet the start; not a demand by itself
    bool areDerivativesChecked = false;

    bool isEmpty() const
    {
        return !velocity && !acceleration && !jerk && !values && !continuity && !areDerivativesChecked;
    }
};

/// A range where a requirement is not met. Numbers that do not apply are NaN.
struct Violation {
    int order;
    double limit;
    double from;
    double to;
    double worst;
    double worstX;
};

/// The ranges where a curve violates the demands; order k is multiplied by the k-th power of `rate`. Throws
/// Failure, with `place`, for a limit of an order that the curve does not have.
std::vector<Violation> violationsOf(const mf::Curve& curve, const Demands& demands, double rate,
                                    const std::string& place);

/// Whether no violation of a limit, range or continuity can be missing in them.
bool areAllFound(const mf::Curve& curve, const Demands& demands, double rate, const std::string& place);

}  // namespace mfcurve
