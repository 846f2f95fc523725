// SPDX-License-Identifier: MIT

#include "mfcurves/curve/CurveDefinition.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace mf {
namespace {

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](double x, double y) { return sameBits(x, y); });
}

}  // namespace

bool operator==(const CurveRow& a, const CurveRow& b)
{
    return sameBits(a.endX, b.endX) && sameBits(a.value, b.value) && a.profile == b.profile;
}

bool operator==(const LawText& a, const LawText& b)
{
    return a.name == b.name && a.text == b.text;
}

bool operator==(const SegmentShape& a, const SegmentShape& b)
{
    return sameBits(a.startX, b.startX) && sameBits(a.startValue, b.startValue) && a.rows == b.rows &&
           a.laws == b.laws && a.sixDecimals == b.sixDecimals;
}

bool operator==(const PointShape& a, const PointShape& b)
{
    return sameBits(a.x, b.x) && sameBits(a.y, b.y) && a.interpolation == b.interpolation;
}

bool operator==(const ExpressionShape& a, const ExpressionShape& b)
{
    return a.text == b.text && sameBits(a.from, b.from) && sameBits(a.to, b.to);
}

bool operator==(const CurveDefinition& a, const CurveDefinition& b)
{
    return a.shape == b.shape && a.name == b.name && a.quantity == b.quantity && a.over == b.over &&
           a.motionResult == b.motionResult && a.rotary == b.rotary && a.dataType == b.dataType;
}

}  // namespace mf
