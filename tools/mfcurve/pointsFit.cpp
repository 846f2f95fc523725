// SPDX-License-Identifier: MIT
#include "tools/mfcurve/pointsFit.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <vector>

#include "tools/mfcurve/camTable.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// The knots of two splines within a range, and the ends of the range.
std::vector<double> knotsOf(const mf::PointShape& a, const mf::PointShape& b, mf::Range range)
{
    std::vector<double> knots{range.from, range.to};
    for (const mf::PointShape* shape : {&a, &b}) {
        for (double x : shape->x) {
            if (x > range.from && x < range.to)
                knots.push_back(x);
        }
    }
    std::sort(knots.begin(), knots.end());
    knots.erase(std::unique(knots.begin(), knots.end()), knots.end());
    return knots;
}

// The largest absolute value of y + d1 t + d2 t^2/2 + d3 t^3/6 for t from 0 to `length`: at the ends, or
// where the slope d1 + d2 t + d3 t^2/2 is 0.
double largestOfCubic(const mf::CurveValues& cubic, double length)
{
    double largest = 0.0;
    const auto take = [&](double t) {
        if (t >= 0.0 && t <= length)
            largest = std::max(
                largest, std::fabs(cubic.y + t * (cubic.d1 + t * (cubic.d2 / 2.0 + t * cubic.d3 / 6.0))));
    };
    take(0.0);
    take(length);
    const double root = std::sqrt(std::max(0.0, cubic.d2 * cubic.d2 - 2.0 * cubic.d3 * cubic.d1));
    const double sum = -(cubic.d2 + std::copysign(root, cubic.d2));
    if (sum != 0.0)
        take(2.0 * cubic.d1 / sum);
    if (cubic.d3 != 0.0)
        take(sum / cubic.d3);
    return largest;
}

// The largest distance of two splines on the range of the first. Between neighbouring knots of the two
// together, their difference is one cubic.
double distance(const mf::Curve& a, const mf::Curve& b)
{
    const auto shapeOf = [](const mf::Curve& curve) {
        return std::get<mf::CurveDefinition::Points>(curve.definition().shape);
    };
    const std::vector<double> knots = knotsOf(shapeOf(a), shapeOf(b), {a.firstX(), a.lastX()});
    double largest = 0.0;
    for (std::size_t i = 1; i < knots.size(); ++i) {
        const mf::CurveValues p = a.at(knots[i - 1], mf::Side::Right);
        const mf::CurveValues q = b.at(knots[i - 1], mf::Side::Right);
        const mf::CurveValues difference{p.y - q.y, p.d1 - q.d1, p.d2 - q.d2, p.d3 - q.d3};
        largest = std::max(largest, largestOfCubic(difference, knots[i] - knots[i - 1]));
    }
    return largest;
}

mf::Curve through(const mf::Curve& curve, std::vector<double> x, std::vector<double> y)
{
    mf::CurveDefinition definition = curve.definition();
    definition.shape = mf::PointShape{std::move(x), std::move(y), mf::Interpolation::Cubic};
    return mf::Curve(definition);
}

mf::Curve withDocumentDigits(const mf::Curve& curve)
{
    mf::Curve read = mf::Curve::parse(curve.toXml(), {{}, {curve.definition().motionResult}});
    if (!read.warnings().empty())
        throw mf::CurveError(read.warnings());
    return read;
}

// Rounds the x of the points to the digits of a document, and takes the curve's values there, rounded too.
mf::Curve documentOf(const mf::Curve& curve, const mf::Curve& points)
{
    const mf::Curve rounded = withDocumentDigits(points);
    const std::vector<double>& x = std::get<mf::CurveDefinition::Points>(rounded.definition().shape).x;
    std::vector<double> y(x.size());
    curve.evaluate(x.data(), x.size(), 0, y.data());
    return withDocumentDigits(through(points, x, y));
}

}  // namespace

PointsFit fitPoints(const mf::Curve& curve, double tolerance, const std::string& place)
{
    double bound = 0.0;
    // The error of the points and the change by rounding together must stay within the tolerance.
    for (double share : {1.0, 0.5, 0.25}) {
        const mf::analysis::CamTable table =
            provedTable(curve, mf::analysis::Form::Points, share * tolerance, place);
        try {
            const mf::Curve exact = through(curve, table.x, table.y);
            const mf::Curve document = documentOf(curve, exact);
            bound = table.bound + distance(exact, document);
            if (bound <= tolerance)
                return {document, table.x.size(), bound};
        } catch (const mf::CurveError& error) {
            throw Failure(kFailed, place,
                          "the six digits of a document cannot distinguish the points: " +
                              error.problems().front().message);
        }
    }
    throw Failure(
        kFailed, place,
        fmt::format("the six digits of a document cannot keep {}: the points would be up to {} from "
                    "the curve",
                    shortNumberText(tolerance), shortNumberText(bound, 3)));
}

}  // namespace mfcurve
