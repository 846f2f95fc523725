// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/stretches.h"
#include "mfcurves/curve/Curve.h"

namespace mf::analysis {

/// The number of orders whose jumps are found: 0 to 4.
constexpr int kOrdersOfBreaks = 5;

/// A smooth part of a row or expression.
struct Part {
    double from;
    double to;
    bool beginsPiece;  // at a seam, a kink or the start of the curve; else where the range cuts
    bool endsPiece;
    bool beginsAtKink;
    int row;
    std::shared_ptr<FormulaPiece> piece;
    std::size_t stretch;  // of the piece

    const Stretch& smooth() const { return piece->stretches()[stretch]; }
    BoxEvaluator evaluator() const { return piece->evaluator(smooth()); }
};

/// The part of a range that is on the curve; empty (from above to) if there is no such part.
Range cutToCurve(const Curve& curve, Range range);

/// The parts of a curve of rows or of an expression in a range; empty for a curve through points.
std::vector<Part> partsOf(const Curve& curve, Range range);

/// The pieces of such a curve that overlap a range. They are not cut to it.
std::vector<curve::CurvePiece> formulaPieces(const Curve& curve, Range range);

/// The parts of one piece, cut to a range.
void appendParts(const Curve& curve, const curve::CurvePiece& piece, Range range, std::vector<Part>& parts);

/// Orders 0 to kOrdersOfBreaks - 1 at one end of a part, and their largest magnitudes on it.
struct EndValues {
    Enclosures values;
    std::array<double, kOrdersOfBreaks> size{};
    const Part* part = nullptr;  // not null: `size` is not set; this part gives the magnitudes
};
EndValues startOf(const Part& part);
EndValues endOf(const Part& part);
/// The same by an evaluator of the part.
EndValues startOf(const Part& part, BoxEvaluator& evaluator);
EndValues endOf(const Part& part, BoxEvaluator& evaluator);

/// The smallest jump, relative to the largest magnitude on the adjacent parts.
constexpr double kJump = 1e-9;

/// Whether an order jumps between the end of one part and the start of the next.
bool jumps(const EndValues& left, const EndValues& right, int order);

/// The lowest order up to `upTo` that jumps; upTo + 1 if no order jumps.
int lowestJump(const EndValues& left, const EndValues& right, int upTo);

/// Whether the search for the places where an order has a value leaves no box undecided that is wider than
/// rounding. True for a value that is not finite.
bool isEachBoxDecided(const Curve& curve, int order, double value, Range range);

/// Where an order (1 to 3) has an impulse in a range: where the order below it jumps. `parts` are those
/// of the whole curve; they are not used for a curve through points.
std::vector<double> impulsesOf(const Curve& curve, const std::vector<Part>& parts, int order, Range range);

}  // namespace mf::analysis
