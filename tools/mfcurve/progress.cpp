// SPDX-License-Identifier: MIT
#include "tools/mfcurve/progress.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace mfcurve {

namespace {

constexpr std::size_t kBarLength = 30;
constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kInterval{100};

}  // namespace

Progress::Progress(std::string label, std::size_t total)
    : label_(std::move(label)),
      total_(total),
      onTerminal_(isatty(STDERR_FILENO) != 0),
      nextShow_(Clock::now() + kPatience)
{
}

Progress::~Progress()
{
    if (shown_)
        std::fputs("\r\033[K", stderr);
}

void Progress::update(std::size_t done)
{
    if (!onTerminal_ || Clock::now() < nextShow_)
        return;
    nextShow_ = Clock::now() + kInterval;
    shown_ = true;
    const double part = static_cast<double>(done) / static_cast<double>(total_);
    std::string bar(static_cast<std::size_t>(part * kBarLength), '#');
    bar.resize(kBarLength, ' ');
    std::fprintf(stderr, "\r%s [%s] %3d %%", label_.c_str(), bar.c_str(), static_cast<int>(part * 100.0));
}

}  // namespace mfcurve
