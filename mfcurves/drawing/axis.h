// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace mf::drawing {

/// An axis with round tick marks.
struct Axis {
    double low = 0.0;
    double high = 1.0;
    std::vector<double> ticks;  ///< ascending, inside [low, high]
    int exponent = 0;           ///< labels show a tick divided by ten to this power
    int decimals = 0;           ///< the number of decimals of every label

    /// The label of a tick: "12.5", "−0.2" with a true minus sign.
    std::string label(double tick) const;
};

/// An axis for values with about `wantedTicks` ticks: a little wider than [low, high], with room around a
/// constant. Its ends are within 1e300.
Axis valueAxis(double low, double high, int wantedTicks);

/// An axis for the variable with about `wantedTicks` ticks: [low, high] exactly, with room around a single x.
/// In degrees the ticks are at parts of a revolution.
Axis variableAxis(double low, double high, bool inDegrees, int wantedTicks);

/// A number in a picture, with so many significant digits and a true minus sign.
std::string pictureNumber(double number, int digits = 4);

/// The power of ten that labels are multiplied by, as the end of a unit: "" or " × 10⁻³".
std::string exponentText(int exponent);

}  // namespace mf::drawing
