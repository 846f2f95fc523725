// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// Where both the sine and the cosine of a register are asked for, the step that comes
/// first computes both. What is left of the other is its output stage.
void mergeSinesAndCosines(Draft& draft);

/// Where a polynomial is followed by polynomials in the same register that have the form
/// of its derivatives, the first step computes them all: what a law of motion is made of
/// becomes one step.
void mergeDerivatives(Draft& draft);

/// Where only a sum or a quotient uses a product, its step computes the product as well; and
/// so does a quotient with the sum of a product, the form of every derivative of a quotient.
void mergeProducts(Draft& draft);

}  // namespace mf::engine
