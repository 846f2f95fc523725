// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/engine/program.h"

namespace mf::engine {

/// Where both the sine and the cosine of a register are needed, the step that comes first
/// computes both. Only the output stage of the other step remains.
void mergeSinesAndCosines(Draft& draft);

/// Where a polynomial is followed by polynomials in the same register that have the form
/// of its derivatives, the first step computes them all. A motion law thus becomes one
/// step.
void mergeDerivatives(Draft& draft);

/// A product that only one sum or quotient uses is computed by the step of that sum or
/// quotient. So is a sum with a product that only one quotient uses, which is the form of
/// every derivative of a quotient.
void mergeProducts(Draft& draft);

}  // namespace mf::engine
