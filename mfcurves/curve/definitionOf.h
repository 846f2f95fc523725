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

/// From motion functions to definitions. What is odd is appended to `problems` as warnings,
/// what makes a definition impossible as errors.
namespace mf::curve {

/// The definition of what a function is now.
CurveDefinition definitionOf(mfFunctionData_c& function, std::vector<Problem>& problems);

// The parts of it:

/// A definition that has name, quantity and variable.
CurveDefinition headOf(mfFunctionData_c& function, const mfFunctionBase_c& kind,
                       std::vector<Problem>& problems);
/// The numbers of a table's rows, whose profiles are left empty.
SegmentShape rowsOf(mfFunctionSegments_c& table, std::vector<Problem>& problems);
PointShape pointsOf(mfFunctionDataPoints_c& table);
ExpressionShape textOf(mfFunctionExpression_c& expression);

/// A law as its source calls it: "Bend (cam)" and its definition in normal form.
struct RowLaw {
    std::string_view name;
    std::string_view definition;
};

/// Gives the rows of `shape` their laws, one for each. Built-in laws get their plain names
/// unless another law would answer to them; all others come with their texts, and under
/// distinct names where one name stands for several texts.
void nameLaws(SegmentShape& shape, const std::vector<RowLaw>& laws);

}  // namespace mf::curve
