// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/curve/laws.h"

namespace mf::analysis {

/// The order of a curve that is its velocity (`derivative` 1), acceleration (2) or jerk (3). Nothing for a
/// quantity without it: accelerations have no velocity, forces have none of the three.
MFCURVES_API std::optional<int> motionOrder(Quantity quantity, int derivative);

/// What a curve has to satisfy. Velocity, acceleration and jerk are those of the moving part: if
/// the values of the curve are velocities, they are its orders 0, 1 and 2. Those of a force or torque
/// count as its derivatives.
struct Requirements {
    Limits limits;                  ///< of magnitudes
    std::optional<Range> values;    ///< lowest and highest value
    std::optional<int> continuity;  ///< no order up to this one, 0 to 4, may jump
    bool isCyclic = false;          ///< the end must meet the start, at least with continuity 0
};

/// A stretch where a requirement is broken.
struct Violation {
    int order;                    ///< of the values that break it, 0 to 3; 4 only for a jump
    std::optional<double> limit;  ///< as required; nothing for a jump
    Range where;                  ///< of length 0 for a jump, an impulse and a value at a single x
    std::optional<Peak> worst;    ///< the value farthest beyond the limit; nothing for a jump and an impulse
};

/// The violations, in the order of the fields of Requirements, ascending in x for each of them.
/// An impulse breaks every finite limit of its order.
MFCURVES_API std::vector<Violation> violations(const Curve& curve, const Requirements& required);

/// Whether it is proved that violations() finds all: every order that has a limit, or that must not jump, is
/// guaranteed (see Summary), and no range between two places where it is at its limit is left undecided. An
/// order with a pole is not guaranteed, nor one without a value somewhere, nor one for which a proof takes
/// too much work. Order 4 has no Summary and is not examined.
MFCURVES_API bool areAllViolationsFound(const Curve& curve, const Requirements& required);

/// A move from rest to rest by a motion law.
struct Move {
    /// The limit that keeps a move from being faster.
    enum class Limit { Velocity, Acceleration, Jerk };

    std::string profile;  ///< name of the law
    double duration;      ///< the shortest that keeps the limits
    Limit limitedBy;      ///< the limit that the move reaches
};

/// The built-in and shipped laws that keep the limits without an impulse, at their ends too,
/// the fastest first. Without a finite limit, or for a stroke of 0, there is nothing to
/// compare and the list is empty.
MFCURVES_API std::vector<Move> fastest(double stroke, const Limits& limits);
/// The same for other laws; of several with the same name, the first counts. Throws CurveError if a law
/// does not compile.
MFCURVES_API std::vector<Move> fastest(double stroke, const Limits& limits, const std::vector<Law>& laws);

}  // namespace mf::analysis
