// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "mfcurves/analysis/boxes.h"
#include "mfcurves/analysis/parts.h"

namespace mf::analysis {

/// The smooth parts of any curve; of a curve through points, each polynomial between two points.
std::vector<Part> smoothParts(const Curve& curve);

/// Enclosures of `count` orders of a part, from the order `lowest` on. Refers to the part.
class PartOrders {
public:
    PartOrders(const Part& part, std::size_t lowest, std::size_t count);

    struct InBox {
        Enclosures from, middle, to;  // at these x
        Enclosures over;              // over the whole box
    };
    /// All orders in the box [from, to]; unbounded where they are not known.
    InBox in(double from, double to);

    /// Whether all operations for this part are spent, so that nothing more becomes known.
    bool areSpent() const { return !evaluator_ || budget_.isSpent(); }

private:
    static constexpr std::size_t kOperations = 20'000'000;  // for all rows of a part

    Budget budget_;
    std::optional<BoxEvaluator> evaluator_;
};

}  // namespace mf::analysis
