// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "tools/mfcurve/steps.h"

namespace CLI {
class App;
}

namespace mfcurve {

/// Where a table has its lines: --samples, --step and --open-end.
struct StepOptions {
    std::optional<std::size_t> samples;
    std::optional<double> step;
    bool isOpen = false;

    bool isGiven() const { return samples || step || isOpen; }
};

void declareStepOptions(CLI::App& command, StepOptions& options);

/// The places of a table over a stretch. Throws UsageError when the options exclude each other or ask for too
/// many.
Steps stepsOf(const StepOptions& options, mf::Range range);

}  // namespace mfcurve
