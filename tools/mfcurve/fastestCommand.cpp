// SPDX-License-Identifier: MIT
#include <cmath>
#include <memory>

#include "mfcurves/analysis/requirements.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct FastestOptions {
    std::optional<double> stroke;
    mf::analysis::Limits limits;
    std::vector<std::string> libraryFolders;
    Format format = Format::Text;
};

const char* nameOf(mf::analysis::Move::Limit limit)
{
    constexpr const char* kNames[] = {"velocity", "acceleration", "jerk"};
    return kNames[static_cast<int>(limit)];
}

// The laws that compile. The others are reported with a warning.
std::vector<mf::Law> usableLaws(const std::vector<std::string>& folders)
{
    std::vector<mf::Law> usable;
    for (const mf::Law& law : knownLaws(folders)) {
        try {
            mf::analysis::factors({law.name, law.text});
            usable.push_back(law);
        } catch (const mf::CurveError& error) {
            warn("profile " + law.name, error.problems().front().message + "; it is left out");
        }
    }
    return usable;
}

int runFastest(const FastestOptions& options)
{
    const mf::analysis::Limits& limits = options.limits;
    if (!options.stroke || *options.stroke == 0.0)
        throw UsageError("--stroke takes a number that is not 0");
    if (!std::isfinite(limits.velocity) && !std::isfinite(limits.acceleration) && !std::isfinite(limits.jerk))
        throw UsageError("fastest needs a limit: --max-velocity, --max-acceleration or --max-jerk");
    const std::vector<mf::analysis::Move> moves =
        mf::analysis::fastest(*options.stroke, limits, usableLaws(options.libraryFolders));
    std::vector<std::string> objects;
    if (options.format == Format::Text)
        print(fmt::format("{:<28} {:>13}  {}\n", "profile", "duration", "limited by"));
    for (const mf::analysis::Move& move : moves) {
        if (options.format == Format::Text)
            print(fmt::format("{:<28} {:>13}  {}\n", move.profile, shortNumberText(move.duration, 9),
                              nameOf(move.limitedBy)));
        objects.push_back(jsonObject({{"profile", jsonText(move.profile)},
                                      {"duration", jsonNumber(move.duration)},
                                      {"limited_by", jsonText(nameOf(move.limitedBy))}}));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return kDone;
}

}  // namespace

void declareFastest(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<FastestOptions>();
    CLI::App& command = addCommand(app, "fastest", "Ranks the laws by the shortest move within limits");
    addNumber(command, "--stroke", "H", "how far the move goes", options->stroke).required();
    const auto addLimit = [&](const std::string& name, const char* help, double& target) {
        addText(command, name, "NUMBER", help,
                [&target, name](const std::string& text) { target = positive(text, name); });
    };
    addLimit("--max-velocity", "the largest velocity", options->limits.velocity);
    addLimit("--max-acceleration", "the largest acceleration", options->limits.acceleration);
    addLimit("--max-jerk", "the largest jerk", options->limits.jerk);
    declareLibraryOption(command, options->libraryFolders);
    addFormat(command, options->format);
    addNotes(
        command,
        "Moves are from rest to rest. Laws with an impulse in a limited order, at their ends too, are left "
        "out. The\n"
        "time is the greatest of Cv H/V, sqrt(Ca H/A) and cbrt(Cj H/J). Examples:\n"
        "  mfcurve fastest --stroke 25 --max-velocity 500 --max-acceleration 1e4");
    whenChosen(command, [options, &action] { action = [options] { return runFastest(*options); }; });
}

}  // namespace mfcurve
