// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace mfcurve {

/// A progress bar on standard error for work of more than half a second; nothing
/// is shown unless standard error is a terminal.
class Progress {
public:
    Progress(std::string label, std::size_t total);
    ~Progress();  ///< erases the bar
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Sets how much of the total is done, and shows the bar if it is due.
    void update(std::size_t done);

private:
    using Clock = std::chrono::steady_clock;

    std::string label_;
    std::size_t total_;
    bool onTerminal_;
    Clock::time_point nextShow_;
    bool shown_ = false;
};

}  // namespace mfcurve
