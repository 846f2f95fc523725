// SPDX-License-Identifier: MIT
#include <memory>

#include "mfcurves/analysis/analysis.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/lawCheck.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct ProfilesOptions {
    std::vector<std::string> libraryFolders;
    bool isChecked = false;
    bool hasFactors = false;
    Format format = Format::Text;
};

// The statements of a definition as written: "xbar = ...; y = ...".
std::string formulaOf(const mf::Law& law)
{
    const std::size_t first = law.text.find(')') + 1;
    const std::size_t last = law.text.rfind("return");
    std::string formula;
    for (const std::string& statement : splitText(law.text.substr(first, last - first), ';')) {
        if (!statement.empty())
            formula += (formula.empty() ? "" : "; ") + statement;
    }
    return formula;
}

std::string problemText(const mf::CurveError& error)
{
    std::string text;
    for (const mf::Problem& problem : error.problems())
        text += (text.empty() ? "" : "; ") + problem.message;
    return text;
}

std::string motionText(const mf::Law& law)
{
    try {
        return motionOf(law);
    } catch (const mf::CurveError& error) {
        return "does not compile: " + problemText(error);
    }
}

// Prints the result of checking one law; false when it does not lead from 0 to 1.
bool printCheck(const mf::Law& law)
{
    const LawCheck check = checkLaw(law);
    print(fmt::format("    {}   {}\n", check.isSound ? "ok    " : "FAILED", check.text));
    return check.isSound;
}

std::string jsonFactors(const mf::Law& law, const mf::analysis::LawFactors& factors)
{
    return jsonObject({{"profile", jsonText(law.name)},
                       {"cv", jsonNumber(factors.cv)},
                       {"ca", jsonNumber(factors.ca)},
                       {"cj", jsonNumber(factors.cj)},
                       {"cv_at", jsonNumber(factors.cvAt)},
                       {"ca_at", jsonNumber(factors.caAt)},
                       {"cj_at", jsonNumber(factors.cjAt)},
                       {"power", jsonNumber(factors.power)},
                       {"rms_acceleration", jsonNumber(factors.rmsAcceleration)},
                       {"continuity_start", std::to_string(factors.startContinuity)},
                       {"continuity_end", std::to_string(factors.endContinuity)},
                       {"continuity_inside", std::to_string(factors.innerContinuity)},
                       {"guaranteed", jsonTruth(factors.guaranteed)}});
}

void printFactors(const mf::Law& law, const mf::analysis::LawFactors& factors)
{
    print(fmt::format("{:<28} {:>9} {:>9} {:>9} {:>9} {:>9}  {:>5} {:>6} {:>3}\n", law.name,
                      shortNumberText(factors.cv, 5), shortNumberText(factors.ca, 5),
                      shortNumberText(factors.cj, 5), shortNumberText(factors.power, 5),
                      shortNumberText(factors.rmsAcceleration, 5), factors.startContinuity,
                      factors.innerContinuity, factors.endContinuity));
}

int runFactors(const ProfilesOptions& options)
{
    int status = kDone;
    std::vector<std::string> objects;
    if (options.format == Format::Text)
        print(fmt::format("{:<28} {:>9} {:>9} {:>9} {:>9} {:>9}  {}\n", "profile", "Cv", "Ca", "Cj", "power",
                          "rms a", "start inside end"));
    for (const mf::Law& law : knownLaws(options.libraryFolders)) {
        try {
            const mf::analysis::LawFactors factors = mf::analysis::factors({law.name, law.text});
            if (options.format == Format::Text)
                printFactors(law, factors);
            objects.push_back(jsonFactors(law, factors));
        } catch (const mf::CurveError& error) {
            report({mf::Problem::Level::Error, "profile " + law.name, problemText(error)});
            status = kFailed;
        }
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    return status;
}

int runProfiles(const ProfilesOptions& options)
{
    if (options.hasFactors && options.isChecked)
        throw UsageError("--check and --factors exclude each other");
    if (options.hasFactors)
        return runFactors(options);
    if (options.format == Format::Json)
        throw UsageError("--format json goes with --factors");
    int status = kDone;
    for (const mf::Law& law : knownLaws(options.libraryFolders)) {
        print(fmt::format("{}\n    source   {}\n    formula  {}\n    motion   {}\n", law.name, law.source,
                          formulaOf(law), motionText(law)));
        if (options.isChecked && !printCheck(law))
            status = kFailed;
    }
    return status;
}

}  // namespace

void declareProfiles(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ProfilesOptions>();
    CLI::App& command = addCommand(app, "profiles", "Lists the profiles that rows can name");
    declareLibraryOption(command, options->libraryFolders);
    addFlag(command, "--check", options->isChecked,
            "evaluates each law from (0, 0) to (1, 1): whether it compiles, where it starts and ends, "
            "which derivatives vanish there, whether it jumps inside");
    addFlag(command, "--factors", options->hasFactors,
            "prints the largest velocity (Cv), acceleration (Ca) and jerk (Cj) of each law for a stroke of 1 "
            "in a time of 1, and how continuous it is from rest to rest");
    addFormat(command, options->format);
    addNotes(command,
             "Lists each profile with the name that rows use, its source, its formula and how it begins and "
             "ends.\n"
             "Continuity N means that orders 0 to N do not jump. Examples:\n"
             "  mfcurve profiles\n"
             "  mfcurve profiles --factors --format json\n"
             "  mfcurve profiles --library share/mfcurves --check");
    whenChosen(command, [options, &action] { action = [options] { return runProfiles(*options); }; });
}

}  // namespace mfcurve
