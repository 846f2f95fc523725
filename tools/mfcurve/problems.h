// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

class mfFunctionSegments_c;

namespace mfcurve {

class Curve;

/// What a curve may lose of its span or range to the digits of a law or a document.
constexpr double kMostLoss = 1e-3;

/// What is wrong with a curve, one problem each; none for a sound one.
std::vector<std::string> problems(Curve& curve);

/// How far apart the least and the largest value of the rows are; of rows that all
/// have one value, how far that is from 0.
double valueSpan(mfFunctionSegments_c& table);
/// What a row loses because its law takes six decimals, as the end
/// of a sentence; empty where that does not matter in a curve of that span.
std::string roundingProblem(mfFunctionSegments_c& table, int row, double span);

}  // namespace mfcurve
