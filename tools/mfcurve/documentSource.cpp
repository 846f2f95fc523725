// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/rounding.h"
#include "tools/mfcurve/sources.h"

namespace mfcurve {

namespace {

mf::Curve read(const std::string& path, const mf::ReadSettings& settings)
{
    if (path.empty())
        throw Failure(kFailed, "\"\"", "cannot be read: No such file or directory");
    return isStandardStream(path) ? mf::Curve::parse(readInput(path), settings)
                                  : mf::Curve::read(path, settings);
}

// The library says what is missing; the tool adds the option that provides it.
std::vector<mf::Problem> withAdvice(std::vector<mf::Problem> problems)
{
    for (mf::Problem& problem : problems) {
        if (problem.message.starts_with("it runs over the motion result"))
            problem.message += "; --result names one that exists";
        if (problem.message.starts_with("start tag expected"))
            problem.message += "; a document is XML, and a file of points is read by --points";
    }
    return problems;
}

}  // namespace

mf::Curve readDocument(const std::string& path, const CurveOptions& options,
                       std::vector<mf::Problem>* oddities)
{
    try {
        const mf::Curve curve = read(path, {usableFolders(options.libraryFolders), options.motionResults});
        std::vector<mf::Problem> odd = curve.warnings();
        const std::vector<mf::Problem> rounded = roundingProblems(curve.definition());
        odd.insert(odd.end(), rounded.begin(), rounded.end());
        for (mf::Problem& problem : odd)
            problem.level = mf::Problem::Level::Error;
        if (oddities != nullptr)
            *oddities = odd;
        else if (!odd.empty())
            throw Failure(kFailed, placed(path, odd));
        return curve;
    } catch (const mf::CurveError& error) {
        throw Failure(kFailed, placed(path, withAdvice(error.problems())));
    }
}

}  // namespace mfcurve
