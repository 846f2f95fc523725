// SPDX-License-Identifier: MIT

// No sample of a random curve exceeds a peak that is guaranteed, and few peaks are not.
//
// The ordinary run has two hundred curves of each kind. The full run is a separate command:
//
//     MFCURVES_RANDOM_CURVES=10000 MFCURVES_RANDOM_SAMPLES=100000 randomPeaks_test

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>

#include "mfcurves/analysis/analysis.h"
#include "tests/curve/randomCurves.h"

namespace {

using mf::Curve;
using mf::analysis::summarize;
using mf::analysis::Summary;

int setting(const char* name, int usual)
{
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : usual;
}

const int kCurves = setting("MFCURVES_RANDOM_CURVES", 200);
const int kSamples = setting("MFCURVES_RANDOM_SAMPLES", 2000);
constexpr double kMostNotGuaranteed = 0.05;

std::optional<Curve> curveOf(const mf::CurveDefinition& definition)
{
    try {
        return Curve(definition);
    } catch (const mf::CurveError&) {
        return std::nullopt;
    }
}

constexpr double kLarge = 1e8;  // larger values have a pole nearby

// The largest magnitude of an order at evenly spaced places, and where it is.
double largest(const Curve& curve, int order, double from, double to, int places, double& at)
{
    double most = -1.0;
    for (int i = 0; i <= places; ++i) {
        const double x = from + (to - from) * i / static_cast<double>(places);
        const double size = std::fabs(curve(x, order));
        if (std::isnan(size))
            return HUGE_VAL;
        if (size > most) {
            most = size;
            at = x;
        }
    }
    return most;
}

// Whether an order stays moderate closer and closer to the place where it is largest.
bool isModerate(const Curve& curve, int order)
{
    constexpr int kPlaces = 4000;
    constexpr int kCloserPlaces = 16;
    double at = 0.0;
    double most = largest(curve, order, curve.firstX(), curve.lastX(), kPlaces, at);
    double step = (curve.lastX() - curve.firstX()) / kPlaces;
    for (; most < kLarge && step > 1e-13 * (1.0 + std::fabs(at)); step *= 0.125) {
        most = largest(curve, order, std::max(at - step, curve.firstX()), std::min(at + step, curve.lastX()),
                       kCloserPlaces, at);
    }
    return most < kLarge;
}

// Whether all four orders are finite at many places, and on both sides of the multiples of a half,
// where the numbers of these expressions put most of their poles.
bool isFinite(const Curve& curve)
{
    for (double x = std::ceil(2.0 * curve.firstX()) / 2.0; x <= curve.lastX(); x += 0.5) {
        for (const mf::Side side : {mf::Side::Plain, mf::Side::Left, mf::Side::Right}) {
            for (int order = 0; order < 4; ++order) {
                if (!(std::fabs(curve.at(x, side)[order]) < kLarge))
                    return false;
            }
        }
    }
    for (int order = 0; order < 4; ++order) {
        if (!isModerate(curve, order))
            return false;
    }
    return true;
}

struct Count {
    int curves = 0;
    int orders = 0;
    int notGuaranteed = 0;
    double longest = 0.0;  // milliseconds of processor time
};

void examine(const Curve& curve, const std::string& name, Count& count)
{
    const std::clock_t start = std::clock();
    const auto summary = summarize(curve);
    const double taken = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    count.longest = std::max(count.longest, taken);
    ++count.curves;
    std::vector<double> x(static_cast<std::size_t>(kSamples));
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(x.size() - 1);
        x[i] = curve.firstX() + (curve.lastX() - curve.firstX()) * share;
    }
    x.back() = curve.lastX();
    std::vector<double> y(x.size());
    for (int order = 0; order < 4; ++order) {
        const Summary& s = summary[static_cast<std::size_t>(order)];
        ++count.orders;
        if (!s.guaranteed) {
            ++count.notGuaranteed;
            continue;
        }
        ASSERT_LE(s.least.y, s.greatest.y) << name;
        ASSERT_GE(s.least.x, curve.firstX());
        ASSERT_LE(s.greatest.x, curve.lastX());
        curve.evaluate(x.data(), x.size(), order, y.data());
        for (std::size_t i = 0; i < x.size(); ++i) {
            ASSERT_FALSE(y[i] > s.greatest.y + s.greatest.error)
                << name << " order " << order << " at " << x[i] << ": " << y[i] << " above " << s.greatest.y;
            ASSERT_FALSE(y[i] < s.least.y - s.least.error)
                << name << " order " << order << " at " << x[i] << ": " << y[i] << " below " << s.least.y;
        }
    }
}

void report(const Count& count)
{
    std::printf("%d curves, %d of %d orders not guaranteed, longest %.1f ms\n", count.curves,
                count.notGuaranteed, count.orders, count.longest);
    EXPECT_LE(count.notGuaranteed, kMostNotGuaranteed * count.orders);
}

TEST(RandomPeaks, OfPointsAreNotExceeded)
{
    curve_test::RandomCurves random(21);
    Count count;
    for (int i = 0; i < kCurves && !HasFatalFailure(); ++i) {
        if (const auto curve = curveOf(random.points()))
            examine(*curve, "points " + std::to_string(i), count);
    }
    report(count);
}

// Tables are proved without exception.
TEST(RandomPeaks, OfTablesAreNotExceeded)
{
    curve_test::RandomCurves random(20);
    Count tables;
    for (int i = 0; i < kCurves && !HasFatalFailure(); ++i) {
        const auto curve = curveOf(random.segments());
        if (curve && isFinite(*curve))
            examine(*curve, "table " + std::to_string(i), tables);
    }
    report(tables);
    EXPECT_EQ(tables.notGuaranteed, 0);
}

// Some random expressions are not proved: those with thousands of kinks, and those that are
// constant except for rounding.
TEST(RandomPeaks, OfExpressionsAreNotExceeded)
{
    curve_test::RandomCurves random(22);
    Count count;
    for (int i = 0; i < kCurves && !HasFatalFailure(); ++i) {
        const mf::CurveDefinition definition = random.expression();
        const auto curve = curveOf(definition);
        if (curve && isFinite(*curve))
            examine(*curve, std::get<mf::ExpressionShape>(definition.shape).text, count);
    }
    report(count);
}

}  // namespace
