// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/program.h"

namespace mf::engine {

/// Stores the constants of a program in the registers of a block: register r of point i
/// is registers[r * kBlock + i].
void fillConstantRows(const Program& program, double* registers);

/// Computes values[k][i], order k at x[i], for k = 0 to `order` and i below `count`, at
/// most kBlock, with the bits that single points have. The program has at most one
/// parameter, and its constants are in the registers. True where all values are finite;
/// false where some are not, or where that was not looked at.
bool runBlock(const Program& program, int order, const double* x, std::size_t count, double* registers,
              double* const* values);

/// Whether none of the numbers is an infinity or a NaN.
bool areFinite(const double* values, std::size_t count);
/// The same, while they are copied.
bool copyFinite(const double* from, std::size_t count, double* to);

/// The values of all orders of a program at the same points, kept until other points are
/// asked for.
class Block {
public:
    /// Whether `program` can be asked here: with one parameter, and few enough
    /// registers that a block of them stays close to the processor.
    static bool takes(const Program& program);

    /// The values of an order at `count` points, at most kBlock. They stay until the next
    /// call. At new points all orders are computed that were asked for at the points
    /// before them, and at the first points of an expression those up to this one.
    const double* values(const Programs& programs, int order, const double* x, std::size_t count);

    /// Whether all values at these points are known to be finite.
    bool areFinite() const { return areFinite_; }

private:
    void iCompute(int highest);

    Programs programs_;  // that the values are of
    std::vector<double> x_;
    int computed_ = -1;  // the highest order that is computed at x_
    int asked_ = -1;     // the highest order that was asked for at x_
    bool areFinite_ = false;
    std::vector<double> registers_;
    std::vector<double> values_;  // those of order k begin at k * kBlock
    std::vector<double*> rows_;   // where they begin
};

}  // namespace mf::engine
