// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/program.h"

/// Programs that are one law of motion, with functions of their own: most laws are a polynomial, which
/// is one step, or a sine, whose derivatives are multiples of sine and cosine.
namespace mf::engine {

/// The function of a polynomial that has the form of a law, of its x as it is; null for another step.
Step::Run runOfLaw(const Step& step);

/// Whether a program is one step, a law of x with its three derivatives, and these are its orders.
bool isLawWithDerivatives(const Program& program);

/// Null where steps have no function of their own.
RunProgram runOfShortProgram(std::span<const Step> steps);

/// Null where a program has no function of its own.
RunOrders ordersOfShortProgram(const Program& program);

}  // namespace mf::engine
