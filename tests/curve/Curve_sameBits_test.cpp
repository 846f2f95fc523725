// SPDX-License-Identifier: MIT

// A curve has the same bits as the motion function of its definition: inside rows, and everywhere
// for points and expressions.

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "tests/curve/givenCurve.h"
#include "tests/curve/randomCurves.h"

namespace {

using curve_test::GivenCurve;
using curve_test::RandomCurves;
using mf::Curve;
using mf::CurveDefinition;

constexpr int kCurvesOfEachKind = 3400;
constexpr int kPlaces = 12;

std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

// The motion function has 0.0 where the curve has no value.
void expectSame(const Curve& curve, GivenCurve& given, double x)
{
    const mf::CurveValues values = curve.at(x);
    for (int order = 0; order <= 3; ++order) {
        const double expected = given.evaluate(x, order);
        ASSERT_EQ(bits(curve(x, order)), bits(values[order])) << "order " << order << " at " << x;
        if (std::isnan(values[order]))
            ASSERT_EQ(expected, 0.0) << "order " << order << " at " << x;
        else
            ASSERT_EQ(bits(values[order]), bits(expected)) << "order " << order << " at " << x;
    }
}

class SameBits : public testing::Test {
protected:
    SameBits() { QelSession_c::setMotionFunctionContext(&host_); }

    mf::host::Context host_;
};

TEST_F(SameBits, InsideRows)
{
    RandomCurves random(1);
    for (int i = 0; i < kCurvesOfEachKind; ++i) {
        SCOPED_TRACE(i);
        const CurveDefinition definition = random.segments();
        const Curve curve(definition);
        GivenCurve given(definition);
        const std::vector<double> seams = curve_test::seamsOf(definition);
        for (std::size_t row = 1; row < seams.size(); ++row) {
            expectSame(curve, given, std::nextafter(seams[row - 1], seams[row]));
            expectSame(curve, given, std::nextafter(seams[row], seams[row - 1]));
            expectSame(curve, given, 0.5 * (seams[row - 1] + seams[row]));
            for (int k = 0; k < 3; ++k)
                expectSame(curve, given, random.uniform(seams[row - 1], seams[row]));
            if (HasFatalFailure())
                return;
        }
    }
}

TEST_F(SameBits, EverywhereThroughPoints)
{
    RandomCurves random(2);
    for (int i = 0; i < kCurvesOfEachKind; ++i) {
        SCOPED_TRACE(i);
        const CurveDefinition definition = random.points();
        const Curve curve(definition);
        GivenCurve given(definition);
        for (const double x : curve_test::seamsOf(definition)) {
            expectSame(curve, given, x);
            expectSame(curve, given, std::nextafter(x, 1e9));
            expectSame(curve, given, std::nextafter(x, -1e9));
        }
        for (int k = 0; k < kPlaces; ++k)
            expectSame(curve, given, random.uniform(curve.firstX() - 50.0, curve.lastX() + 50.0));
        if (HasFatalFailure())
            return;
    }
}

TEST_F(SameBits, EverywhereOfExpressions)
{
    RandomCurves random(3);
    for (int i = 0; i < kCurvesOfEachKind; ++i) {
        const CurveDefinition definition = random.expression();
        SCOPED_TRACE(std::get<CurveDefinition::Expression>(definition.shape).text);
        const Curve curve(definition);
        GivenCurve given(definition);
        for (const double x : {0.0, 1.0, -1.0, 0.5, curve.firstX(), curve.lastX()})
            expectSame(curve, given, x);
        for (int k = 0; k < kPlaces; ++k)
            expectSame(curve, given, random.uniform(curve.firstX() - 3.0, curve.lastX() + 3.0));
        if (HasFatalFailure())
            return;
    }
}

}  // namespace
