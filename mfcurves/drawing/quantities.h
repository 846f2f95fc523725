// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/platform/mfExport.h"

/// What the axes of a curve are called. Nothing here converts a number.
namespace mf::drawing {

/// Units as texts: "deg", "mm". Empty where there is none.
struct Units {
    std::string variable;  ///< of x
    std::string value;     ///< of the value
    std::string rate;      ///< what derivatives are by; empty: `variable`
};

/// How many orders of a curve have a name of their own: the value and its derivatives down to the jerk, of a
/// force or torque the value and its rate. 1 to 4.
MFCURVES_API int namedOrders(const CurveDefinition& definition);

/// "Velocity": the name of a derivative of that order, 0 being the value.
MFCURVES_API std::string quantityName(const CurveDefinition& definition, int order);

/// "Cycle angle", the name of the motion result, or the name in the text of an expression.
MFCURVES_API std::string variableName(const CurveDefinition& definition);

/// The units that cam designers use for such a curve: millimetres or degrees over seconds or degrees,
/// newtons, newton metres.
MFCURVES_API Units usualUnits(const CurveDefinition& definition);

/// The unit of a derivative of that order: "mm/s²" for the first of "mm/s" over "s".
MFCURVES_API std::string derivativeUnit(const Units& units, int order);

}  // namespace mf::drawing
