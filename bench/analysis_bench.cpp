// SPDX-License-Identifier: MIT

// Compares the proved extremes of all four orders with hand-written code that proves
// nothing: a scan of 10,000 places of a cam, and a pass over the pieces of a spline that
// finds only the extremes of its value.
//
// Benchmarks are named by curve and implementation; ratios.csv lists which are compared.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/handwrittenCurves.h"
#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/CurvePieces.h"

namespace bench {
namespace {

using mf::Curve;
using mf::CurveDefinition;

constexpr double kRowLength = 90.0;
const std::vector<double> kCamValues = {0.0, 25.0, 25.0, 0.0, 0.0};  // rise, dwell, return, dwell

Curve cam()
{
    CurveDefinition::Segments shape;
    for (int i = 1; i <= 4; ++i)
        shape.rows.push_back({kRowLength * i, kCamValues[static_cast<std::size_t>(i)], "3-4-5-Polynomial"});
    CurveDefinition definition;
    definition.shape = shape;
    return Curve(definition);
}

Curve points(mf::Interpolation interpolation)
{
    constexpr int kPoints = 100'000;
    CurveDefinition::Points shape;
    shape.interpolation = interpolation;
    for (int i = 0; i < kPoints; ++i) {
        shape.x.push_back(i + 0.3 * std::sin(i * 1.3));
        shape.y.push_back(std::sin(i * 0.01) + 0.01 * std::cos(i * 2.1));
    }
    CurveDefinition definition;
    definition.shape = shape;
    return Curve(definition);
}

// Aborts when two results that should be nearly equal are not.
void requireNear(double a, double b)
{
    constexpr double kNear = 1e-3;  // the accuracy of a scan
    if (!(std::fabs(a - b) <= kNear * std::fabs(b))) {
        std::fprintf(stderr, "analysis_bench: %.17g and %.17g\n", a, b);
        std::abort();
    }
}

struct Extremes {
    double least = INFINITY;
    double greatest = -INFINITY;

    void see(double y)
    {
        least = std::min(least, y);
        greatest = std::max(greatest, y);
    }
};

std::vector<Extremes> scan(const HandwrittenTable& table, const std::vector<double>& x,
                           std::vector<Orders>& orders)
{
    table.orders(x.data(), x.size(), orders.data());
    std::vector<Extremes> found(4);
    for (const Orders& at : orders) {
        found[0].see(at.value);
        found[1].see(at.first);
        found[2].see(at.second);
        found[3].see(at.third);
    }
    return found;
}

// The value at the knots and where its slope, a + b t + c t^2 each, is 0.
Extremes valueOf(const std::vector<mf::host::SplinePiece>& pieces, const std::vector<double>& lengths)
{
    Extremes found;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const mf::host::SplinePiece& p = pieces[i];
        const auto value = [&](double t) { return p.a + t * (p.b + t * (p.c + t * p.d)); };
        found.see(p.a);
        found.see(value(lengths[i]));
        const double discriminant = 4.0 * p.c * p.c - 12.0 * p.b * p.d;
        if (discriminant < 0.0)
            continue;
        const double root = std::sqrt(discriminant);
        for (const double t : {(-2.0 * p.c - root) / (6.0 * p.d), (-2.0 * p.c + root) / (6.0 * p.d)}) {
            if (t > 0.0 && t < lengths[i])
                found.see(value(t));
        }
    }
    return found;
}

void addSummary(const std::string& name, const Curve& curve)
{
    benchmark::RegisterBenchmark(name.c_str(), [curve](benchmark::State& state) {
        for (auto _ : state) {
            auto summary = mf::analysis::summarize(curve);
            benchmark::DoNotOptimize(summary);
        }
    });
}

void addCam()
{
    constexpr int kPlaces = 10'000;
    const auto table = std::make_shared<const HandwrittenTable>(kRowLength, kCamValues);
    std::vector<double> x;
    for (int i = 0; i < kPlaces; ++i)
        x.push_back(4.0 * kRowLength * i / (kPlaces - 1));
    std::vector<Orders> orders(x.size());
    const Curve curve = cam();
    const auto proved = mf::analysis::summarize(curve);
    const auto scanned = scan(*table, x, orders);
    for (std::size_t k = 0; k < 4; ++k) {
        requireNear(proved[k].least.y, scanned[k].least);
        requireNear(proved[k].greatest.y, scanned[k].greatest);
    }
    benchmark::RegisterBenchmark("summary/cam/scan", [=](benchmark::State& state) mutable {
        for (auto _ : state) {
            auto found = scan(*table, x, orders);
            benchmark::DoNotOptimize(found);
        }
    });
    addSummary("summary/cam/proof", curve);
}

void addPoints(const std::string& name, const Curve& curve)
{
    std::vector<mf::host::SplinePiece> pieces;
    std::vector<double> lengths;
    for (const mf::curve::CurvePiece& piece : mf::curve::piecesOf(curve)) {
        pieces.push_back(std::get<mf::host::SplinePiece>(piece.formula));
        lengths.push_back(piece.end - piece.start);
    }
    const auto proved = mf::analysis::summarize(curve);
    const Extremes value = valueOf(pieces, lengths);
    requireNear(proved[0].least.y, value.least);
    requireNear(proved[0].greatest.y, value.greatest);
    benchmark::RegisterBenchmark((name + "/value").c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
            Extremes found = valueOf(pieces, lengths);
            benchmark::DoNotOptimize(found);
        }
    });
    addSummary(name + "/proof", curve);
}

void addAll()
{
    addCam();
    addPoints("summary/cubic", points(mf::Interpolation::Cubic));
    addPoints("summary/akima", points(mf::Interpolation::Akima));
}

[[maybe_unused]] const bool kAdded = (addAll(), true);

}  // namespace
}  // namespace bench
