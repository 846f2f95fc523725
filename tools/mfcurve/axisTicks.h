// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace mfcurve {

/// An axis with round tick marks.
struct Axis {
    double low = 0.0;
    double high = 1.0;
    std::vector<double> ticks;  ///< ascending, inside [low, high]
    int exponent = 0;           ///< labels show a tick divided by ten to this power
    int decimals = 0;           ///< of every label

    /// The label of a tick: "12.5", "−0.2" with a true minus sign.
    std::string label(double tick) const;
};

/// An axis for values: it is widened to the ticks just outside [low, high], and
/// to some room around a constant. Ends beyond 1e300 are cut there.
Axis valueAxis(double low, double high, int wantedTicks);

/// An axis for the independent variable: it spans [low, high] exactly. In degrees
/// the ticks stand at parts of a revolution.
Axis independentAxis(double low, double high, bool inDegrees, int wantedTicks);

/// A number on a picture: four significant digits and a true minus sign.
std::string pictureNumber(double number);

/// What labels are multiplied by, to stand behind a unit: "" or " × 10⁻³".
std::string exponentText(int exponent);

}  // namespace mfcurve
