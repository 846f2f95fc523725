// SPDX-License-Identifier: MIT
#include "mfcurves/drawing/quantities.h"

#include <algorithm>
#include <iterator>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/platform/encoding.h"

namespace mf::drawing {

namespace {

constexpr int kOrders = 4;
constexpr const char* kMotorQuantities[] = {"Displacement", "Velocity", "Acceleration", "Jerk"};
constexpr const char* kPowers[] = {"", "", "\u00b2", "\u00b3", "\u2074", "\u2075", "\u2076"};

bool isMotor(Quantity quantity)
{
    return quantity != Quantity::Force && quantity != Quantity::Torque;
}

// How often a displacement is differentiated to give the value; 0 for a force or torque.
int motorStep(Quantity quantity)
{
    return quantity == Quantity::Velocity ? 1 : quantity == Quantity::Acceleration ? 2 : 0;
}

std::string overVariable(const std::string& unit, const std::string& variable, int power)
{
    if (power == 0)
        return unit;
    return unit.empty() || variable.empty() ? "" : unit + "/" + variable + kPowers[power];
}

// The variable of a text; "x" for a constant.
std::string nameInText(const std::string& text)
{
    MotionMEParser parser;
    if (!parser.parse(CString(platform::widen(text)), nullptr, nullptr) || parser.getParamsNum() == 0)
        return "x";
    return platform::toUtf8(CString(parser.getParam(0).text).View());
}

bool isTime(const std::string& name)
{
    return CString(platform::widen(name)).CompareNoCase(L"time") == 0;
}

}  // namespace

int namedOrders(const CurveDefinition& definition)
{
    return isMotor(definition.quantity) ? kOrders - motorStep(definition.quantity) : 2;
}

std::string quantityName(const CurveDefinition& definition, int order)
{
    if (isMotor(definition.quantity))
        return kMotorQuantities[std::min(motorStep(definition.quantity) + order, kOrders - 1)];
    const bool isTorque = definition.quantity == Quantity::Torque;
    if (order == 0)
        return isTorque ? "Torque" : "Force";
    return isTorque ? "Rate of torque" : "Rate of force";
}

std::string variableName(const CurveDefinition& definition)
{
    if (definition.over == Over::CycleAngle)
        return "Cycle angle";
    if (definition.over == Over::MotionResult)
        return definition.motionResult;
    const auto* expression = std::get_if<CurveDefinition::Expression>(&definition.shape);
    if (expression == nullptr)
        return "Time";
    const std::string name = nameInText(expression->text);
    return isTime(name) ? "Time" : name;
}

namespace {

std::string usualVariableUnit(const CurveDefinition& definition)
{
    if (definition.over == Over::CycleAngle)
        return "deg";
    return variableName(definition) == "Time" ? "s" : "";
}

std::string usualValueUnit(const CurveDefinition& definition, const std::string& variable)
{
    if (definition.quantity == Quantity::Torque)
        return "N\u00b7m";
    if (definition.quantity == Quantity::Force)
        return "N";
    return overVariable(definition.rotary ? "deg" : "mm", variable, motorStep(definition.quantity));
}

}  // namespace

Units usualUnits(const CurveDefinition& definition)
{
    const std::string variable = usualVariableUnit(definition);
    return {variable, usualValueUnit(definition, variable), ""};
}

std::string derivativeUnit(const Units& units, int order)
{
    const std::string& rate = units.rate.empty() ? units.variable : units.rate;
    for (int power = std::size(kPowers) - kOrders; power > 0; --power) {
        const std::string tail = overVariable(" ", rate, power).erase(0, 1);
        if (!tail.empty() && units.value.size() > tail.size() && units.value.ends_with(tail))
            return overVariable(units.value.substr(0, units.value.size() - tail.size()), rate, power + order);
    }
    return overVariable(units.value, rate, order);
}

}  // namespace mf::drawing
