// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/platform/mfExport.h"

/// The names and units for the axes of a curve. Nothing here converts a number.
namespace mf::drawing {

/// Units as texts, such as "deg" and "mm"; may be empty.
struct Units {
    std::string variable;  ///< of x
    std::string value;     ///< of the value
    std::string rate;      ///< unit that derivatives are divided by; empty: `variable`
};

/// How many orders of a curve have a name of their own, 1 to 4: the value and its derivatives up to the jerk;
/// for a force or torque, the value and its rate.
MFCURVES_API int namedOrders(const CurveDefinition& definition);

/// "Velocity": the name of a derivative of that order, where 0 is the value.
MFCURVES_API std::string quantityName(const CurveDefinition& definition, int order);

/// "Cycle angle", the name of the motion result, or the name in the text of an expression.
MFCURVES_API std::string variableName(const CurveDefinition& definition);

/// The units that cam designers use for such a curve: millimetres or degrees over seconds or degrees,
/// newtons, newton metres.
MFCURVES_API Units usualUnits(const CurveDefinition& definition);

/// The unit of a derivative of that order: "mm/s²" for the first of "mm/s" over "s".
MFCURVES_API std::string derivativeUnit(const Units& units, int order);

}  // namespace mf::drawing
