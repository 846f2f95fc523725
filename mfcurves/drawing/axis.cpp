// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/axis.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fmt/format.h>

namespace mf::drawing {

namespace {

// Beyond this the width of an axis would leave the range of a double.
constexpr double kLargestEnd = 1e300;
// Steps below this part of an end are lost among the digits of that end.
constexpr double kSmallestStep = 1e-12;
// What an axis of values shows on each side of the data, as a part of their span.
constexpr double kRoom = 0.2;
// Labels of up to so many digits before the point, or zeros after it, read well.
constexpr int kLargestPlainExponent = 4;
constexpr int kSmallestPlainExponent = -2;

double cutEnd(double end)
{
    return std::clamp(end, -kLargestEnd, kLargestEnd);
}

// 1, 2 or 5 times a power of ten, at least `rough`.
double roundStep(double rough)
{
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (double factor : {1.0, 2.0, 5.0}) {
        if (rough <= factor * power)
            return factor * power;
    }
    return 10.0 * power;
}

// Steps that divide a quarter turn, then whole turns.
double roundDegrees(double rough)
{
    for (double step : {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 45.0, 60.0, 90.0, 180.0, 360.0}) {
        if (rough <= step)
            return step;
    }
    return 360.0 * roundStep(rough / 360.0);
}

void placeTicks(Axis& axis, double step)
{
    const double first = std::ceil(axis.low / step - 1e-9);
    const double last = std::floor(axis.high / step + 1e-9);
    const int count = static_cast<int>(last - first) + 1;
    for (int i = 0; i < count; ++i)
        axis.ticks.push_back(std::clamp((first + i) * step, axis.low, axis.high));
}

// Chooses a common power of ten, a multiple of three, for values that would need many
// zeros, and enough decimals to distinguish the ticks.
void chooseLabels(Axis& axis, double step)
{
    const double largest = std::max(std::fabs(axis.low), std::fabs(axis.high));
    const int magnitude = static_cast<int>(std::floor(std::log10(largest)));
    if (magnitude > kLargestPlainExponent || magnitude < kSmallestPlainExponent)
        axis.exponent = static_cast<int>(std::floor(magnitude / 3.0)) * 3;
    const double shownStep = step / std::pow(10.0, axis.exponent);
    const int stepMagnitude = static_cast<int>(std::floor(std::log10(shownStep) + 1e-9));
    axis.decimals = std::max(0, -stepMagnitude);
}

// Adds room around a single value, so that its line runs in the middle.
void widenConstant(double& low, double& high)
{
    const double largest = std::max(std::fabs(low), std::fabs(high));
    if (high - low > largest * kSmallestStep)
        return;
    const double room = largest > 0.0 ? largest / 2.0 : 1.0;
    low -= room;
    high += room;
}

std::string withTrueMinus(const std::string& text)
{
    const bool isZero = text.find_first_of("123456789") == std::string::npos;
    if (text.front() != '-')
        return text;
    return isZero ? text.substr(1) : "\u2212" + text.substr(1);
}

}  // namespace

std::string Axis::label(double tick) const
{
    return withTrueMinus(fmt::format("{:.{}f}", tick / std::pow(10.0, exponent), decimals));
}

std::string pictureNumber(double number, int digits)
{
    return withTrueMinus(fmt::format("{:.{}g}", number, digits));
}

Axis valueAxis(double low, double high, int wantedTicks)
{
    Axis axis;
    axis.low = cutEnd(low);
    axis.high = cutEnd(high);
    widenConstant(axis.low, axis.high);
    const double step = roundStep((axis.high - axis.low) / wantedTicks);
    const double room = kRoom * (axis.high - axis.low);
    axis.low = cutEnd(axis.low - room);
    axis.high = cutEnd(axis.high + room);
    placeTicks(axis, step);
    chooseLabels(axis, step);
    return axis;
}

Axis variableAxis(double low, double high, bool inDegrees, int wantedTicks)
{
    Axis axis;
    axis.low = cutEnd(low);
    axis.high = cutEnd(high);
    widenConstant(axis.low, axis.high);
    const double rough = (axis.high - axis.low) / wantedTicks;
    const double step = inDegrees && rough > 1.0 ? roundDegrees(rough) : roundStep(rough);
    placeTicks(axis, step);
    chooseLabels(axis, step);
    return axis;
}

std::string exponentText(int exponent)
{
    static const char* const kSuperscripts[] = {"\u2070", "\u00b9", "\u00b2", "\u00b3", "\u2074",
                                                "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
    if (exponent == 0)
        return "";
    std::string text = " \u00d7 10";
    if (exponent < 0)
        text += "\u207b";
    for (char digit : std::to_string(std::abs(exponent)))
        text += kSuperscripts[digit - '0'];
    return text;
}

}  // namespace mf::drawing
