// SPDX-License-Identifier: MIT
#pragma once

// Definitions of curves made at random from a fixed seed, of all kinds.

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
    /// One of the three.
    mf::CurveDefinition any();

    double uniform(double from, double to) { return random_.uniform(from, to); }
    int whole(int from, int to) { return random_.whole(from, to); }

private:
    double number(double from, double to);

    engine_test::Generator random_;
};

/// A law of its own for definitions, with branches inside: (0, 0) to (1, 1) by parabolas.
extern const mf::LawText kTwoParabolas;

/// The x where rows or points meet, both ends included, ascending, each once.
std::vector<double> seamsOf(const mf::CurveDefinition& definition);

const mf::SegmentShape& segmentsOf(const mf::CurveDefinition& definition);

}  // namespace curve_test
