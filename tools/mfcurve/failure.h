// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace mfcurve {

/// The exit statuses of the tool, as --help states them.
enum ExitStatus : int {
    kDone = 0,
    kFailed = 1,  ///< a file cannot be used or written, a curve is not sound, a point has no value
    kWrong = 2,   ///< wrong usage, or a wrong expression, row or list of points
};

/// Why the tool cannot do what it was asked, as one sentence for the user.
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}
    ExitStatus status() const { return status_; }

private:
    ExitStatus status_;
};

}  // namespace mfcurve
