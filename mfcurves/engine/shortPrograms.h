// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/evaluation.h"
#include "mfcurves/engine/program.h"

/// Dedicated functions for programs that are a single motion law, or the value of a single call.
/// Most laws are a polynomial, which is one step, or a sine, whose derivatives are multiples of sine
/// and cosine.
namespace mf::engine {

/// The dedicated function for a polynomial step in the form of a law; null if there is no such
/// function.
Step::Run runOfLaw(const Step& step);

/// Whether a program is a single step that computes a law of x and its three derivatives,
/// which are the orders of the program.
bool isLawWithDerivatives(const Program& program);

/// The dedicated function for the steps of this program that compute the orders up to `highest`;
/// null if there is no such function.
RunProgram runOfShortProgram(const Program& program, int highest);

/// The dedicated function for this program; null if there is no such function.
RunOrders ordersOfShortProgram(const Program& program);

}  // namespace mf::engine
