// SPDX-License-Identifier: MIT
#pragma once

// The functions whose jets the operators need too.

#include <numbers>

#include "tests/engine/expression_tree.h"

namespace engine_test {

constexpr Real kPi = std::numbers::pi_v<double>;  // `pi` of the engine is the nearest double

Jet reciprocal(const Jet& u);
Jet exp(const Arguments& a);
Jet ln(const Arguments& a);
Jet mod(const Arguments& a);

}  // namespace engine_test
