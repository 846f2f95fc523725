// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/analysis/stretches.h"
#include "mfcurves/curve/Curve.h"

namespace mf::analysis {

/// Orders that a break may ask about.
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

/// The range that a question is about; empty (from above to) where there is none.
Range cutToCurve(const Curve& curve, Range range);

/// The parts of a curve of rows or of an expression in a range. A curve through points has none.
std::vector<Part> partsOf(const Curve& curve, Range range);

/// The pieces of such a curve, cut to a range.
std::vector<curve::CurvePiece> formulaPieces(const Curve& curve, Range range);

/// The parts of one piece, cut to a range.
void appendParts(const Curve& curve, const curve::CurvePiece& piece, Range range, std::vector<Part>& parts);

/// Orders 0 to kOrdersOfBreaks - 1 at one end of a part, and how large they are on it.
struct EndValues {
    Enclosures values;
    std::array<double, kOrdersOfBreaks> size{};
    const Part* part = nullptr;  // not null: the sizes are those of this part, if they are asked for
};
EndValues startOf(const Part& part);
EndValues endOf(const Part& part);
/// The same by an evaluator of the part.
EndValues startOf(const Part& part, BoxEvaluator& evaluator);
EndValues endOf(const Part& part, BoxEvaluator& evaluator);

/// The smallest jump, relative to the largest magnitude beside it.
constexpr double kJump = 1e-9;

/// Whether an order jumps between the end of one part and the start of the next.
bool jumps(const EndValues& left, const EndValues& right, int order);

/// The lowest order up to `upTo` that jumps; none: upTo + 1.
int lowestJump(const EndValues& left, const EndValues& right, int upTo);

/// Where an order (1 to 3) has an impulse in a range: where the order below it jumps.
std::vector<double> impulsesOf(const Curve& curve, int order, Range range);

}  // namespace mf::analysis
