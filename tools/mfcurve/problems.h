#pragma once

#include <string>
#include <vector>

namespace mfcurve {

class Curve;

/// What is wrong with a curve, one problem each; none for a sound one.
std::vector<std::string> problems(Curve& curve);

}  // namespace mfcurve
