// SPDX-License-Identifier: MIT

#include "mfcurves/curve/Problem.h"

#include <utility>

namespace mf {
namespace {

std::string linesOf(const std::vector<Problem>& problems)
{
    std::string lines;
    for (const Problem& problem : problems) {
        lines += lines.empty() ? "" : "\n";
        lines += problem.place.empty() ? problem.message : problem.place + ": " + problem.message;
    }
    return lines;
}

}  // namespace

CurveError::CurveError(std::vector<Problem> problems)
    : std::runtime_error(linesOf(problems)), problems_(std::move(problems))
{
}

CurveError::~CurveError() = default;

}  // namespace mf
