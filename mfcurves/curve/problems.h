#pragma once

#include <string>
#include <vector>

#include "mfcurves/curve/Problem.h"

namespace mf::curve {

bool hasError(const std::vector<Problem>& problems);

/// A sentence of a parser as a message: first letter in lower case, but for one that begins
/// with several capitals, and no full stop.
std::string messageOf(std::string sentence);

}  // namespace mf::curve
