// SPDX-License-Identifier: MIT

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/laws.h"
#include "tests/analysis/curves.h"

namespace {

using mf::analysis::factors;
using mf::analysis::LawFactors;
using mf::analysis::Limits;
using mf::analysis::shortestDuration;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// One line of factors.txt, which make_factors.py computes with 40 digits.
struct Expected {
    std::string name;
    double cv, cvAt, ca, caAt, cj, cjAt, power, rms;
};

double number(const std::string& text)
{
    return text == "inf" ? kInfinity : std::stod(text);
}

std::vector<Expected> expectedFactors()
{
    std::ifstream file(ANALYSIS_TEST_DATA "/factors.txt");
    std::vector<Expected> all;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        Expected e;
        words >> e.name;
        for (double* value : {&e.cv, &e.cvAt, &e.ca, &e.caAt, &e.cj, &e.cjAt, &e.power, &e.rms}) {
            std::string word;
            words >> word;
            *value = number(word);
        }
        all.push_back(e);
    }
    return all;
}

mf::LawText lawNamed(const std::string& name)
{
    for (const mf::Law& law : mf::laws()) {
        if (law.name == name)
            return {law.name, law.text};
    }
    ADD_FAILURE() << "no law " << name;
    return {};
}

// Bounds that Sollya certifies for the largest magnitudes (bounds.txt, make_bounds.py).
TEST(Factors, LieWithinCertifiedBounds)
{
    constexpr double kRounding = 1e-12;  // of the terms of laws of high degree
    std::ifstream file(ANALYSIS_TEST_DATA "/bounds.txt");
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        std::istringstream words(line);
        std::string name;
        int order = 0;
        double low = 0.0, high = 0.0;
        words >> name >> order >> low >> high;
        ASSERT_FALSE(words.fail()) << line;
        const LawFactors found = factors(lawNamed(name));
        const double largest = order == 1 ? found.cv : order == 2 ? found.ca : found.cj;
        EXPECT_GE(largest, low * (1.0 - kRounding)) << line;
        EXPECT_LE(largest, high * (1.0 + kRounding)) << line;
    }
    EXPECT_EQ(count, 39);
}

void expectFactor(double found, double expected, const char* what)
{
    constexpr double kRelative = 1e-12;
    if (std::isinf(expected))
        EXPECT_EQ(found, expected) << what;
    else
        EXPECT_NEAR(found, expected, kRelative * std::max(expected, 1e-300)) << what;
}

class FactorsOfLaw : public testing::TestWithParam<Expected> {};

void PrintTo(const Expected& e, std::ostream* os)
{
    *os << e.name;
}

TEST_P(FactorsOfLaw, AreTheClosedFormsAndProved)
{
    const Expected& e = GetParam();
    const LawFactors found = factors(lawNamed(e.name));
    expectFactor(found.cv, e.cv, "cv");
    expectFactor(found.ca, e.ca, "ca");
    expectFactor(found.cj, e.cj, "cj");
    expectFactor(found.power, e.power, "power");
    expectFactor(found.rmsAcceleration, e.rms, "rms");
    EXPECT_NEAR(found.cvAt, e.cvAt, 1e-12);
    EXPECT_NEAR(found.caAt, e.caAt, 1e-12);
    EXPECT_NEAR(found.cjAt, e.cjAt, 1e-12);
    EXPECT_TRUE(found.guaranteed);
}

INSTANTIATE_TEST_SUITE_P(AllLaws, FactorsOfLaw, testing::ValuesIn(expectedFactors()), [](const auto& tested) {
    std::string name;
    for (const char c : tested.param.name)
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    return name;
});

TEST(Factors, AreKnownForAllLaws)
{
    EXPECT_EQ(expectedFactors().size(), 26u);
}

struct ContinuityCase {
    const char* name;
    const char* law;
    int start, end, inside;
};

const ContinuityCase kContinuities[] = {
    {"Linear", "Linear", 0, 0, 4},
    {"Quadratic", "Quadratic", 1, 0, 4},
    {"Cubic", "Cubic", 1, 1, 4},
    {"Polynomial345", "3-4-5-Polynomial", 2, 2, 4},
    {"Polynomial4567", "4-5-6-7-Polynomial", 3, 3, 4},
    {"Polynomial56789", "5-6-7-8-9-Polynomial", 4, 4, 4},
    {"Parabolic", "Parabolic", 1, 1, 1},
    {"Trapezoid", "Trapezoidal-Acceleration", 2, 2, 2},
    {"ModifiedTrapezoid", "Modified-Trapezoid", 2, 2, 3},
    {"ModifiedSine", "Modified-Sine", 2, 2, 3},
    {"HalfCycloidalStart", "Half-Cycloidal-Start", 2, 0, 4},
};

class ContinuityOfLaw : public testing::TestWithParam<ContinuityCase> {};

void PrintTo(const ContinuityCase& c, std::ostream* os)
{
    *os << c.law;
}

TEST_P(ContinuityOfLaw, CountsOrdersThatDoNotJump)
{
    const LawFactors found = factors(lawNamed(GetParam().law));
    EXPECT_EQ(found.startContinuity, GetParam().start);
    EXPECT_EQ(found.endContinuity, GetParam().end);
    EXPECT_EQ(found.innerContinuity, GetParam().inside);
}

INSTANTIATE_TEST_SUITE_P(Laws, ContinuityOfLaw, testing::ValuesIn(kContinuities),
                         [](const auto& tested) { return tested.param.name; });

TEST(Factors, OfALawThatJumpsInsideHaveAnInfiniteVelocity)
{
    const LawFactors found = factors({"Jump",
                                      "SegmentType(\"Jump\", x, x1, y1, x2, y2) xbar = (x-x1)/(x2-x1); "
                                      "y = y1+(y2-y1)*if(xbar-0.25: 0, 1, 1); return y; endSegmentType"});
    EXPECT_EQ(found.cv, kInfinity);
    EXPECT_EQ(found.cvAt, 0.25);
    EXPECT_EQ(found.innerContinuity, -1);
    EXPECT_EQ(found.ca, 0.0);  // the velocity does not jump
    EXPECT_TRUE(found.guaranteed);
}

TEST(Factors, OfALawThatMissesItsEndHaveNoContinuityThere)
{
    const LawFactors found = factors({"Off",
                                      "SegmentType(\"Off\", x, x1, y1, x2, y2) "
                                      "y = y1+0.5*(x-x1); return y; endSegmentType"});
    EXPECT_EQ(found.startContinuity, 0);
    EXPECT_EQ(found.endContinuity, -1);
}

TEST(Factors, OfATextThatIsNotALawAreAnError)
{
    EXPECT_THROW(factors({"Broken", "SegmentType(\"Broken\""}), mf::CurveError);
}

TEST(ShortestDuration, IsThatOfTheTightestLimit)
{
    LawFactors law{};
    law.cv = 2.0;
    law.ca = 6.0;
    law.cj = 40.0;
    Limits limits;
    EXPECT_EQ(shortestDuration(law, 10.0, limits), 0.0);
    limits.velocity = 4.0;
    EXPECT_DOUBLE_EQ(shortestDuration(law, 10.0, limits), 5.0);
    EXPECT_DOUBLE_EQ(shortestDuration(law, -10.0, limits), 5.0);
    limits.acceleration = 0.6;
    EXPECT_DOUBLE_EQ(shortestDuration(law, 10.0, limits), 10.0);
    limits.jerk = 0.05;
    EXPECT_DOUBLE_EQ(shortestDuration(law, 10.0, limits), 20.0);
    law.cj = kInfinity;
    EXPECT_EQ(shortestDuration(law, 10.0, limits), kInfinity);
    limits.jerk = kInfinity;
    EXPECT_DOUBLE_EQ(shortestDuration(law, 10.0, limits), 10.0);
    EXPECT_EQ(shortestDuration(law, 0.0, limits), 0.0);
}

}  // namespace
