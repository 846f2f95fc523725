// SPDX-License-Identifier: MIT

// Expression functions with a fake engine, all of whose results the test chooses.

#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/resources.h"
#include "tests/functions/fakeEngine.h"
#include "tests/support/FakeHost.h"

namespace {

using mf::test::engine;
using mf::test::ExpressionOverAnEngine;
using mf::test::kCycleAngle;
using mf::test::kOther;
using mf::test::kResult;
using mf::test::kTime;
using mf::test::Meaning;
using testing::ElementsAre;
using testing::IsEmpty;

// Sampling: the table of outcomes

struct Outcome {
    const char* name;
    const wchar_t* text;
    std::vector<MMEP_WString> parameters;
    bool parses;
    mf::MotorDriveType_e quantity;
    int failingSample;  // -1: none
    bool result;
    bool validForPlotting;
    int count;                     // 7 before
    const wchar_t* variable;       // "before" before
    std::vector<int> arrayOrders;  // the orders that have an array afterwards
};

constexpr auto kDisplacement = mf::MotorDriveType_Displacment;

const Outcome kOutcomes[] = {
    {"NothingToParse", L"", {}, true, kDisplacement, -1, false, true, 0, L"before", {}},
    {"OneNameNotKnown", L"u", {kOther}, true, kDisplacement, -1, false, false, 7, L"before", {}},
    {"SeveralNamesTheFirstNotKnown",
     L"u",
     {kOther, kTime},
     true,
     kDisplacement,
     -1,
     false,
     false,
     7,
     L"before",
     {}},
    {"SeveralNamesTheLastNotKnown",
     L"u",
     {kTime, kResult, kOther},
     true,
     kDisplacement,
     -1,
     false,
     false,
     7,
     L"before",
     {}},
    {"SeveralNamesAllKnown",
     L"t",
     {kTime, kCycleAngle, kResult},
     true,
     kDisplacement,
     -1,
     true,
     false,
     7,
     L"before",
     {}},
    {"NoNameAndNoParse", L"1+", {}, false, kDisplacement, -1, true, false, 7, L"Time", {}},
    {"OneNameAndNoParse", L"t+", {kResult}, false, kDisplacement, -1, true, false, 7, L"Angle1", {}},
    {"NoQuantity", L"t", {kTime}, true, mf::MotorDriveType_None, -1, false, true, 100, L"Time", {0}},
    {"TheFirstSampleFails", L"t", {kTime}, true, kDisplacement, 0, false, true, 100, L"Time", {0, 1, 2, 3}},
    {"ASampleFails", L"t", {kTime}, true, kDisplacement, 40, false, true, 100, L"Time", {0, 1, 2, 3}},
    {"TheLastSampleFails", L"t", {kTime}, true, kDisplacement, 99, false, true, 100, L"Time", {0, 1, 2, 3}},
    {"AllSamplesDone", L"t", {kTime}, true, kDisplacement, -1, true, true, 100, L"Time", {0, 1, 2, 3}},
    {"AConstant", L"5", {}, true, kDisplacement, -1, true, true, 100, L"Time", {0, 1, 2, 3}},
    {"AResult", L"{Angle1}", {kResult}, true, kDisplacement, -1, true, true, 100, L"Angle1", {0, 1, 2, 3}},
};

void PrintTo(const Outcome& c, std::ostream* os)
{
    *os << '"' << mf::platform::toUtf8(c.text) << "\" with " << c.parameters.size() << " parameters";
}

class SamplingOutcome : public ExpressionOverAnEngine, public testing::WithParamInterface<Outcome> {};

TEST_P(SamplingOutcome, IsAsDocumented)
{
    const Outcome& c = GetParam();
    engine_.parameters = c.parameters;
    engine_.succeeds = c.parses;
    engine_.makesCalculator = c.parses;
    engine_.evaluate = [&](double x, int order, double& y) {
        y = 2.0 * x;
        return order != 0 || x != c.failingSample;
    };
    prepareToSample();
    function_->setParseExpression(c.text);
    function_->setMotorDependentVar(c.quantity);
    function_->setIndepVar(L"before");
    function_->setPlottingPointCount(7);

    EXPECT_EQ(function_->calculateValue(), c.result);

    EXPECT_EQ(function_->isValidForPlotting(), c.validForPlotting);
    EXPECT_EQ(function_->getPlottingPointCount(), c.count);
    EXPECT_EQ(function_->getIndepVar(), c.variable);
    // The calculator stays until the next compile, unless a sample failed.
    EXPECT_EQ(engine_.alive, c.text[0] != L'\0' && c.parses && c.failingSample == -1 ? 1 : 0);
    for (int order = 0; order <= 3; ++order) {
        const bool expected = testing::Value(c.arrayOrders, testing::Contains(order));
        EXPECT_EQ(function_->getPlottingData(order) != nullptr, expected) << "order " << order;
    }
}

INSTANTIATE_TEST_SUITE_P(Expression, SamplingOutcome, testing::ValuesIn(kOutcomes),
                         [](const auto& tested) { return std::string(tested.param.name); });

class FailingSample : public ExpressionOverAnEngine, public testing::WithParamInterface<int> {};

// The samples before the failing one stay, and so does its x; no derivative is made.
TEST_P(FailingSample, LeavesThoseBeforeIt)
{
    const int failing = GetParam();
    engine_.parameters = {kTime};
    engine_.evaluate = [&](double x, int, double& y) {
        y = 2.0 * x;
        return x != failing;
    };
    prepareToSample();
    EXPECT_FALSE(function_->calculateValue());
    const mfPoint2D_c* const points = function_->getPlottingData0();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(points[i].x(), i <= failing ? i : 0) << i;
        EXPECT_EQ(points[i].y(), i < failing ? 2 * i : 0) << i;
    }
    EXPECT_EQ(engine_.evaluations, failing + 1) << "nothing is evaluated after a failure";
    EXPECT_EQ(engine_.alive, 0) << "no calculator stays";
    EXPECT_FALSE(function_->calculateDerivatives());
}

INSTANTIATE_TEST_SUITE_P(Expression, FailingSample, testing::Values(0, 1, 40, 99));

// Sampling: the meaning of a name

struct NameCase {
    const char* name;
    MMEP_WString parameter;
    bool study;
    bool cycleAngleAvailable;
    bool accepted;
    const wchar_t* variable;
    mf::IndependentVariableType_e type;
};

const NameCase kNameCases[] = {
    {"Time", kTime, true, true, true, L"Time", mf::IndependentVariableType_Time},
    {"TimeWithoutStudy", kTime, false, true, true, L"Time", mf::IndependentVariableType_Time},
    {"CycleAngle", kCycleAngle, true, true, true, L"CycleAngle", mf::IndependentVariableType_CycleAngle},
    {"CycleAngleNotAvailable", kCycleAngle, true, false, false, L"", mf::IndependentVariableType_Time},
    {"CycleAngleWithoutStudy", kCycleAngle, false, true, false, L"", mf::IndependentVariableType_Time},
    {"Result", kResult, true, true, true, L"Angle1", mf::IndependentVariableType_MotionResult},
    {"ResultInManyBraces", MMEP_WString(L" \t{{{ Angle 1 }}\n ", Meaning::ResultObject), true, true, true,
     L" Angle 1 ", mf::IndependentVariableType_MotionResult},
    {"ResultWithBracesInside", MMEP_WString(L"{a}{b}", Meaning::ResultObject), true, true, true, L"a}{b",
     mf::IndependentVariableType_MotionResult},
    {"ResultOfBracesAlone", MMEP_WString(L"{}", Meaning::ResultObject), true, true, true, L"",
     mf::IndependentVariableType_Time},
    {"ResultNamedLikeTime", MMEP_WString(L"{TIME}", Meaning::ResultObject), true, true, true, L"TIME",
     mf::IndependentVariableType_Time},
    {"AnotherName", kOther, true, true, false, L"", mf::IndependentVariableType_Time},
};

void PrintTo(const NameCase& c, std::ostream* os)
{
    *os << '"' << mf::platform::toUtf8(c.parameter.text) << '"';
}

class SampledName : public ExpressionOverAnEngine, public testing::WithParamInterface<NameCase> {};

TEST_P(SampledName, BecomesTheIndependentVariable)
{
    const NameCase& c = GetParam();
    engine_.parameters = {c.parameter};
    host_.study.cycleAngleAvailable = c.cycleAngleAvailable;
    if (!c.study)
        host_.studyAnswer = nullptr;
    prepareToSample();
    EXPECT_EQ(function_->calculateValue(), c.accepted);
    EXPECT_EQ(function_->getIndepVar(), c.variable);
    EXPECT_EQ(function_->independentVar, c.type);
    EXPECT_EQ(function_->motionResult,
              c.type == mf::IndependentVariableType_MotionResult ? CString(c.variable) : CString());
}

// The same results decide for several names.
TEST_P(SampledName, IsAcceptedAmongOthersOrNot)
{
    const NameCase& c = GetParam();
    engine_.parameters = {kTime, c.parameter};
    host_.study.cycleAngleAvailable = c.cycleAngleAvailable;
    if (!c.study)
        host_.studyAnswer = nullptr;
    prepareToSample();
    EXPECT_EQ(function_->calculateValue(), c.accepted);
    EXPECT_EQ(function_->getIndepVar(), L"");
    EXPECT_FALSE(function_->isValidForPlotting());
}

INSTANTIATE_TEST_SUITE_P(Expression, SampledName, testing::ValuesIn(kNameCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ExpressionOverAnEngine, TakesNoCycleAngleWithoutAContext)
{
    QelSession_c::setMotionFunctionContext(nullptr);
    engine_.parameters = {kCycleAngle};
    prepareToSample();
    EXPECT_FALSE(function_->calculateValue());
    EXPECT_EQ(function_->getIndepVar(), L"");
}

// Sampling: the calls

TEST_F(ExpressionOverAnEngine, SamplesTheParseExpressionUnchanged)
{
    engine_.parameters = {kTime};
    prepareToSample();
    const std::wstring text = L"\u20ac" + std::wstring(1, wchar_t(0xD800));  // would not survive narrow text
    bool narrowed = false;
    mf::platform::setNarrowEncoder([&](const wchar_t*, int, char*, int, std::uint32_t& error) {
        narrowed = true;
        error = 5;
        return 0;
    });
    function_->setParseExpression(CString(text));
    EXPECT_TRUE(function_->calculateValue());
    mf::platform::setNarrowEncoder({});
    EXPECT_FALSE(narrowed);
}

TEST_F(ExpressionOverAnEngine, RequestsTheStudyAndReleasesTheOldCalculatorBeforeItParses)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_THAT(host_.calls, ElementsAre("getMotionStudy"));
    const std::vector<std::string> first = engine_.calls;
    EXPECT_THAT(
        first, ElementsAre("parser", "parse the text", "getParamsNum", "getParam 0", "differentiate 0 with 0",
                           "differentiate 1 with 0", "differentiate 2 with 0", "Release 3", "Release 2",
                           "Release 1", "~parser"));
    engine_.calls.clear();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(engine_.calls.front(), "Release 0");
    EXPECT_EQ(engine_.calls.size(), first.size() + 1);
}

// Records the call for the study among the calls of the engine.
class HostAmongTheCalls : public mf::test::FakeHost {
public:
    IMotionStudy_c* getMotionStudy() override
    {
        engine->calls.emplace_back("getMotionStudy");
        return FakeHost::getMotionStudy();
    }
};

TEST_F(ExpressionOverAnEngine, RequestsTheStudyThenReleasesThenParses)
{
    const HostAmongTheCalls host;
    engine_.parameters = {kOther};
    prepareToSample();
    EXPECT_FALSE(function_->calculateValue());
    EXPECT_FALSE(function_->calculateValue());
    const mf::test::Calls once{"parser", "parse the text", "getParamsNum", "getParam 0", "~parser"};
    mf::test::Calls expected{"getMotionStudy"};
    expected.insert(expected.end(), once.begin(), once.end());
    expected.insert(expected.end(), {"getMotionStudy", "Release 0"});
    expected.insert(expected.end(), once.begin(), once.end());
    EXPECT_EQ(engine_.calls, expected);
}

TEST_F(ExpressionOverAnEngine, KeepsTheCalculatorWhenTheTextIsEmpty)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    function_->setParseExpression(L"");
    engine_.calls.clear();
    host_.calls.clear();
    EXPECT_FALSE(function_->calculateValue());
    EXPECT_THAT(engine_.calls, IsEmpty());
    EXPECT_THAT(host_.calls, IsEmpty());
    EXPECT_EQ(engine_.alive, 1);
}

TEST_F(ExpressionOverAnEngine, EvaluatesEachSampleOnceAndEachDerivativeButTheLast)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(engine_.evaluations, 100 + 3 * 99);
}

TEST_F(ExpressionOverAnEngine, LetsAnIntOfSamplingThrough)
{
    engine_.throwsInt = true;
    prepareToSample();
    EXPECT_THROW(function_->calculateValue(), int);
}

TEST_F(ExpressionOverAnEngine, SamplesNothingWithoutACalculator)
{
    engine_.makesCalculator = false;
    prepareToSample();
    EXPECT_FALSE(function_->calculateValue());
    EXPECT_TRUE(function_->isValidForPlotting());
    EXPECT_EQ(function_->getPlottingPointCount(), 100);
}

TEST_F(ExpressionOverAnEngine, SamplesForLegacyData)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->updateForLegacyData(false);
    EXPECT_EQ(function_->getPlottingPointCount(), 100);
    function_->setParseExpression(L"");
    function_->updateForLegacyData(true);
    EXPECT_EQ(function_->getPlottingPointCount(), 0);
}

}  // namespace
