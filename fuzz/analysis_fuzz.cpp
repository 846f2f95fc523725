// SPDX-License-Identifier: MIT

// The bytes describe a definition, in the form of definitionText.h. The results of the analysis
// of its curve are in order and inside the range, and no sample exceeds a guaranteed bound.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "fuzz/definitionText.h"
#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/Curve.h"

namespace {

using mf::Curve;
using mf::Range;

// A row or an expression may take 50 ms for each analysis, and sanitizers multiply that.
constexpr std::size_t kLongestInput = 400;
constexpr std::size_t kMostRows = 3;
constexpr int kSamples = 1000;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

std::optional<Curve> curveOf(const mf::CurveDefinition& definition)
{
    const auto* segments = std::get_if<mf::SegmentShape>(&definition.shape);
    if (segments != nullptr && segments->rows.size() > kMostRows)
        return std::nullopt;
    try {
        return Curve(definition);
    } catch (const mf::CurveError&) {
        return std::nullopt;
    }
}

double sampleAt(const Curve& curve, int i)
{
    if (i == kSamples)
        return curve.lastX();
    const double share = static_cast<double>(i) / kSamples;
    return std::clamp((1.0 - share) * curve.firstX() + share * curve.lastX(), curve.firstX(), curve.lastX());
}

void requireInside(const Curve& curve, double x)
{
    require(x >= curve.firstX() && x <= curve.lastX());
}

void checkPeaks(const Curve& curve)
{
    const auto summary = mf::analysis::summarize(curve);
    for (int order = 0; order < 4; ++order) {
        const mf::analysis::Summary& found = summary[static_cast<std::size_t>(order)];
        for (const double x : found.impulses)
            requireInside(curve, x);
        if (!found.guaranteed)
            continue;
        requireInside(curve, found.least.x);
        requireInside(curve, found.greatest.x);
        require(found.least.y <= found.greatest.y && found.least.error >= 0.0 && found.greatest.error >= 0.0);
        const double low = found.least.y - found.least.error;
        const double high = found.greatest.y + found.greatest.error;
        for (int i = 0; i <= kSamples; ++i) {
            const double y = curve(sampleAt(curve, i), order);
            require(y >= low && y <= high);
        }
    }
}

void checkBreaks(const Curve& curve)
{
    const std::vector<mf::analysis::Break> breaks = mf::analysis::breaks(curve, 4);
    for (std::size_t i = 0; i < breaks.size(); ++i) {
        requireInside(curve, breaks[i].x);
        require(i == 0 || breaks[i].x >= breaks[i - 1].x);
        require(breaks[i].lowest >= 0 && breaks[i].lowest <= 4);
    }
    if (const auto next = mf::analysis::nextBreak(curve, curve.firstX()))
        require(*next > curve.firstX() && *next <= curve.lastX());
}

void checkPlaces(const Curve& curve)
{
    const double value = curve(0.5 * curve.firstX() + 0.5 * curve.lastX());
    double last = curve.firstX();
    for (const double x : mf::analysis::crossings(curve, 0, value)) {
        requireInside(curve, x);
        require(x >= last);
        last = x;
    }
    last = curve.firstX();
    for (const mf::analysis::Peak& peak : mf::analysis::stationaryPoints(curve, 0)) {
        requireInside(curve, peak.x);
        require(peak.x >= last && peak.error >= 0.0);
        last = peak.x;
    }
    last = curve.firstX();
    for (const Range& range : mf::analysis::beyond(curve, 1, -1.0, 1.0)) {
        requireInside(curve, range.from);
        requireInside(curve, range.to);
        require(range.from <= range.to && range.from >= last);
        last = range.to;
    }
    const mf::analysis::DerivativeCheck check = mf::analysis::checkDerivatives(curve);
    require(check.worstOrder >= 0 && check.worstOrder <= 3);
}

// A row at a jump may be some ulps beside the place where the computed value jumps.
bool isBesideRow(double x, double row)
{
    constexpr double kFewUlps = 16.0 * 0x1p-52;
    return std::fabs(x - row) <= kFewUlps * std::fabs(x);
}

// Straight lines between the rows differ from the samples by at most the bound.
void checkTable(const Curve& curve)
{
    const double tolerance = 1e-3 * (1.0 + std::fabs(curve(curve.lastX())));
    if (!std::isfinite(tolerance))
        return;
    const auto table = mf::analysis::toTable(curve, mf::analysis::Form::Linear, {tolerance});
    require(table.x.size() == table.y.size());
    for (std::size_t i = 1; i < table.x.size(); ++i)
        require(table.x[i] >= table.x[i - 1]);
    if (!table.guaranteed)
        return;
    require(table.bound <= tolerance && !table.x.empty());
    std::size_t row = 1;
    for (int i = 0; i <= kSamples; ++i) {
        const double x = sampleAt(curve, i);
        while (row + 1 < table.x.size() && table.x[row] < x)
            ++row;
        if (table.x.size() < 2 || !(table.x[row - 1] < x && x < table.x[row]) ||
            isBesideRow(x, table.x[row - 1]) || isBesideRow(x, table.x[row]))
            continue;
        const double share = (x - table.x[row - 1]) / (table.x[row] - table.x[row - 1]);
        const double line = (1.0 - share) * table.y[row - 1] + share * table.y[row];
        const double rounding = 1e-14 * (std::fabs(table.y[row - 1]) + std::fabs(table.y[row]));
        require(std::fabs(line - curve(x)) <= table.bound + rounding);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestInput)
        return 0;
    const std::optional<Curve> curve =
        curveOf(fuzz::definitionOf({reinterpret_cast<const char*>(data), size}));
    if (!curve)
        return 0;
    checkPeaks(*curve);
    checkBreaks(*curve);
    checkPlaces(*curve);
    checkTable(*curve);
    return 0;
}
