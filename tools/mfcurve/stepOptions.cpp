// SPDX-License-Identifier: MIT
#include "tools/mfcurve/stepOptions.h"

#include "tools/mfcurve/options.h"

namespace mfcurve {

namespace {

constexpr std::size_t kMostSamples = 10'000'000;

}  // namespace

void declareStepOptions(CLI::App& command, StepOptions& options)
{
    addText(command, "--samples", "N", "how many samples, both ends included [101]",
            [&options](const std::string& text) {
                options.samples = static_cast<std::size_t>(wholeNumber(text, "--samples", 1, kMostSamples));
            });
    addText(command, "--step", "H", "the distance of samples, instead of their number",
            [&options](const std::string& text) { options.step = positive(text, "--step"); });
    addFlag(command, "--open-end", options.isOpen,
            "leaves out the end, which is the start of the next cycle");
}

Steps stepsOf(const StepOptions& options, mf::Range range)
{
    constexpr std::size_t kUsualCount = 101;
    if (options.step && options.samples)
        throw UsageError("--step and --samples exclude each other");
    if (options.step)
        return Steps::byStep(range, *options.step, options.isOpen, kMostSamples);
    return Steps::byCount(range, options.samples.value_or(kUsualCount), options.isOpen);
}

}  // namespace mfcurve
