// SPDX-License-Identifier: MIT

// Writes random definitions as documents and reads them back: all that is not reported as lost
// comes back, and a second round changes nothing.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/laws.h"
#include "tests/curve/randomCurves.h"

namespace mf::test {
namespace {

constexpr int kCurves = 1000;

// A definition as a document stores it: laws in normal form, and only those that rows name.
CurveDefinition asDocument(CurveDefinition definition)
{
    if (auto* shape = std::get_if<SegmentShape>(&definition.shape)) {
        shape->sixDecimals = true;
        std::erase_if(shape->laws, [&](const LawText& law) {
            return std::none_of(shape->rows.begin(), shape->rows.end(),
                                [&](const CurveRow& row) { return row.profile == law.name; });
        });
        for (LawText& law : shape->laws) {
            std::erase_if(law.text, [](char c) { return c == ' ' || c == '\n'; });
            law.text.replace(0, 11, "segmenttype");
            law.text.replace(law.text.size() - 14, 14, "endsegmenttype");
        }
        for (CurveRow& row : shape->rows) {
            if (row.profile.ends_with(" (Default)"))
                row.profile.resize(row.profile.size() - 10);
        }
    }
    return definition;
}

void expectSameBits(const Curve& a, const Curve& b, curve_test::RandomCurves& random)
{
    for (int i = 0; i < 5; ++i) {
        const double x = random.uniform(a.firstX() - 1.0, a.lastX() + 1.0);
        for (int order = 0; order <= 3; ++order)
            ASSERT_EQ(std::bit_cast<std::uint64_t>(a(x, order)), std::bit_cast<std::uint64_t>(b(x, order)))
                << "order " << order << " at " << x;
    }
}

void setHead(CurveDefinition& definition, curve_test::RandomCurves& random)
{
    constexpr Quantity kQuantities[] = {Quantity::Displacement, Quantity::Velocity, Quantity::Acceleration,
                                        Quantity::Force, Quantity::Torque};
    definition.name = "curve " + std::to_string(random.whole(0, 1000)) + " <&> \xC3\xBC";
    definition.quantity = kQuantities[random.whole(0, 4)];
    definition.rotary = definition.quantity <= Quantity::Acceleration && random.whole(0, 1) == 1;
    definition.over = static_cast<Over>(random.whole(0, 2));
    if (definition.over == Over::MotionResult)
        definition.motionResult = "Slip Speed";
    else
        definition.motionResult.clear();
    if (random.whole(0, 9) == 0)
        definition.dataType = MfXY_Misc;
}

TEST(RoundTrip, OfRandomCurvesKeepsWhatIsNotReported)
{
    curve_test::RandomCurves random(11);
    const ReadSettings settings{{}, {"Slip Speed"}};
    int exact = 0;
    for (int i = 0; i < kCurves; ++i) {
        SCOPED_TRACE(i);
        CurveDefinition definition = random.any();
        setHead(definition, random);
        const Curve curve(definition);
        std::vector<Problem> losses;
        const std::string xml = curve.toXml(&losses);
        const Curve read = Curve::parse(xml, settings);
        ASSERT_TRUE(read.warnings().empty());
        if (losses.empty()) {
            ++exact;
            CurveDefinition expected = asDocument(definition);
            if (expected.over != Over::MotionResult)
                expected.motionResult.clear();
            ASSERT_EQ(read.definition(), expected);
            expectSameBits(curve, read, random);
        }
        // From here on nothing is lost. A document does not keep a blank at the start of a text.
        const bool isTrimmed = std::any_of(losses.begin(), losses.end(), [](const Problem& loss) {
            return loss.message.starts_with("the expression");
        });
        losses.clear();
        const std::string again = read.toXml(&losses);
        ASSERT_TRUE(losses.empty()) << losses.front().message;
        ASSERT_TRUE(isTrimmed || again == xml) << again << xml;
        ASSERT_EQ(Curve::parse(again, settings), read);
        const Curve made(read.definition());
        ASSERT_EQ(made, read);
        ASSERT_EQ(made.definition(), read.definition());
        expectSameBits(made, read, random);
    }
    EXPECT_GT(exact, kCurves / 10);
    EXPECT_LT(exact, kCurves);
}

// Every law of the library comes back with its bits.
TEST(RoundTrip, OfEveryLawKeepsItsBits)
{
    curve_test::RandomCurves random(12);
    for (const Law& law : laws()) {
        SCOPED_TRACE(law.name);
        CurveDefinition definition;
        definition.shape =
            SegmentShape{-1.5, 2.25, {{3.125, 7.0, law.name}, {5.0, -1.0, law.name}}, {}, false};
        const Curve curve(definition);
        std::vector<Problem> losses;
        const Curve read = Curve::parse(curve.toXml(&losses));
        EXPECT_TRUE(losses.empty());
        EXPECT_EQ(std::get<SegmentShape>(read.definition().shape).rows[0].profile, law.name);
        expectSameBits(curve, read, random);
        expectSameBits(Curve(curve.definition()), curve, random);
    }
}

}  // namespace
}  // namespace mf::test
