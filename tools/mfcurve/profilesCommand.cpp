// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>

#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curve.h"
#include "tools/mfcurve/expressionProblem.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/host.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Laws are checked over [0, 1]; what cancels there in doubles stays far below.
constexpr double kNothing = 1e-9;

struct ProfilesOptions {
    std::string library;
    bool check = false;
};

// The statements of a definition as they are written: "xbar = ...; y = ...".
std::string formulaOf(const mfProfile_c& profile)
{
    const std::string& text = profile.definitionText;
    const std::size_t first = text.find(')') + 1;
    const std::size_t last = text.rfind("return");
    std::string formula;
    for (const std::string& statement : splitText(text.substr(first, last - first), ';')) {
        if (!statement.empty())
            formula += (formula.empty() ? "" : "; ") + statement;
    }
    return formula;
}

// The key that a listed name stands for. The mark of an index, <1>, is not read
// back by the registry.
mfProfileKey_c keyOf(const CString& displayName)
{
    mfProfileKey_c key = profileManager().getProfileKeyFromDisplayName(displayName);
    const int mark = displayName.Find(L")<");
    if (mark >= 0)
        key.index = mf::platform::readInteger(toUtf8(displayName.Mid(mark + 2)));
    return key;
}

// One row from (0, 0) to (1, 1) of that law.
Curve unitRise(const mfProfileKey_c& key)
{
    Curve curve(mf::FunctionType_Segments);
    for (int row = 0; row < 2; ++row) {
        auto segment = std::make_unique<mfSegment_c>(0.0, row, row, key.name);
        segment->setProfileKey(key);
        curve.segments().addSegment(segment.get());
        static_cast<void>(segment.release());  // the table owns it now
    }
    curve.segments().parseExpression(1);
    return curve;
}

std::string vanishingOrders(const Sample& sample)
{
    std::string orders;
    for (int order = 1; order < kOrders; ++order) {
        if (std::fabs(sample.y[order]) < kNothing)
            orders += " d" + std::to_string(order);
    }
    return orders.empty() ? " none" : orders;
}

std::string endText(const char* verb, const Sample& sample, double wanted)
{
    const double value = sample.y[0];
    if (std::fabs(value - wanted) < kNothing)
        return std::string(verb) + " at " + shortNumberText(wanted);
    return std::string(verb) + " at " + shortNumberText(value) + " and not at " + shortNumberText(wanted);
}

// Prints what the check of one law found; false when it is no law from 0 to 1.
bool printCheck(const mfProfileKey_c& key)
{
    Curve curve = unitRise(key);
    mfSegment_c& row = rowOf(curve.segments(), 1);
    if (const auto problem = lawProblem(row)) {
        print("    FAILED   " + *problem + "\n");
        return false;
    }
    const Sample start = curve.atRow(1, 0.0);
    const Sample end = curve.atRow(1, 1.0);
    const bool passed = std::fabs(start.y[0]) < kNothing && std::fabs(end.y[0] - 1.0) < kNothing;
    print(std::string(passed ? "    ok       " : "    FAILED   ") + "compiles, " +
          endText("starts", start, 0.0) + ", " + endText("ends", end, 1.0) +
          "; vanish at the start:" + vanishingOrders(start) + ", at the end:" + vanishingOrders(end) + "\n");
    return passed;
}

int runProfiles(const ProfilesOptions& options)
{
    const Host host(options.library, {});
    for (const std::string& remark : host.definitionRemarks())
        warn(remark);
    std::vector<CString> names;
    profileManager().getAllProfileNames(names);
    const std::string source = host.definitionFile().empty() ? "built-in table" : host.definitionFile();
    int status = kDone;
    for (const CString& name : names) {
        const mfProfileKey_c key = keyOf(name);
        const mfProfile_c& profile = *profileManager().findProfile(key);
        print(toUtf8(name) + "\n    source   " + source + "\n    formula  " + formulaOf(profile) + "\n");
        if (options.check && !printCheck(key))
            status = kFailed;
    }
    return status;
}

}  // namespace

void declareProfiles(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ProfilesOptions>();
    CLI::App& command = *app.add_subcommand("profiles", "Lists the profiles that rows can name");
    command
        .add_option("--library", options->library,
                    "folders with a SegmentTypes.txt, separated by ';'; the first readable one replaces the "
                    "built-in profiles")
        ->type_name("DIR;DIR");
    command.add_flag("--check", options->check,
                     "evaluate each law from (0, 0) to (1, 1): does it compile, where does it start and end, "
                     "which derivatives vanish there");
    command.footer(
        "Each profile is listed by its key, which is how rows name it, with where it comes from and its\n"
        "formula. Examples:\n"
        "  mfcurve profiles\n"
        "  mfcurve profiles --library share/mfcurves --check");
    command.callback([options, &action] { action = [options] { return runProfiles(*options); }; });
}

}  // namespace mfcurve
