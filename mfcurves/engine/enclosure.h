// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mfcurves/engine/graph.h"
#include "mfcurves/engine/interval.h"

namespace mf::engine {

/// Interval evaluation of some roots of a graph with one parameter, such as a text
/// and its derivatives.
///
/// An enclosure of a root over a box contains its exact value and the value that
/// the compiled program computes, for every x of the box. Bounds are rounded
/// outwards; what is exact, zeros above all, stays exact.
///
/// Threads: an object holds the registers of its last evaluation, so each thread
/// has its own.
class Enclosure {
public:
    /// At most eight roots. Copies what it needs; the graph may change or be destroyed.
    Enclosure(const Graph& graph, std::span<const NodeId> roots);

    std::size_t rootCount() const { return roots_.size(); }
    /// The cost of evaluating all roots; the unit is the sum of two intervals.
    std::size_t cost() const { return cost_; }

    /// Sets values[k] to an enclosure of root k over x, for each root whose bit k is set in
    /// `wanted`. The other values have no meaning.
    void evaluate(const Interval& x, Interval* values, unsigned wanted = ~0u);

    /// Sets errors[k] to a bound of the difference between computed and exact values of
    /// root k anywhere in x; infinite where no bound is known. Costs two evaluations.
    void errorBounds(const Interval& x, double* errors);

private:
    struct Step {
        Op op;
        FunctionId function;
        std::uint8_t roots = 0;  // bit k: root k depends on it
        bool cancels = false;    // a - a or a mod a, which is 0, or a / a, which is 1
        std::uint16_t lowest = 0;
        std::uint32_t target = 0;
        std::uint32_t a = 0;  // registers of the operands
        std::uint32_t b = 0;
        std::uint32_t first = 0;  // of the list or of the coefficients
        std::uint32_t count = 0;
        union {
            Interval (*rule1)(const Interval&) = nullptr;
            Interval (*rule2)(const Interval&, const Interval&);
        };
    };

    void iAppend(const Graph& graph, std::span<const NodeId> nodes, std::size_t i, unsigned roots);
    void iRun(const Interval& x, unsigned wanted);
    Interval iValueOf(const Step& step) const;
    double iErrorOf(const Step& step) const;
    std::span<const double> iCoefficients(const Step& step) const
    {
        return {&coefficients_[step.first], step.count};
    }
    const Interval& iOperand(const Step& step, std::size_t i) const
    {
        return values_[lists_[step.first + i]];
    }

    std::vector<Step> steps_;
    std::size_t cost_ = 0;
    std::vector<std::uint32_t> lists_;
    std::vector<double> coefficients_;
    std::vector<std::uint32_t> roots_;      // registers
    std::vector<std::uint32_t> variables_;  // registers that hold x
    std::vector<Interval> values_;          // by register
    std::vector<double> errors_;            // by register
};

}  // namespace mf::engine
