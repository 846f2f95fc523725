// SPDX-License-Identifier: MIT

// Expression functions with a fake engine, all of whose results the test chooses: the
// library calls the parser defined in this file.

#include <functional>
#include <gmock/gmock.h>
#include <stdexcept>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/resources.h"
#include "tests/support/FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Meaning = MMEP_WString::Meaning;

// The results of the fake engine of the running test, and the calls that it received.
struct Engine {
    std::vector<MMEP_WString> parameters;
    bool succeeds = true;
    bool makesCalculator = true;
    bool throwsInt = false;  // out of parse
    // The value of an order at x; false when it cannot be evaluated.
    std::function<bool(double x, int order, double& y)> evaluate = [](double x, int order, double& y) {
        y = x + 10.0 * order;
        return true;
    };
    int lastOrder = 3;  // the calculator of this order has no derivative

    std::vector<std::string> calls;
    int alive = 0;  // calculators that wait for Release
    int evaluations = 0;
};

Engine* engine = nullptr;

class FakeCalculator : public ICalculator {
public:
    explicit FakeCalculator(int order) : order_(order) { ++engine->alive; }

    ICalculator* differentiate(int unused) override
    {
        engine->calls.push_back("differentiate " + std::to_string(order_) + " with " +
                                std::to_string(unused));
        return order_ == engine->lastOrder ? nullptr : new FakeCalculator(order_ + 1);
    }
    bool Evaluate(int count, MMEP_Data* arguments, MMEP_Data& result) override
    {
        EXPECT_EQ(count, 1);
        ++engine->evaluations;
        return engine->evaluate(*arguments->getValue(), order_, *result.getValue());
    }
    bool Release() override
    {
        engine->calls.push_back("Release " + std::to_string(order_));
        --engine->alive;
        delete this;
        return false;  // the result is not used
    }

protected:
    ~FakeCalculator() override = default;

private:
    int order_;
};

}  // namespace

struct MotionMEParser::Parameters {};

MotionMEParser::MotionMEParser()
{
    engine->calls.emplace_back("parser");
}

MotionMEParser::~MotionMEParser()
{
    engine->calls.emplace_back("~parser");
}

bool MotionMEParser::parse(const wchar_t* expression, wchar_t* independentVariable, ICalculator** calculator)
{
    engine->calls.push_back("parse " + mf::platform::toUtf8(expression));
    EXPECT_EQ(independentVariable, nullptr);
    EXPECT_EQ(*calculator, nullptr) << "the old calculator is released before a new one is made";
    if (engine->throwsInt)
        throw 7;
    if (engine->makesCalculator)
        *calculator = new FakeCalculator(0);
    parseSucceeded = engine->succeeds;
    return !engine->succeeds;  // the result is not used
}

int MotionMEParser::getParamsNum()
{
    engine->calls.emplace_back("getParamsNum");
    return static_cast<int>(engine->parameters.size());
}

const MMEP_WString& MotionMEParser::getParam(int index)
{
    engine->calls.push_back("getParam " + std::to_string(index));
    return engine->parameters.at(static_cast<std::size_t>(index));
}

namespace {

const MMEP_WString kTime(L"t", Meaning::Time);
const MMEP_WString kCycleAngle(L"c", Meaning::CycleAngle);
const MMEP_WString kResult(L"{Angle1}", Meaning::ResultObject);
const MMEP_WString kOther(L"unknown", Meaning::Other);

class ExpressionOverAnEngine : public testing::Test {
protected:
    ExpressionOverAnEngine() { engine = &engine_; }
    ~ExpressionOverAnEngine() override
    {
        function_.reset();
        EXPECT_EQ(engine_.alive, 0) << "a calculator was not released";
        engine = nullptr;
    }

    // A motor's displacement over [0, 99], so that sample i lies at x = i.
    void prepareToSample()
    {
        function_->setParseExpression(L"the text");
        function_->setMotorDependentVar(mf::MotorDriveType_Displacment);
        function_->setDomain(0.0, 99.0);
    }

    mf::test::FakeHost host_;
    Engine engine_;
    std::unique_ptr<mfFunctionExpression_c> function_ = std::make_unique<mfFunctionExpression_c>();
};

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

// Derivatives

TEST_F(ExpressionOverAnEngine, RepeatsTheLastButOneDerivativeAtTheEnd)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    for (int order = 1; order <= 3; ++order) {
        const mfPoint2D_c* const points = function_->getPlottingData(order);
        for (int i = 0; i < 99; ++i) {
            EXPECT_EQ(points[i].x(), i);
            EXPECT_EQ(points[i].y(), i + 10.0 * order);
        }
        EXPECT_EQ(points[99].x(), 99.0);
        EXPECT_EQ(points[99].y(), 98.0 + 10.0 * order);
    }
}

struct DerivativeFailure {
    const char* name;
    int failingOrder;
    double failingX;
    int written[4];  // points of each order that are written; [0] is not used
};

const DerivativeFailure kDerivativeFailures[] = {
    {"FirstAtOnce", 1, 0.0, {0, 0, 0, 0}},         {"FirstLater", 1, 40.0, {0, 40, 40, 40}},
    {"SecondLater", 2, 40.0, {0, 41, 40, 40}},     {"ThirdLater", 3, 40.0, {0, 41, 41, 40}},
    {"ThirdAtOnce", 3, 0.0, {0, 1, 1, 0}},         {"AtTheLastButOne", 2, 98.0, {0, 99, 98, 98}},
    {"NotAtTheLast", 1, 99.0, {0, 100, 100, 100}},
};

void PrintTo(const DerivativeFailure& c, std::ostream* os)
{
    *os << "order " << c.failingOrder << " at " << c.failingX;
}

class DerivativesFail : public ExpressionOverAnEngine,
                        public testing::WithParamInterface<DerivativeFailure> {};

TEST_P(DerivativesFail, AndKeepWhatWasWritten)
{
    const DerivativeFailure& c = GetParam();
    engine_.parameters = {kTime};
    engine_.evaluate = [&](double x, int order, double& y) {
        y = 1.0;
        return order != c.failingOrder || x != c.failingX;
    };
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue()) << "sampling does not look at the derivatives";
    EXPECT_TRUE(function_->isValidForPlotting());
    EXPECT_EQ(function_->calculateDerivatives(), c.failingX == 99.0);
    for (int order = 1; order <= 3; ++order) {
        int written = 0;
        for (int i = 0; i < 100; ++i)
            written += function_->getPlottingData(order)[i].y() == 1.0;
        EXPECT_EQ(written, c.written[order]) << "order " << order;
    }
    EXPECT_EQ(engine_.alive, 1) << "the derivatives are released, the value stays";
}

INSTANTIATE_TEST_SUITE_P(Expression, DerivativesFail, testing::ValuesIn(kDerivativeFailures),
                         [](const auto& tested) { return std::string(tested.param.name); });

// When several orders fail, the one that fails at the lowest x ends the sampling.
TEST_F(ExpressionOverAnEngine, EndsTheDerivativesAtTheEarliestFailure)
{
    engine_.parameters = {kTime};
    engine_.evaluate = [](double x, int order, double& y) {
        y = 1.0;
        return order == 0 || x < (order == 1 ? 60.0 : order == 2 ? 30.0 : 30.0);
    };
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(function_->getPlottingData1()[30].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData1()[31].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData2()[29].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData2()[30].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData3()[29].y(), 1.0);
    EXPECT_EQ(function_->getPlottingData3()[30].y(), 0.0);
}

TEST_F(ExpressionOverAnEngine, DerivesAllThreeWhicheverArraysThereAre)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_EQ(std::count(engine_.calls.begin(), engine_.calls.end(), "differentiate 2 with 0"), 1);
    EXPECT_EQ(engine_.evaluations, 100 + 99) << "only the first is evaluated";
}

TEST_F(ExpressionOverAnEngine, StopsTheChainAtAMissingDerivative)
{
    engine_.parameters = {kTime};
    engine_.lastOrder = 1;
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_FALSE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[0].y(), 10.0);
    EXPECT_EQ(function_->getPlottingData1()[1].y(), 0.0);
    EXPECT_EQ(function_->getPlottingData2()[0].y(), 0.0);
}

// A missing third derivative is not a failure if it is not needed.
TEST_F(ExpressionOverAnEngine, NeedsOnlyTheDerivativesThatItFills)
{
    engine_.parameters = {kTime};
    engine_.lastOrder = 1;
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    EXPECT_TRUE(function_->calculateDerivatives());
}

TEST_F(ExpressionOverAnEngine, DerivesNothingWithoutCalculatorOrSamples)
{
    EXPECT_FALSE(function_->calculateDerivatives());

    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));  // a calculator, but no samples
    EXPECT_FALSE(function_->calculateDerivatives());

    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    function_->ClearFunction();  // the calculator stays, the samples go
    EXPECT_EQ(engine_.alive, 1);
    EXPECT_FALSE(function_->calculateDerivatives());
}

TEST_F(ExpressionOverAnEngine, WritesOnlyTheDerivativesThatHaveAnArray)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMotorDependentVar(mf::MotorDriveType_Acceleration);
    EXPECT_TRUE(function_->calculateValue());
    function_->setMotorDependentVar(mf::MotorDriveType_Displacment);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData2(), nullptr);
    EXPECT_EQ(function_->getPlottingData3(), nullptr);
}

struct FilledCase {
    const char* name;
    int objectType;
    mf::MotorDriveType_e quantity;
    int highest;  // the highest order that is filled; three have an array
};

const FilledCase kFilledCases[] = {
    {"Displacement", 0, mf::MotorDriveType_Displacment, 3},
    {"Velocity", 0, mf::MotorDriveType_Velocity, 2},
    {"Acceleration", 0, mf::MotorDriveType_Acceleration, 1},
    {"NoQuantity", 0, mf::MotorDriveType_None, 1},
    {"Force", 1, mf::MotorDriveType_Displacment, 1},
    {"AnotherObject", 2, mf::MotorDriveType_Displacment, 1},
};

void PrintTo(const FilledCase& c, std::ostream* os)
{
    *os << "object " << c.objectType << ", quantity " << c.quantity;
}

class FilledDerivatives : public ExpressionOverAnEngine, public testing::WithParamInterface<FilledCase> {};

// The quantity at the call decides, not the one for which the arrays were made.
TEST_P(FilledDerivatives, AreThoseOfTheQuantity)
{
    const FilledCase& c = GetParam();
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    engine_.evaluate = [](double, int, double& y) {
        y = -1.0;
        return true;
    };
    function_->motionObjectType = c.objectType;
    function_->setMotorDependentVar(c.quantity);
    EXPECT_TRUE(function_->calculateDerivatives());
    for (int order = 1; order <= 3; ++order) {
        const mfPoint2D_c* const points = function_->getPlottingData(order);
        for (int i = 0; i < 100; ++i)
            EXPECT_EQ(points[i].y() == -1.0, order <= c.highest) << "order " << order << " at " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Expression, FilledDerivatives, testing::ValuesIn(kFilledCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ExpressionOverAnEngine, DerivesAsManyPointsAsTheCountSaysAtMostAllPoints)
{
    engine_.parameters = {kTime};
    prepareToSample();
    EXPECT_TRUE(function_->calculateValue());
    engine_.evaluate = [](double, int, double& y) {
        y = -1.0;
        return true;
    };
    function_->setPlottingPointCount(10);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[9].y(), -1.0);
    EXPECT_EQ(function_->getPlottingData1()[10].y(), 20.0);
    function_->setPlottingPointCount(1000);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[99].y(), -1.0);
    function_->setPlottingPointCount(1);
    EXPECT_TRUE(function_->calculateDerivatives());
    EXPECT_EQ(function_->getPlottingData1()[0].y(), 0.0) << "there is no point before it to repeat";
    for (const int count : {0, -1}) {
        function_->setPlottingPointCount(count);
        EXPECT_FALSE(function_->calculateDerivatives());
    }
}

// One point

TEST_F(ExpressionOverAnEngine, CompilesEachPointAfresh)
{
    function_->setMathExpression(L"the math text");
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(2.5, y));
    EXPECT_EQ(y, 2.5);
    EXPECT_THAT(engine_.calls, ElementsAre("parser", "parse the math text", "~parser"));
    EXPECT_EQ(engine_.alive, 1) << "the calculator stays for the derivatives";
    engine_.calls.clear();
    EXPECT_TRUE(function_->calculateValue(3.5, y));
    EXPECT_EQ(y, 3.5);
    EXPECT_THAT(engine_.calls, ElementsAre("Release 0", "parser", "parse the math text", "~parser"));
}

TEST_F(ExpressionOverAnEngine, SendsThePointsTextThroughNarrowText)
{
    function_->setMathExpression(CString(L"\u20ac" + std::wstring(1, wchar_t(0xD800))));
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(0.0, y));
    EXPECT_THAT(engine_.calls, testing::Contains("parse \xE2\x82\xAC\xEF\xBF\xBD"));
}

TEST_F(ExpressionOverAnEngine, LetsAFailedConversionThroughAndKeepsItsState)
{
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(0.0, y));
    mf::platform::setNarrowEncoder([](const wchar_t*, int, char*, int, std::uint32_t& error) {
        error = 14;
        return 0;
    });
    EXPECT_THROW(function_->calculateValue(0.0, y), std::bad_alloc);
    EXPECT_THROW(function_->evaluate(0.0, 0), std::bad_alloc);
    mf::platform::setNarrowEncoder({});
    EXPECT_EQ(engine_.alive, 1);
    EXPECT_TRUE(function_->calculateValue(0.0, y));
}

TEST_F(ExpressionOverAnEngine, IgnoresNamesAndTheParsersFlagForAPoint)
{
    engine_.parameters = {kOther, kOther};
    engine_.succeeds = false;
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));
    EXPECT_THAT(engine_.calls, ElementsAre("parser", "parse ", "~parser"));
    EXPECT_EQ(function_->getPlottingPointCount(), 1);
    EXPECT_FALSE(function_->isValidForPlotting());
}

TEST_F(ExpressionOverAnEngine, DoesNotChangeYAndReleasesWhenAPointFails)
{
    engine_.evaluate = [](double, int, double& y) {
        y = 99.0;
        return false;
    };
    double y = 5.0;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
    EXPECT_EQ(engine_.alive, 0);

    engine_.makesCalculator = false;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
}

TEST_F(ExpressionOverAnEngine, TakesAnIntForAFailedPoint)
{
    double y = 5.0;
    engine_.throwsInt = true;
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    engine_.throwsInt = false;
    engine_.evaluate = [](double, int, double&) -> bool { throw 7; };
    EXPECT_FALSE(function_->calculateValue(1.0, y));
    EXPECT_EQ(y, 5.0);
    EXPECT_EQ(engine_.alive, 0);
    EXPECT_EQ(function_->evaluate(1.0, 0), 0.0);
}

TEST_F(ExpressionOverAnEngine, PassesOnEveryOtherException)
{
    engine_.evaluate = [](double, int, double&) -> bool { throw std::runtime_error("engine"); };
    double y = 5.0;
    EXPECT_THROW(function_->calculateValue(1.0, y), std::runtime_error);
    engine_.evaluate = [](double, int, double&) -> bool { throw 7L; };
    EXPECT_THROW(function_->calculateValue(1.0, y), long);
}

TEST_F(ExpressionOverAnEngine, LetsAnIntOfTheDerivativesThrough)
{
    function_->setPlottingPointCount(100);
    engine_.evaluate = [](double, int order, double& y) {
        if (order == 1)
            throw 7;
        y = 1.0;
        return true;
    };
    double y = 0.0;
    double d[3] = {};
    EXPECT_THROW(function_->calculateValue(1.0, y, d[0], d[1], d[2]), int);
}

// One point with derivatives

struct ChainCase {
    const char* name;
    int count;
    int failingOrder;  // 9: none
    double d[3];       // -1 for an output that is not changed
    int derived;       // calls of differentiate
};

const ChainCase kChainCases[] = {
    {"CountOfOneHasNone", 1, 9, {0, 0, 0}, 0},          {"CountOfTwoHasOne", 2, 9, {12, 0, 0}, 1},
    {"CountOfTwoAndItFails", 2, 1, {-1, -1, -1}, 1},    {"CountOfThreeHasAll", 3, 9, {12, 22, 32}, 3},
    {"CountOfAHundredHasAll", 100, 9, {12, 22, 32}, 3}, {"CountOfZeroHasAll", 0, 9, {12, 22, 32}, 3},
    {"CountBelowZeroHasAll", -1, 9, {12, 22, 32}, 3},   {"FirstFails", 100, 1, {-1, -1, -1}, 1},
    {"SecondFails", 100, 2, {12, -1, -1}, 2},           {"ThirdFails", 100, 3, {12, 22, -1}, 3},
};

void PrintTo(const ChainCase& c, std::ostream* os)
{
    *os << "count " << c.count << ", order " << c.failingOrder << " fails";
}

class PointWithDerivatives : public ExpressionOverAnEngine, public testing::WithParamInterface<ChainCase> {};

TEST_P(PointWithDerivatives, ReachesAsFarAsTheCountAllows)
{
    const ChainCase& c = GetParam();
    engine_.evaluate = [&](double x, int order, double& y) {
        y = x + 10.0 * order;
        return order != c.failingOrder;
    };
    function_->setPlottingPointCount(c.count);
    double y = -1.0;
    double d[3] = {-1.0, -1.0, -1.0};
    EXPECT_TRUE(function_->calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, 2.0);
    EXPECT_THAT(d, ElementsAre(c.d[0], c.d[1], c.d[2]));
    EXPECT_EQ(std::count_if(engine_.calls.begin(), engine_.calls.end(),
                            [](const std::string& call) { return call.starts_with("differentiate"); }),
              c.derived);
    EXPECT_EQ(engine_.alive, 1);
}

TEST_P(PointWithDerivatives, EvaluatesToZeroWhenAnOrderIsNotReached)
{
    const ChainCase& c = GetParam();
    engine_.evaluate = [&](double x, int order, double& y) {
        y = x + 10.0 * order;
        return order != c.failingOrder;
    };
    function_->setPlottingPointCount(c.count);
    for (int order = 1; order <= 3; ++order)
        EXPECT_EQ(function_->evaluate(2.0, order), c.d[order - 1] == -1.0 ? 0.0 : c.d[order - 1]);
}

INSTANTIATE_TEST_SUITE_P(Expression, PointWithDerivatives, testing::ValuesIn(kChainCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(ExpressionOverAnEngine, DoesNotChangeOutputsWhenTheValueFails)
{
    engine_.evaluate = [](double, int, double&) { return false; };
    double y = -1.0;
    double d[3] = {-1.0, -1.0, -1.0};
    EXPECT_FALSE(function_->calculateValue(2.0, y, d[0], d[1], d[2]));
    EXPECT_EQ(y, -1.0);
    EXPECT_THAT(d, ElementsAre(-1.0, -1.0, -1.0));
}

// evaluate

TEST_F(ExpressionOverAnEngine, DividesByTheFactorOfAMotorsQuantity)
{
    function_->setMotorDependentVar(mf::MotorDriveType_Velocity);
    function_->setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    host_.services.unitFactors[102] = 2.0;
    EXPECT_EQ(function_->evaluate(3.0, 0), 1.5);
    EXPECT_THAT(host_.calls, ElementsAre("getMotionServices", "getMotorUnitKind 2", "getUnitFactor 102"));
}

TEST_F(ExpressionOverAnEngine, DividesByTheFactorOfAForceOrTorque)
{
    function_->motionObjectType = 1;
    function_->setMotorDependentVar(mf::MotorDriveType_Velocity);
    function_->setForceTorqueDependentVar(mf::ForceTorqueType_Torque);
    host_.services.unitFactors[202] = 4.0;
    EXPECT_EQ(function_->evaluate(3.0, 0), 0.75);
    EXPECT_THAT(host_.calls,
                ElementsAre("getMotionServices", "getForceTorqueUnitKind 2", "getUnitFactor 202"));
}

TEST_F(ExpressionOverAnEngine, DividesEveryOrderByTheSameFactor)
{
    function_->setPlottingPointCount(100);
    host_.services.unitFactor = 2.0;
    for (int order = 0; order <= 3; ++order)
        EXPECT_EQ(function_->evaluate(4.0, order), (4.0 + 10.0 * order) / 2.0);
}

TEST_F(ExpressionOverAnEngine, DividesByAFactorOfZero)
{
    host_.services.unitFactor = 0.0;
    EXPECT_EQ(function_->evaluate(4.0, 0), std::numeric_limits<double>::infinity());
}

TEST_F(ExpressionOverAnEngine, LeavesTheValueWithoutServicesOrContext)
{
    host_.servicesAnswer = nullptr;
    EXPECT_EQ(function_->evaluate(4.0, 0), 4.0);
    QelSession_c::setMotionFunctionContext(nullptr);
    EXPECT_EQ(function_->evaluate(4.0, 0), 4.0);
}

TEST_F(ExpressionOverAnEngine, EvaluatesNothingForAnOrderOutOfRange)
{
    for (const int order : {-1, 4, 100, std::numeric_limits<int>::min()})
        EXPECT_EQ(function_->evaluate(4.0, order), 0.0);
    EXPECT_THAT(engine_.calls, IsEmpty());
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(ExpressionOverAnEngine, RequestsNoUnitWhenTheValueFails)
{
    engine_.evaluate = [](double, int, double&) { return false; };
    EXPECT_EQ(function_->evaluate(4.0, 0), 0.0);
    EXPECT_EQ(function_->evaluate(4.0, 1), 0.0);
    EXPECT_THAT(host_.calls, IsEmpty());
}

TEST_F(ExpressionOverAnEngine, CompilesTheMathTextForAPointAndTheParseTextForSamples)
{
    engine_.parameters = {kTime};
    prepareToSample();
    function_->setMathExpression(L"math");
    EXPECT_TRUE(function_->calculateValue());
    function_->evaluate(1.0, 0);
    EXPECT_THAT(engine_.calls, testing::IsSupersetOf({"parse the text", "parse math"}));
    EXPECT_EQ(function_->getPlottingPointCount(), 100) << "a point leaves the samples alone";
    EXPECT_EQ(function_->getPlottingData0()[5].y(), 5.0);
}

TEST_F(ExpressionOverAnEngine, KeepsTheCalculatorWhenItIsCleared)
{
    double y = 0.0;
    EXPECT_TRUE(function_->calculateValue(1.0, y));
    engine_.calls.clear();
    function_->ClearFunction();
    EXPECT_THAT(engine_.calls, IsEmpty());
    EXPECT_EQ(engine_.alive, 1);
    function_.reset();
    EXPECT_THAT(engine_.calls, ElementsAre("Release 0"));
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
