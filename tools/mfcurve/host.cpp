// SPDX-License-Identifier: MIT

#include "tools/mfcurve/host.h"

#include <filesystem>

#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/profiles/definitionProblems.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr const char* kDefinitionFile = "SegmentTypes.txt";

// The file that the library will read; fails when no folder has one, because the
// built-in profiles would silently stand in for it.
std::string findDefinitionFile(const std::string& library)
{
    for (const std::string& folder : splitText(library, ';')) {
        std::string path = folder + "/" + kDefinitionFile;
        std::error_code error;
        if (std::filesystem::exists(path, error))
            return path;
    }
    throw Failure(kFailed, "no folder of --library \"" + library + "\" has a " + kDefinitionFile);
}

// What the library passes over in a file of definitions. Fails with every line
// for which it refuses the file.
std::vector<std::string> checkDefinitions(const std::string& file)
{
    std::vector<std::string> remarks;
    std::string refusals;
    for (const mf::profiles::DefinitionProblem& problem : mf::profiles::definitionProblems(readInput(file))) {
        std::string text = file;
        text.append(":").append(std::to_string(problem.line)).append(": ");
        if (!problem.profile.empty())
            text.append("profile \"").append(problem.profile).append("\": ");
        text.append(problem.reason);
        if (problem.refused)
            refusals.append(refusals.empty() ? "" : "\n").append(text);
        else
            remarks.push_back(text);
    }
    if (!refusals.empty())
        throw Failure(kFailed, refusals);
    return remarks;
}

}  // namespace

Host::Host(const std::string& library, const std::vector<std::string>& results)
{
    QelSession_c::setMotionFunctionContext(&context_);
    std::vector<CString> names;
    names.reserve(results.size());
    for (const std::string& result : results)
        names.push_back(toCString(result));
    context_.services().setMotionResultNames(names);
    if (!library.empty()) {
        definitionFile_ = findDefinitionFile(library);
        context_.services().setDesignLibraryPaths(toCString(library));
    }
    if (!definitionFile_.empty())
        definitionRemarks_ = checkDefinitions(definitionFile_);
    profileManager().rebuildUserProfileMap();
}

mfProfileManager_c& profileManager()
{
    return *QelSession_c::QelMotionFunctionContext()->getProfileManager();
}

}  // namespace mfcurve
