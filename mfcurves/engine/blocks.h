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
/// most kBlock, bit for bit as for single points. The program has at most one
/// parameter, and its constants are in the registers. Returns true if all values are
/// known to be finite; false if some are not, or if this was not checked.
bool runBlock(const Program& program, int order, const double* x, std::size_t count, double* registers,
              double* const* values);

/// Whether all `count` numbers are finite.
bool areFinite(const double* values, std::size_t count);
/// Copies `count` numbers and returns whether all of them are finite.
bool copyFinite(const double* from, std::size_t count, double* to);

/// Keeps the values of all orders of an expression at the same points, until other points
/// are requested.
class Block {
public:
    /// Whether `program` can be evaluated here: it has one parameter, and few enough
    /// registers that a block of them stays in the cache of the processor.
    static bool takes(const Program& program);

    /// Returns the values of an order at `count` points, at most kBlock. They are valid
    /// until the next call. At new points, computes all orders that were requested at the
    /// previous points; at the first points of an expression, the orders up to this one.
    const double* values(const Programs& programs, int order, const double* x, std::size_t count);

    /// Whether all values at these points are known to be finite.
    bool areFinite() const { return areFinite_; }

private:
    void iCompute(int highest);

    Programs programs_;  // of the expression
    std::vector<double> x_;
    int computed_ = -1;  // the highest order that is computed at x_
    int asked_ = -1;     // the highest order that was requested at x_
    bool areFinite_ = false;
    std::vector<double> registers_;
    std::vector<double> values_;  // those of order k begin at k * kBlock
    std::vector<double*> rows_;   // by order: where its values begin
};

}  // namespace mf::engine
