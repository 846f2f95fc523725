#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Problem.h"

namespace mf::curve {

bool hasError(const std::vector<Problem>& problems);

/// The error of these problems, errors before warnings.
CurveError errorOf(std::vector<Problem> problems);

/// As a person writes it, with up to ten digits.
std::string shortNumber(double number);

/// A sentence of a parser as a message: first letter in lower case, but for one that begins
/// with several capitals, and no full stop.
std::string messageOf(std::string sentence);

}  // namespace mf::curve
