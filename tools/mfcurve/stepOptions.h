// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "tools/mfcurve/steps.h"

namespace CLI {
class App;
}

namespace mfcurve {

/// The x of the lines of a table: --samples, --step and --open-end.
struct StepOptions {
    std::optional<std::size_t> samples;
    std::optional<double> step;
    bool isOpen = false;

    bool isGiven() const { return samples || step || isOpen; }
};

void declareStepOptions(CLI::App& command, StepOptions& options);

/// The x of the lines of a table over a range. Throws UsageError when the options exclude each other or give
/// too many lines.
Steps stepsOf(const StepOptions& options, mf::Range range);

}  // namespace mfcurve
