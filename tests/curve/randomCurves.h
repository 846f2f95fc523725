// SPDX-License-Identifier: MIT
#pragma once

// Random definitions of curves of all kinds, from a fixed seed.

#include <cstddef>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "tests/engine/random_expression.h"

namespace curve_test {

class RandomCurves {
public:
    explicit RandomCurves(unsigned seed) : random_(seed) {}

    mf::CurveDefinition segments();
    mf::CurveDefinition points();
    mf::CurveDefinition expression();
    /// One of the three kinds.
    mf::CurveDefinition any();

    double uniform(double from, double to) { return random_.uniform(from, to); }
    int whole(int from, int to) { return random_.whole(from, to); }

private:
    double number(double from, double to);

    engine_test::Generator random_;
};

/// A law with branches inside, which is not built in: two parabolas from (0, 0) to (1, 1).
extern const mf::LawText kTwoParabolas;

/// The distinct x where rows or points meet, both ends included, ascending.
std::vector<double> seamsOf(const mf::CurveDefinition& definition);

const mf::SegmentShape& segmentsOf(const mf::CurveDefinition& definition);

}  // namespace curve_test
