// SPDX-License-Identifier: MIT
#pragma once

// Three functions of x as an engineer writes them in C++ for speed: constants
// folded, powers in Horner form, terms that the orders have in common computed
// once. The engine is compared with them. They are in a separate source file so
// that calls are not inlined.

namespace bench {

struct Orders {
    double value;
    double first;
    double second;
    double third;
};

/// Arrays of `count` values each.
struct Samples {
    double* value;
    double* first;
    double* second;
    double* third;
};

struct Handwritten {
    double (*value)(double x);
    Orders (*orders)(double x);
    void (*samples)(const double* x, int count, Samples samples);
};

extern const Handwritten kPolynomial;     ///< 3-4-5 polynomial from (0.5, 3) to (2.25, -5)
extern const Handwritten kQuarterCosine;  ///< quarter cosine between the same points
extern const Handwritten kGeneral;        ///< 10 sin(2 pi x) + x^2 exp(-x) / (1 + x)

}  // namespace bench
