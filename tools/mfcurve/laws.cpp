// SPDX-License-Identifier: MIT
#include "tools/mfcurve/laws.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>

#include "mfcurves/curve/Problem.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/nearest.h"

namespace mfcurve {

namespace {

constexpr const char* kDefinitionFile = "SegmentTypes.txt";

std::string_view withoutSource(std::string_view name)
{
    return name.substr(0, name.find(" ("));
}

}  // namespace

std::vector<std::string> usableFolders(const std::vector<std::string>& folders)
{
    std::vector<std::string> usable;
    std::vector<std::string> empty;
    for (const std::string& folder : folders) {
        std::error_code ignored;
        (std::filesystem::exists(std::filesystem::path(folder) / kDefinitionFile, ignored) ? usable : empty)
            .push_back(folder);
    }
    if (!folders.empty() && usable.empty())
        throw Failure(kFailed, "--library",
                      fmt::format("no folder of \"{}\" has a {}", fmt::join(folders, ";"), kDefinitionFile));
    for (const std::string& folder : empty)
        warn("--library", fmt::format("{} has no {}; it is passed over", folder, kDefinitionFile));
    return usable;
}

std::vector<mf::Law> knownLaws(const std::vector<std::string>& folders)
{
    try {
        return mf::laws(usableFolders(folders));
    } catch (const mf::CurveError& error) {
        throw Failure(kFailed, error.problems());
    }
}

const mf::Law* findLaw(const std::vector<mf::Law>& laws, std::string_view name)
{
    const auto named = [&](std::string_view wanted) {
        return std::find_if(laws.begin(), laws.end(),
                            [&](const mf::Law& law) { return equalsInAnyCase(law.name, wanted); });
    };
    auto found = named(name);
    if (found == laws.end())
        found = named(withoutSource(name));
    return found == laws.end() ? nullptr : &*found;
}

std::string unknownLaw(const std::vector<mf::Law>& laws, const std::string& name)
{
    std::vector<std::string> names;
    names.reserve(laws.size());
    for (const mf::Law& law : laws)
        names.push_back(law.name);
    if (const std::string advice = nearestAdvice(name, names); !advice.empty())
        return fmt::format("there is no profile \"{}\"{} mfcurve profiles lists all", name, advice);
    return fmt::format("there is no profile \"{}\"; there are {}", name, fmt::join(names, ", "));
}

}  // namespace mfcurve
