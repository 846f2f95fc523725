// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <numbers>
#include <ostream>

#include "mfcurves/functions/calculators.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/profiles/definitionProblems.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

namespace {

using std::numbers::pi;

constexpr int kOrders = 4;
constexpr int kSteps = 4096;  // of a grid; eighths, where laws have their seams, lie on it

struct Stroke {
    const char *x1, *y1, *x2, *y2;
};

// A law whose parameters are replaced by numbers as a segment table does it, compiled
// with its derivatives.
class Law {
public:
    explicit Law(const mfProfile_c& profile,
                 const Stroke& stroke = {"0.000000", "0.000000", "1.000000", "1.000000"})
        : variable_(wide(profile.independentVariable))
    {
        mfSegmentTypeParser_c parser;
        std::string text = profile.resultExpression;
        parser.replaceAll(text, profile.x1, stroke.x1);
        parser.replaceAll(text, profile.y1, stroke.y1);
        parser.replaceAll(text, profile.x2, stroke.x2);
        parser.replaceAll(text, profile.y2, stroke.y2);
        MotionMEParser engine;
        ICalculator* value = nullptr;
        engine.parse(wide(text).c_str(), variable_.data(), &value);
        orders_[0].reset(value);
        for (int order = 1; order < kOrders; ++order)
            orders_[order] = mf::derivativeOf(orders_[order - 1].get());
    }

    bool compiles() const { return orders_[kOrders - 1] != nullptr; }

    // NaN where the expression has no value.
    double operator()(double u, int order = 0) const
    {
        MMEP_Data argument(u);
        MMEP_Data result(std::numeric_limits<double>::quiet_NaN());
        orders_[order]->Evaluate(1, &argument, result);
        return *result.getValue();
    }

private:
    static std::wstring wide(const std::string& text) { return {text.begin(), text.end()}; }

    std::wstring variable_;
    mf::CalculatorHolder orders_[kOrders];
};

// The records of a file, "" for the built-in table, by name.
std::map<std::string, std::unique_ptr<mfProfile_c>> profilesOf(const std::string& fileName)
{
    std::vector<mfProfile_c*> records;
    EXPECT_TRUE(mfSegmentTypeParser_c().readProfiles(fileName, records));
    std::map<std::string, std::unique_ptr<mfProfile_c>> profiles;
    for (mfProfile_c* record : records) {
        EXPECT_FALSE(profiles.contains(record->name)) << record->name;
        profiles[record->name].reset(record);
    }
    return profiles;
}

const char* const kLibrary = MFCURVES_SHARE_FOLDER "/SegmentTypes.txt";

struct Peak {
    double factor;  // largest absolute value over the whole law
    double at;      // a place where the law has it
};

struct LawCase {
    const char* name;
    Peak velocity;
    Peak acceleration;
    Peak jerk;
    int restsAtStart;  // how many derivatives, from the first on, are zero at the start
    int restsAtEnd;
    bool symmetric;  // ybar(1 - u) = 1 - ybar(u)
    std::vector<double> seams;
    int continuousOrder;  // the highest order that is continuous at the seams
};

void PrintTo(const LawCase& law, std::ostream* os)
{
    *os << law.name;
}

const double kRoot3 = std::sqrt(3.0), kRoot5 = std::sqrt(5.0), kRoot6 = std::sqrt(6.0),
             kRoot7 = std::sqrt(7.0);

// Where the cosine of pi*u has this value.
double atCosine(double cosine)
{
    return std::acos(cosine) / pi;
}

// Peaks as published, or from the zeros of the next derivative. With p = u(1-u)
// the polynomials from rest to rest have ybar' = k p^n, and their peaks follow by
// hand.
const LawCase kLaws[] = {
    {"Cubic", {1.5, 0.5}, {6, 0}, {12, 0.3}, 1, 1, true, {}, 3},
    {"Quarter-Sine", {pi / 2, 0}, {pi * pi / 4, 1}, {pi * pi * pi / 8, 0}, 0, 1, false, {}, 3},
    {"Quarter-Cosine", {pi / 2, 1}, {pi * pi / 4, 0}, {pi * pi * pi / 8, 1}, 1, 0, false, {}, 3},
    {"Half-Cosine", {pi / 2, 0.5}, {pi * pi / 2, 0}, {pi * pi * pi / 2, 0.5}, 1, 1, true, {}, 3},
    {"3-4-5-Polynomial", {15.0 / 8, 0.5}, {10 / kRoot3, (3 - kRoot3) / 6}, {60, 0}, 2, 2, true, {}, 3},
    {"4-5-6-7-Polynomial",
     {35.0 / 16, 0.5},
     {84 * kRoot5 / 25, (5 - kRoot5) / 10},
     {52.5, 0.5},
     3,
     3,
     true,
     {},
     3},
    {"5-6-7-8-9-Polynomial",
     {315.0 / 128, 0.5},
     {1215 * kRoot7 / 343, (7 - kRoot7) / 14},
     {78.75, 0.5},
     3,
     3,
     true,
     {},
     3},
    {"Cycloidal", {pi / 2, 1}, {pi * pi / 4, 0}, {pi * pi * pi / 8, 1}, 1, 0, false, {}, 3},
    {"Quadratic", {2, 1}, {2, 0.5}, {0, 0.5}, 1, 0, false, {}, 3},
    {"Linear", {1, 0.5}, {0, 0.5}, {0, 0.5}, 0, 0, true, {}, 3},
    {"Simple-Harmonic", {pi / 2, 0.5}, {pi * pi / 2, 0}, {pi * pi * pi / 2, 0.5}, 1, 1, true, {}, 3},
    {"2-3-Polynomial", {1.5, 0.5}, {6, 0}, {12, 0.3}, 1, 1, true, {}, 3},
    {"True-Cycloidal", {2, 0.5}, {2 * pi, 0.25}, {4 * pi * pi, 0}, 2, 2, true, {}, 3},
    {"Parabolic", {2, 0.5}, {4, 0.25}, {0, 0.25}, 1, 1, true, {0.5}, 1},
    {"Cubic-Spline-Pair", {3, 0.5}, {12, 0.5}, {24, 0.25}, 2, 2, true, {0.5}, 1},
    {"Trapezoidal-Acceleration",
     {2, 0.5},
     {16.0 / 3, 0.25},
     {128.0 / 3, 0.0625},
     2,
     2,
     true,
     {0.125, 0.375, 0.625, 0.875},
     2},
    {"Modified-Trapezoid",
     {2, 0.5},
     {8 * pi / (2 + pi), 0.25},
     {32 * pi * pi / (2 + pi), 0},
     2,
     2,
     true,
     {0.125, 0.375, 0.625, 0.875},
     3},
    {"Modified-Sine",
     {4 * pi / (4 + pi), 0.5},
     {4 * pi * pi / (4 + pi), 0.125},
     {16 * pi * pi * pi / (4 + pi), 0},
     2,
     2,
     true,
     {0.125, 0.875},
     3},
    // sin^2(2 pi u) = 2/3
    {"Gutman-1-3-Harmonic",
     {2, 0.5},
     {2 * kRoot6 * pi / 3, std::asin(std::sqrt(2.0 / 3)) / (2 * pi)},
     {6 * pi * pi, 0},
     2,
     2,
     true,
     {},
     3},
    {"Freudenstein-1-3-Harmonic", {2, 0.5}, {12 * pi / 7, 0.25}, {36 * pi * pi / 7, 0}, 2, 2, true, {}, 3},
    {"Freudenstein-1-3-5-Harmonic",
     {2, 0.5},
     {240 * pi / 149, 0.25},
     {900 * pi * pi / 149, 0},
     2,
     2,
     true,
     {},
     3},
    // The place of the first peak by bisection in exact fractions; the others at the
    // ends, by hand.
    {"8th-Degree-Polynomial",
     {1.7766609647663847, 0.53264074589984611},
     {5.2683, 1},
     {36.5853, 0},
     2,
     1,
     false,
     {},
     3},
    {"6-7-8-9-10-11-Polynomial",
     {693.0 / 256, 0.5},
     {24640.0 / 2187, 1.0 / 3},
     {3465.0 / 32, 0.5},
     3,
     3,
     true,
     {},
     3},
    // ybar' = pi/2 sin(1 - cos), ybar'' = pi^2/2 (1 + cos - 2 cos^2), ybar''' =
    // pi^3 sin (2 cos - 1/2), each of pi*u.
    {"Double-Harmonic",
     {3 * kRoot3 * pi / 8, atCosine(-0.5)},
     {pi * pi, 1},
     {pi * pi * pi * std::sqrt(1 - std::pow((1 - std::sqrt(129.0)) / 16, 2)) *
          (0.5 - (1 - std::sqrt(129.0)) / 8),
      atCosine((1 - std::sqrt(129.0)) / 16)},
     3,
     1,
     false,
     {},
     3},
    {"Half-Cycloidal-Start", {2, 1}, {pi, 0.5}, {pi * pi, 0}, 2, 0, false, {}, 3},
    {"Half-Cycloidal-End", {2, 0}, {pi, 0.5}, {pi * pi, 0}, 0, 2, false, {}, 3},
};

class DesignLibraryLaw : public testing::TestWithParam<LawCase> {
protected:
    DesignLibraryLaw() : profiles_(profilesOf(kLibrary)), law_(*profiles_.at(GetParam().name)) {}

    std::map<std::string, std::unique_ptr<mfProfile_c>> profiles_;
    Law law_;
};

// Rounding of a value near 1 and of its derivatives, whose terms are larger than
// their sum: a few hundred units in the last place of the largest coefficient.
constexpr double kTolerance = 2e-10;

TEST_P(DesignLibraryLaw, RisesFromZeroToOne)
{
    ASSERT_TRUE(law_.compiles());
    EXPECT_NEAR(law_(0), 0, kTolerance);
    EXPECT_NEAR(law_(1), 1, kTolerance);
    for (int i = 0; i <= kSteps; ++i) {
        const double u = double(i) / kSteps;
        EXPECT_GE(law_(u, 1), -kTolerance) << u;
        for (int order = 0; order < kOrders; ++order)
            EXPECT_TRUE(std::isfinite(law_(u, order))) << order << " at " << u;
    }
}

// A negative number is inserted into the formula with its sign and without brackets.
TEST_P(DesignLibraryLaw, ScalesWithItsStroke)
{
    const Law stretched(*profiles_.at(GetParam().name), {"-3.500000", "2.250000", "-1.500000", "-4.750000"});
    ASSERT_TRUE(stretched.compiles());
    const double length = 2, height = -7;
    for (int i = 1; i < 100; ++i) {
        const double u = double(i) / 128;
        EXPECT_NEAR(stretched(-3.5 + length * u), 2.25 + height * law_(u), 1e-9) << u;
        for (int order = 1; order < kOrders; ++order)
            EXPECT_NEAR(stretched(-3.5 + length * u, order),
                        height / std::pow(length, order) * law_(u, order), 1e-8)
                << order << " at " << u;
    }
}

TEST_P(DesignLibraryLaw, HasItsPublishedPeaks)
{
    ASSERT_TRUE(law_.compiles());
    const Peak peaks[] = {GetParam().velocity, GetParam().acceleration, GetParam().jerk};
    for (int order = 1; order < kOrders; ++order) {
        const Peak& peak = peaks[order - 1];
        EXPECT_NEAR(std::abs(law_(peak.at, order)), peak.factor, kTolerance * (1 + peak.factor)) << order;
        double largest = 0;
        for (int i = 0; i <= kSteps; ++i)
            largest = std::max(largest, std::abs(law_(double(i) / kSteps, order)));
        EXPECT_LE(largest, peak.factor + kTolerance * (1 + peak.factor)) << order;
    }
}

TEST_P(DesignLibraryLaw, RestsAtItsEnds)
{
    ASSERT_TRUE(law_.compiles());
    const auto restsAt = [this](double u) {
        int order = 1;
        while (order < kOrders && std::abs(law_(u, order)) < 1e-8)
            ++order;
        return order - 1;
    };
    if (GetParam().restsAtStart > 0)
        EXPECT_EQ(restsAt(0), GetParam().restsAtStart);
    else
        EXPECT_GT(law_(0, 1), 0.5);
    if (GetParam().restsAtEnd > 0)
        EXPECT_EQ(restsAt(1), GetParam().restsAtEnd);
    else
        EXPECT_GT(law_(1, 1), 0.5);
}

TEST_P(DesignLibraryLaw, IsSymmetricWhereItShouldBe)
{
    ASSERT_TRUE(law_.compiles());
    double difference = 0;
    for (int i = 0; i <= kSteps; ++i) {
        const double u = double(i) / kSteps;
        difference = std::max(difference, std::abs(law_(u) + law_(1 - u) - 1));
    }
    if (GetParam().symmetric)
        EXPECT_LT(difference, kTolerance);
    else
        EXPECT_GT(difference, 1e-3);
}

// Each piece meets the next one in value and derivatives up to continuousOrder; the next
// derivative, if the law has it, jumps.
TEST_P(DesignLibraryLaw, PiecesMeetAtTheirSeams)
{
    ASSERT_TRUE(law_.compiles());
    for (const double seam : GetParam().seams) {
        const double before = std::nextafter(seam, 0.0);
        const double after = std::nextafter(seam, 1.0);
        for (int order = 0; order <= GetParam().continuousOrder; ++order) {
            EXPECT_NEAR(law_(before, order), law_(after, order), 1e-11) << order << " at " << seam;
            EXPECT_NEAR(law_(seam, order), law_(after, order), 1e-11) << order << " at " << seam;
        }
        if (GetParam().continuousOrder < 3) {
            EXPECT_GT(std::abs(law_(before, GetParam().continuousOrder + 1) -
                               law_(after, GetParam().continuousOrder + 1)),
                      1)
                << seam;
        }
    }
    const std::string& formula = profiles_.at(GetParam().name)->resultExpression;
    EXPECT_EQ(GetParam().seams.empty(), formula.find("if(") == std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Profiles, DesignLibraryLaw, testing::ValuesIn(kLaws), [](const auto& tested) {
    std::string name = tested.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(DesignLibrary, EachLawOfTheFileIsTested)
{
    EXPECT_EQ(profilesOf(kLibrary).size(), std::size(kLaws));
}

TEST(DesignLibrary, FileHasNoProblem)
{
    std::ifstream stream(kLibrary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_TRUE(mf::profiles::definitionProblems(text).empty());
}

// The shipped folder includes the built-in laws: the same definitions, which the manager
// treats as the same profiles.
TEST(DesignLibrary, BuiltInLawsAreAmongThem)
{
    const auto library = profilesOf(kLibrary);
    for (const auto& [name, profile] : profilesOf("")) {
        ASSERT_TRUE(library.contains(name)) << name;
        EXPECT_EQ(library.at(name)->definitionText, profile->definitionText);
    }
}

}  // namespace
