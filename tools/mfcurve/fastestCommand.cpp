// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "mfcurves/analysis/analysis.h"
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

struct Move {
    std::string profile;
    double duration;
    const char* limitedBy;
};

// How continuous a law has to be so that no limited order has an impulse, its ends from rest to rest
// included.
int neededContinuity(const mf::analysis::Limits& limits)
{
    return std::isfinite(limits.jerk) ? 2 : std::isfinite(limits.acceleration) ? 1 : 0;
}

Move moveOf(const std::string& profile, const mf::analysis::LawFactors& factors,
            const FastestOptions& options)
{
    const mf::analysis::Limits& limits = options.limits;
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double stroke = std::fabs(*options.stroke);
    const double total = mf::analysis::shortestDuration(factors, stroke, limits);
    const double byVelocity =
        mf::analysis::shortestDuration(factors, stroke, {limits.velocity, kInfinity, kInfinity});
    const double byAcceleration =
        mf::analysis::shortestDuration(factors, stroke, {kInfinity, limits.acceleration, kInfinity});
    return {profile, total,
            total == byVelocity       ? "velocity"
            : total == byAcceleration ? "acceleration"
                                      : "jerk"};
}

std::vector<Move> movesOf(const FastestOptions& options)
{
    std::vector<Move> moves;
    std::vector<std::string> seen;
    for (const mf::Law& law : knownLaws(options.libraryFolders)) {
        if (std::find(seen.begin(), seen.end(), law.name) != seen.end())
            continue;
        seen.push_back(law.name);
        try {
            const mf::analysis::LawFactors factors = mf::analysis::factors({law.name, law.text});
            const int continuity =
                std::min({factors.startContinuity, factors.innerContinuity, factors.endContinuity});
            const Move move = moveOf(law.name, factors, options);
            if (continuity >= neededContinuity(options.limits) && std::isfinite(move.duration))
                moves.push_back(move);
        } catch (const mf::CurveError& error) {
            warn("profile " + law.name, error.problems().front().message + "; it is left out");
        }
    }
    std::stable_sort(moves.begin(), moves.end(),
                     [](const Move& a, const Move& b) { return a.duration < b.duration; });
    return moves;
}

int runFastest(const FastestOptions& options)
{
    const mf::analysis::Limits& limits = options.limits;
    if (!options.stroke || *options.stroke == 0.0)
        throw UsageError("--stroke takes a number that is not 0");
    if (!std::isfinite(limits.velocity) && !std::isfinite(limits.acceleration) && !std::isfinite(limits.jerk))
        throw UsageError("fastest needs a limit: --max-velocity, --max-acceleration or --max-jerk");
    const std::vector<Move> moves = movesOf(options);
    std::vector<std::string> objects;
    if (options.format == Format::Text)
        print(fmt::format("{:<28} {:>13}  {}\n", "profile", "duration", "limited by"));
    for (const Move& move : moves) {
        if (options.format == Format::Text)
            print(fmt::format("{:<28} {:>13}  {}\n", move.profile, shortNumberText(move.duration, 9),
                              move.limitedBy));
        objects.push_back(jsonObject({{"profile", jsonText(move.profile)},
                                      {"duration", jsonNumber(move.duration)},
                                      {"limited_by", jsonText(move.limitedBy)}}));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return kDone;
}

}  // namespace

void declareFastest(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<FastestOptions>();
    CLI::App& command = *app.add_subcommand("fastest", "Ranks the laws by the shortest move within limits");
    addNumber(command, "--stroke", "H", "how far the move goes", options->stroke)->required();
    const auto addLimit = [&](const std::string& name, const char* help, double& target) {
        addText(command, name, "NUMBER", help, [&target, name](const std::string& text) {
            target = finiteNumber(text, name);
            if (!(target > 0.0))
                throw UsageError(name + " takes a number above 0, not \"" + text + "\"");
        });
    };
    addLimit("--max-velocity", "the largest velocity", options->limits.velocity);
    addLimit("--max-acceleration", "the largest acceleration", options->limits.acceleration);
    addLimit("--max-jerk", "the largest jerk", options->limits.jerk);
    declareLibraryOption(command, options->libraryFolders);
    addFormat(command, options->format);
    command.footer(
        "Moves are from rest to rest. Laws with an impulse in a limited order, at their ends too, are left "
        "out. The\n"
        "time is the greatest of Cv H/V, sqrt(Ca H/A) and cbrt(Cj H/J). Examples:\n"
        "  mfcurve fastest --stroke 25 --max-velocity 500 --max-acceleration 1e4");
    command.callback([options, &action] { action = [options] { return runFastest(*options); }; });
}

}  // namespace mfcurve
