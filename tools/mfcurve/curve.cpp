// SPDX-License-Identifier: MIT

#include "tools/mfcurve/curve.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

constexpr const char* kMotorQuantities[] = {"Displacement", "Velocity", "Acceleration", "Jerk"};
constexpr const char* kPowers[] = {"", "", "\u00b2", "\u00b3", "\u2074", "\u2075", "\u2076"};

// How often the value itself is derived from a displacement; a force or torque
// counts as none.
int motorStep(mfFunctionBase_c& base)
{
    const int quantity = base.motorDependentVar;
    return base.motionObjectType == 0 ? std::clamp(quantity - 1, 0, 2) : 0;
}

bool isRotary(mf::MotFuncXYDataType_e type)
{
    return type >= mf::MfXY_Disp_RotMotor && type <= mf::MfXY_Acc_RotMotor;
}

std::string overVariable(const std::string& unit, const std::string& variable, int power)
{
    if (unit.empty() || variable.empty())
        return power == 0 ? unit : "";
    return power == 0 ? unit : unit + "/" + variable + kPowers[power];
}

// A spline answers what its arithmetic gives, infinite or not a number.
Sample finiteSample(double x, const double (&y)[kOrders])
{
    Sample sample{x, {}};
    std::transform(std::begin(y), std::end(y), std::begin(sample.y),
                   [](double value) { return std::isfinite(value) ? value : kUndefined; });
    return sample;
}

// The one name in the text of an expression; "x" for a constant.
std::string nameInText(mfFunctionExpression_c& expression)
{
    MotionMEParser parser;
    const CString text = expression.getMathExpression();
    if (!parser.parse(text, nullptr, nullptr) || parser.getParamsNum() == 0)
        return "x";
    return toUtf8(CString(parser.getParam(0).text));
}

}  // namespace

bool Sample::isFinite(int orders) const
{
    return std::all_of(y, y + orders, [](double value) { return std::isfinite(value); });
}

Curve::Curve(mf::FunctionType_e kind) : function_(std::make_unique<mfFunctionData_c>())
{
    if (!function_->initialize())
        throw Failure(kFailed, "the library could not make a motion function");
    function_->setFunctionType(kind);
}

mfFunctionBase_c& Curve::base()
{
    switch (kind()) {
        case mf::FunctionType_DataPoints:
            return points();
        case mf::FunctionType_Expression:
            return expression();
        default:
            return segments();
    }
}

mfFunctionSegments_c& Curve::segments()
{
    return *static_cast<mfFunctionSegments_c*>(function_->getFunctionSegments());
}

mfFunctionDataPoints_c& Curve::points()
{
    return *static_cast<mfFunctionDataPoints_c*>(function_->getFunctionDataPoints());
}

mfFunctionExpression_c& Curve::expression()
{
    return *static_cast<mfFunctionExpression_c*>(function_->getFunctionExpression());
}

void Curve::setTitle(const std::string& title)
{
    title_ = title;
    CString name = toCString(title);
    function_->setName(name);
}

Sample Curve::at(double x)
{
    double y[kOrders] = {kUndefined, kUndefined, kUndefined, kUndefined};
    switch (kind()) {
        case mf::FunctionType_Segments: {
            // Row 0 only states the start, so the row behind it answers there.
            const int row = segments().findSegment(x);
            const bool isStart = row == 0 && segments().getSegmentCount() > 1;
            return atRow(isStart ? 1 : row, x);
        }
        case mf::FunctionType_DataPoints:
            points().calculateValue(x, y[0], y[1], y[2], y[3]);
            return finiteSample(x, y);
        default:
            expression().calculateValue(x, y[0], y[1], y[2], y[3]);
            return finiteSample(x, y);
    }
}

Sample Curve::atRow(int row, double x)
{
    mfSegment_c& segment = rowOf(segments(), row);
    // A row of no length is a jump: its formula divides by zero.
    if (segment.getStartX() == segment.getEndX())
        return {x, {segment.getValue(), 0.0, 0.0, 0.0}};
    Sample sample{x, {kUndefined, kUndefined, kUndefined, kUndefined}};
    for (int order = 0; order < kOrders; ++order) {
        ICalculator* calculator = segment.getCalculator(order);
        MMEP_Data input(x);
        MMEP_Data output;
        if (calculator != nullptr && calculator->Evaluate(1, &input, output))
            sample.y[order] = *output.getValue();
    }
    return sample;
}

int Curve::orderCount()
{
    mfFunctionBase_c& function = base();
    return function.motionObjectType == 0 ? kOrders - motorStep(function) : 2;
}

Range Curve::domain()
{
    Range range{0.0, 0.0};
    switch (kind()) {
        case mf::FunctionType_Segments: {
            const int last = segments().getSegmentCount() - 1;
            if (last >= 1)
                range = {rowOf(segments(), 1).getStartX(), rowOf(segments(), last).getEndX()};
            return range;
        }
        case mf::FunctionType_DataPoints:
            points().getDomian(range.from, range.to);
            return range;
        default:
            return {expression().getMinX(), expression().getMaxX()};
    }
}

mfSegment_c& rowOf(mfFunctionSegments_c& table, int row)
{
    mfSegment_c* segment = nullptr;
    table.selectSegment(row, segment);
    return *segment;
}

std::vector<mfPoint2D_c> knotsOf(mfFunctionDataPoints_c& table)
{
    std::vector<mfPoint2D_c> knots;
    for (int row = 0; row < table.getDataPointsCount(); ++row) {
        mfDataPoints_c* points = nullptr;
        table.selectDataPoint(row, points);
        for (int i = 0; i < points->getPointCount(); ++i)
            knots.emplace_back(points->getX(i), points->getY(i));
    }
    return knots;
}

std::string profileName(mfSegment_c& segment)
{
    const mfProfileKey_c* key = segment.getProfileKey();
    return toUtf8(key != nullptr ? key->name : segment.getProfileName());
}

std::string quantityName(Curve& curve, int order)
{
    mfFunctionBase_c& base = curve.base();
    if (base.motionObjectType == 0)
        return kMotorQuantities[std::min(motorStep(base) + order, kOrders - 1)];
    const std::string quantity =
        base.forceTorqueDependentVar == mf::ForceTorqueType_Torque ? "Torque" : "Force";
    return order == 0 ? quantity : "Rate of " + std::string(quantity == "Torque" ? "torque" : "force");
}

std::string variableName(Curve& curve)
{
    mfFunctionBase_c& base = curve.base();
    if (base.independentVar == mf::IndependentVariableType_CycleAngle)
        return "Cycle angle";
    if (base.independentVar == mf::IndependentVariableType_MotionResult)
        return toUtf8(base.motionResult);
    if (curve.kind() != mf::FunctionType_Expression)
        return "Time";
    const std::string name = nameInText(curve.expression());
    return toCString(name).CompareNoCase(L"time") == 0 ? "Time" : name;
}

Units usualUnits(Curve& curve)
{
    mfFunctionBase_c& base = curve.base();
    Units units;
    const std::string variable = variableName(curve);
    if (variable == "Time")
        units.variable = "s";
    else if (base.independentVar == mf::IndependentVariableType_CycleAngle)
        units.variable = "deg";
    if (base.motionObjectType != 0)
        units.value = base.forceTorqueDependentVar == mf::ForceTorqueType_Torque ? "N\u00b7m" : "N";
    else
        units.value = overVariable(isRotary(curve.function().getXYDataType()) ? "deg" : "mm", units.variable,
                                   motorStep(base));
    return units;
}

std::string derivativeUnit(const Units& units, int order)
{
    for (int power = std::size(kPowers) - kOrders; power > 0; --power) {
        const std::string tail = overVariable(" ", units.variable, power).erase(0, 1);
        if (!tail.empty() && units.value.size() > tail.size() && units.value.ends_with(tail))
            return overVariable(units.value.substr(0, units.value.size() - tail.size()), units.variable,
                                power + order);
    }
    return overVariable(units.value, units.variable, order);
}

}  // namespace mfcurve
