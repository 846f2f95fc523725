#include "mfcurves/functions/mfFunctionExpression.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/resources.h"

namespace {

constexpr int kSampleCount = 100;

// A calculator ends by Release and by nothing else.
struct ReleaseCalculator {
    void operator()(ICalculator* calculator) const { calculator->Release(); }
};
using CalculatorHolder = std::unique_ptr<ICalculator, ReleaseCalculator>;

// The derivative of a calculator; null where there is none to derive from.
CalculatorHolder derivativeOf(ICalculator* calculator)
{
    return CalculatorHolder(calculator == nullptr ? nullptr : calculator->differentiate(0));
}

// A calculator that is missing counts as one that fails. A failed evaluation
// leaves y as it was.
bool evaluateAt(ICalculator* calculator, double x, double& y)
{
    MMEP_Data argument(x);
    MMEP_Data result;
    if (calculator == nullptr || !calculator->Evaluate(1, &argument, result))
        return false;
    y = *result.getValue();
    return true;
}

// How many of the samples have a value before the first that has none; ys holds
// as many.
int evaluateEach(ICalculator* calculator, const std::vector<double>& xs, std::vector<double>& ys)
{
    return calculator == nullptr
               ? 0
               : static_cast<int>(mf::engine::evaluateMany(*calculator, xs.data(), ys.data(), xs.size()));
}

CString resourceText(unsigned number)
{
    CString text;
    text.LoadString(number);
    return text;
}

mf::IndependentVariableType_e independentVariableNamed(const CString& name)
{
    const CString time = resourceText(mf::platform::kTimeName);
    const CString cycleAngle = resourceText(mf::platform::kCycleAngleName);
    if (name.IsEmpty() || name.CompareNoCase(time) == 0)
        return mf::IndependentVariableType_Time;
    if (name.CompareNoCase(cycleAngle) == 0)
        return mf::IndependentVariableType_CycleAngle;
    return mf::IndependentVariableType_MotionResult;
}

// What a parameter means as the independent variable. False when it cannot be
// one. A cycle angle that the study does not know may still be a motion result.
bool independentVariableOf(const MMEP_WString& parameter, IMotionStudy_c* study, CString& name)
{
    if (parameter.isTime()) {
        name = resourceText(mf::platform::kTimeName);
        return true;
    }
    if (parameter.isCycleAngle() && study != nullptr && study->isCycleAngleAvailable()) {
        name = resourceText(mf::platform::kCycleAngleName);
        return true;
    }
    if (!parameter.isResultObject())
        return false;
    name = parameter.text;
    name.Trim().TrimLeft(L'{').TrimRight(L'}');
    return true;
}

}  // namespace

mfFunctionExpression_c::mfFunctionExpression_c()
{
    independentVar = mf::IndependentVariableType_Time;
}

mfFunctionExpression_c::~mfFunctionExpression_c()
{
    iFreePlottingData();
    iReleaseCalculator();
}

void mfFunctionExpression_c::clearExpression()
{
    ClearFunction();
}

void mfFunctionExpression_c::setMathExpression(const CString& expression)
{
    mathExpression_ = expression;
}

CString mfFunctionExpression_c::getMathExpression()
{
    return mathExpression_;
}

CString mfFunctionExpression_c::getIndepVar()
{
    return independentVariable_;
}

// The text may be a field of this object, so it is read before any is changed.
void mfFunctionExpression_c::setIndepVar(const CString& text)
{
    independentVar = independentVariableNamed(text);
    independentVariable_ = text;
    motionResult = independentVar == mf::IndependentVariableType_MotionResult ? text : CString();
}

mf::MotorDriveType_e mfFunctionExpression_c::getMotorDependentVar()
{
    return motorDependentVar;
}

void mfFunctionExpression_c::setMotorDependentVar(mf::MotorDriveType_e quantity)
{
    motorDependentVar = quantity;
}

mf::ForceTorqueType_e mfFunctionExpression_c::getForceTorqueDependentVar()
{
    return forceTorqueDependentVar;
}

void mfFunctionExpression_c::setForceTorqueDependentVar(mf::ForceTorqueType_e quantity)
{
    forceTorqueDependentVar = quantity;
}

void mfFunctionExpression_c::setDomain(double minX, double maxX)
{
    minX_ = minX;
    maxX_ = maxX;
}

double mfFunctionExpression_c::getMinX()
{
    return minX_;
}

double mfFunctionExpression_c::getMaxX()
{
    return maxX_;
}

bool mfFunctionExpression_c::HasEnumForIndependentVariable() const
{
    return independentVar != mf::IndependentVariableType_None;
}

CString mfFunctionExpression_c::GetIndependentVarName() const
{
    return independentVariable_;
}

bool mfFunctionExpression_c::IsExpression() const
{
    return true;
}

void mfFunctionExpression_c::ClearFunction()
{
    mfFunctionBase_c::ClearFunction();
    independentVar = mf::IndependentVariableType_Time;
    minX_ = 0.0;
    maxX_ = 0.0;
    independentVariable_ = CString();
    mathExpression_ = CString();
    iFreePlottingData();
    plottingPointCount_ = 1;
}

bool mfFunctionExpression_c::isAValidADAMSExpression(const CString& /*expression*/) const
{
    return true;
}

bool mfFunctionExpression_c::Copy(mfFunctionExpression_c* other)
{
    if (other == nullptr)
        return false;
    if (other == this)
        return true;
    setMathExpression(other->getMathExpression());
    setIndepVar(other->getIndepVar());
    setMotorDependentVar(other->getMotorDependentVar());
    setForceTorqueDependentVar(other->getForceTorqueDependentVar());
    const double minX = other->getMinX();
    const double maxX = other->getMaxX();
    setDomain(minX, maxX);
    return true;
}

// Nothing to plot is a state that can be plotted: with no point at all. A text
// that the parser refused shows in the plotting flag and not in the result.
bool mfFunctionExpression_c::calculateValue()
{
    validForPlotting_ = false;
    if (parseExpression_.IsEmpty()) {
        validForPlotting_ = true;
        plottingPointCount_ = 0;
        return false;
    }
    IMotionStudy_c* const study = mf::interfaces::motionStudy();
    iReleaseCalculator();
    MotionMEParser parser;
    parser.parse(parseExpression_, nullptr, &calculator_);

    const int parameterCount = parser.getParamsNum();
    CString name = resourceText(mf::platform::kTimeName);
    for (int i = 0; i < parameterCount; ++i) {
        if (!independentVariableOf(parser.getParam(i), study, name))
            return false;
    }
    // A curve over several variables is accepted and never plotted.
    if (parameterCount > 1)
        return true;
    setIndepVar(name);
    validForPlotting_ = parser.parseSucceeded;
    return validForPlotting_ ? iSample() : true;
}

// The x of the samples come from adding the step again and again, so that the
// last one may miss the end of the domain by rounding.
bool mfFunctionExpression_c::iSample()
{
    plottingPointCount_ = kSampleCount;
    if (!initializePlottingData(kSampleCount, motionObjectType))
        return false;
    const double step = (maxX_ - minX_) / (kSampleCount - 1);
    std::vector<double> xs(kSampleCount);
    double x = minX_;
    for (double& sampleX : xs) {
        sampleX = x;
        x += step;
    }

    std::vector<double> ys(kSampleCount);
    const int done = evaluateEach(calculator_, xs, ys);
    for (int i = 0; i < done; ++i)
        plottingData_[0][i] = mfPoint2D_c(xs[i], ys[i]);
    if (done < kSampleCount) {
        plottingData_[0][done] = mfPoint2D_c(xs[done], 0.0);  // the x stood before its value failed
        iReleaseCalculator();
        return false;
    }
    calculateDerivatives();
    validForPlotting_ = true;
    return true;
}

// All three derivatives are made, whichever arrays there are to fill. The samples
// are told as one walk over x: where an order fails, the orders below it hold that
// sample too, and those above it end before it.
bool mfFunctionExpression_c::calculateDerivatives()
{
    const int count = std::min(plottingPointCount_, plottingDataLength_);
    if (calculator_ == nullptr || count < 1)
        return false;
    const CalculatorHolder first = derivativeOf(calculator_);
    const CalculatorHolder second = derivativeOf(first.get());
    const CalculatorHolder third = derivativeOf(second.get());
    ICalculator* const derivatives[kOrderCount] = {nullptr, first.get(), second.get(), third.get()};

    const int last = count - 1;
    std::vector<double> xs(static_cast<std::size_t>(last));
    std::transform(plottingData_[0], plottingData_[0] + last, xs.begin(),
                   [](const mfPoint2D_c& point) { return point.x(); });

    const int highest = motionObjectType == 0 ? std::max(1, mf::motorDerivatives(motorDependentVar)) : 1;
    std::vector<double> ys[kOrderCount];
    int failing = kOrderCount;
    for (int order = 1; order <= highest; ++order) {
        if (plottingData_[order] == nullptr)
            continue;
        ys[order].resize(xs.size());
        const int done = evaluateEach(derivatives[order], xs, ys[order]);
        if (done < static_cast<int>(xs.size())) {
            xs.resize(done);
            failing = order;
        }
    }

    const int complete = static_cast<int>(xs.size());
    for (int order = 1; order <= highest; ++order) {
        mfPoint2D_c* const points = plottingData_[order];
        if (points == nullptr)
            continue;
        const int written = complete + (complete < last && order < failing ? 1 : 0);
        for (int i = 0; i < written; ++i)
            points[i] = mfPoint2D_c(plottingData_[0][i].x(), ys[order][i]);
        if (complete == last)
            points[last] = mfPoint2D_c(plottingData_[0][last].x(), last == 0 ? 0.0 : points[last - 1].y());
    }
    return complete == last;
}

bool mfFunctionExpression_c::initializePlottingData(int count, int objectType)
{
    iFreePlottingData();
    int derivatives = 0;
    if (objectType == 0)
        derivatives = mf::motorDerivatives(motorDependentVar);
    else if (objectType == 1)
        derivatives = 1;

    if (count >= 1) {
        for (int order = 0; order <= derivatives; ++order)
            plottingData_[order] = new mfPoint2D_c[static_cast<std::size_t>(count)];
        plottingDataLength_ = count;
    }
    return objectType != 0 || derivatives != 0;
}

// The math expression takes the road through narrow text; characters that it
// cannot hold change on the way. An int thrown while the engine works is a failed
// evaluation.
bool mfFunctionExpression_c::calculateValue(double x, double& y)
{
    const mfTextConverter_c converter;
    const std::wstring text = converter.toWide(converter.toNarrow(mathExpression_));
    iReleaseCalculator();
    bool evaluated = false;
    double value = 0.0;
    try {
        MotionMEParser().parse(text.c_str(), nullptr, &calculator_);
        evaluated = evaluateAt(calculator_, x, value);
    } catch (int) {
        evaluated = false;
    }
    if (!evaluated) {
        iReleaseCalculator();
        return false;
    }
    y = value;
    return true;
}

bool mfFunctionExpression_c::calculateValue(double x, double& y, double& d1, double& d2, double& d3)
{
    if (!calculateValue(x, y))
        return false;
    if (plottingPointCount_ == 1) {
        d1 = d2 = d3 = 0.0;
        return true;
    }
    const CalculatorHolder first = derivativeOf(calculator_);
    if (plottingPointCount_ == 2) {
        if (evaluateAt(first.get(), x, d1))
            d2 = d3 = 0.0;
        return true;
    }
    if (!evaluateAt(first.get(), x, d1))
        return true;
    const CalculatorHolder second = derivativeOf(first.get());
    if (!evaluateAt(second.get(), x, d2))
        return true;
    const CalculatorHolder third = derivativeOf(second.get());
    evaluateAt(third.get(), x, d3);
    return true;
}

double mfFunctionExpression_c::evaluate(double x, int order)
{
    double values[] = {0.0, 0.0, 0.0, 0.0};
    if (order < 0 || order > 3)
        return 0.0;
    const bool evaluated = order == 0 ? calculateValue(x, values[0])
                                      : calculateValue(x, values[0], values[1], values[2], values[3]);
    return evaluated ? values[order] / iUnitFactor() : 0.0;
}

// A host without services takes the values as they are.
double mfFunctionExpression_c::iUnitFactor() const
{
    IMotionServices_c* const services = mf::interfaces::motionServices();
    if (services == nullptr)
        return 1.0;
    const int unitKind = motionObjectType == 0 ? services->getMotorUnitKind(motorDependentVar)
                                               : services->getForceTorqueUnitKind(forceTorqueDependentVar);
    return services->getUnitFactor(unitKind);
}

void mfFunctionExpression_c::updateForLegacyData(bool /*pointPerRow*/)
{
    calculateValue();
}

mfPoint2D_c* mfFunctionExpression_c::getPlottingData(int order) const
{
    return order < 0 || order >= kOrderCount ? nullptr : plottingData_[order];
}

void mfFunctionExpression_c::iFreePlottingData()
{
    for (mfPoint2D_c*& points : plottingData_) {
        delete[] points;
        points = nullptr;
    }
    plottingDataLength_ = 0;
}

void mfFunctionExpression_c::iReleaseCalculator()
{
    if (calculator_ == nullptr)
        return;
    calculator_->Release();
    calculator_ = nullptr;
}
