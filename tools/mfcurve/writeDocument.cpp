// SPDX-License-Identifier: MIT
#include "tools/mfcurve/writeDocument.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <vector>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/rounding.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// The x at which two curves are compared: the ends of rows, the points, and places between them.
std::vector<double> places(const mf::Curve& curve)
{
    constexpr int kBetween = 8;
    std::vector<double> ends{curve.firstX()};
    if (const auto* rows = std::get_if<mf::CurveDefinition::Segments>(&curve.definition().shape)) {
        for (const mf::CurveRow& row : rows->rows)
            ends.push_back(row.endX);
    } else if (const auto* points = std::get_if<mf::CurveDefinition::Points>(&curve.definition().shape)) {
        ends.insert(ends.end(), points->x.begin(), points->x.end());
    }
    ends.push_back(curve.lastX());
    std::vector<double> all;
    for (std::size_t i = 1; i < ends.size(); ++i) {
        for (int part = 0; part < kBetween; ++part)
            all.push_back(std::lerp(ends[i - 1], ends[i], static_cast<double>(part) / kBetween));
    }
    all.push_back(curve.lastX());
    return all;
}

struct Change {
    double x = 0.0;
    double before = 0.0;
    double after = 0.0;
    double size() const { return std::fabs(after - before); }
};

// The largest change of the value. Places where the value jumps are left out: rounding may move the jump, and
// the difference there would be its size.
Change largestChange(const mf::Curve& curve, const mf::Curve& read, double& span)
{
    Change largest;
    double low = curve(curve.firstX());
    double high = low;
    for (double x : places(curve)) {
        const Change change{x, curve(x), read(x)};
        low = std::min(low, change.before);
        high = std::max(high, change.before);
        const bool isJump = std::fabs(curve.at(x, mf::Side::Left).y - curve.at(x, mf::Side::Right).y) > 0.0;
        if (!isJump &&
            (change.size() > largest.size() || std::isnan(change.after) != std::isnan(change.before)))
            largest = change;
    }
    span = high > low ? high - low : std::fabs(high);
    return largest;
}

mf::Curve readBack(const std::string& xml, const mf::Curve& curve, const std::string& path)
{
    try {
        return mf::Curve::parse(xml, {{}, {curve.definition().motionResult}});
    } catch (const mf::CurveError& error) {
        throw Failure(kFailed, path,
                      "the document would be another curve: " + error.problems().front().message);
    }
}

void checkRange(const mf::Curve& curve, const mf::Curve& read, const std::string& path)
{
    const double most = kMostLoss * (curve.lastX() - curve.firstX());
    if (std::fabs(read.firstX() - curve.firstX()) > most || std::fabs(read.lastX() - curve.lastX()) > most)
        throw Failure(kFailed, path,
                      fmt::format("the document would be another curve: its range would run from {} to {}",
                                  shortNumberText(read.firstX()), shortNumberText(read.lastX())));
}

// Warns about the changes by rounding, and refuses a change that is too large.
void checkLoss(const mf::Curve& curve, const std::string& xml, const std::vector<mf::Problem>& losses,
               const std::string& path)
{
    const mf::Curve read = readBack(xml, curve, path);
    for (const mf::Problem& odd : read.warnings())
        throw Failure(kFailed, path,
                      fmt::format("the document would be another curve: {}{}{}", odd.place,
                                  odd.place.empty() ? "" : ": ", odd.message));
    checkRange(curve, read, path);
    double span = 0.0;
    const Change change = largestChange(curve, read, span);
    if (!(change.size() <= kMostLoss * span))
        throw Failure(
            kFailed, path,
            fmt::format("the document would be another curve: its value at x = {} would be {} and not {}",
                        shortNumberText(change.x, 9), shortNumberText(change.after, 9),
                        shortNumberText(change.before, 9)));
    if (losses.empty())
        return;
    // The values of an edited document have six decimals already: only its numbers change.
    const std::string movement =
        change.size() > 0.0 ? fmt::format(", whose value moves by up to {} at x = {}",
                                          shortNumberText(change.size(), 3), shortNumberText(change.x, 9))
                            : "";
    warn(path,
         fmt::format("six digits change numbers of the curve{}; the first: {}{}{}", movement,
                     losses.front().place, losses.front().place.empty() ? "" : ": ", losses.front().message));
}

}  // namespace

void writeDocument(const mf::Curve& curve, const std::string& path)
{
    std::vector<mf::Problem> losses;
    const std::string xml = curve.toXml(&losses);
    const std::string place = isStandardStream(path) ? "standard output" : path;
    checkLoss(curve, xml, losses, place);
    writeOutput(path, xml);
}

}  // namespace mfcurve
