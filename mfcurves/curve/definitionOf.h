// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"

class mfFunctionBase_c;
class mfFunctionDataPoints_c;
class mfFunctionData_c;
class mfFunctionExpression_c;
class mfFunctionSegments_c;

/// Makes definitions from motion functions. Oddities are appended to `problems` as warnings,
/// reasons why there is no definition as errors.
namespace mf::curve {

/// The definition of a function in its current state.
CurveDefinition definitionOf(mfFunctionData_c& function, std::vector<Problem>& problems);

// The parts of it:

/// A definition with name, quantity and variable only.
CurveDefinition headOf(mfFunctionData_c& function, const mfFunctionBase_c& kind,
                       std::vector<Problem>& problems);
/// The numbers of a table's rows, whose profiles are left empty.
SegmentShape rowsOf(mfFunctionSegments_c& table, std::vector<Problem>& problems);
PointShape pointsOf(mfFunctionDataPoints_c& table);
ExpressionShape textOf(mfFunctionExpression_c& expression);

/// A law with its name and source, such as "Bend (cam)", and its definition in normal form.
struct RowLaw {
    std::string_view name;
    std::string_view definition;
};

/// Sets the laws of the rows of `shape`, one for each. Built-in laws get their plain names
/// unless another law would be found by them. The texts of all others are added to `shape`,
/// under distinct names if one name has several texts.
void nameLaws(SegmentShape& shape, const std::vector<RowLaw>& laws);

}  // namespace mf::curve
