// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/curve/Problem.h"

namespace mfcurve {

/// The exit statuses of the tool, as documented by --help.
enum ExitStatus : int {
    kDone = 0,
    kFailed = 1,  ///< a file cannot be used or written, a document is not sound, a check fails, a point has
                  ///< no value
    kWrong = 2,   ///< wrong usage, or a wrong expression, row or list of points
};

/// The reasons why the tool cannot do what was requested.
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, std::vector<mf::Problem> problems)
        : std::runtime_error(problems.front().message), status_(status), problems_(std::move(problems))
    {
    }
    Failure(ExitStatus status, std::string place, std::string message)
        : Failure(status, {{mf::Problem::Level::Error, std::move(place), std::move(message)}})
    {
    }
    ExitStatus status() const { return status_; }
    const std::vector<mf::Problem>& problems() const { return problems_; }

private:
    ExitStatus status_;
    std::vector<mf::Problem> problems_;
};

/// An error in the command line. The message refers to the help of the command.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An option does not fit a curve. Throws Failure with the place of a document, and UsageError for a curve
/// from options, which has no place.
[[noreturn]] inline void throwWrong(const std::string& place, const std::string& message)
{
    if (place.empty())
        throw UsageError(message);
    throw Failure(kWrong, place, message);
}

}  // namespace mfcurve
