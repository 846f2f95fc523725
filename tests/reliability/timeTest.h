// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "mfcurves/mfcurves.h"
#include "tests/support/longTexts.h"

// No call takes more than a second for an input of at most a megabyte. These tests use the
// worst known inputs of each reader, all made here, and time each call separately. The
// programs print the slowest call of every input.

namespace time_test {

constexpr std::size_t kMegabyte = 1'000'000;

constexpr double kSecondsAllowed = 1.0;

// Processor time, because the machine may be busy with something else.
class Stopwatch {
public:
    template <class Work>
    auto time(const char* call, Work&& work)
    {
        const Measure measure{*this, call, std::clock()};
        return work();
    }

    double slowest() const { return slowest_; }
    const char* slowestCall() const { return slowestCall_; }

private:
    struct Measure {
        Stopwatch& watch;
        const char* call;
        std::clock_t start;
        ~Measure()
        {
            const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
            if (seconds < watch.slowest_)
                return;
            watch.slowest_ = seconds;
            watch.slowestCall_ = call;
        }
    };

    double slowest_ = 0.0;
    const char* slowestCall_ = "";
};

// One input and the calls that receive it.
struct TimeCase {
    const char* name;
    std::function<std::string()> input;
};

inline void PrintTo(const TimeCase& c, std::ostream* os)
{
    *os << c.name;
}

class Time : public testing::TestWithParam<TimeCase> {
protected:
    Time()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        host_.getProfileManager()->rebuildUserProfileMap();
    }
    ~Time() override
    {
        QelSession_c::setMotionFunctionContext(nullptr);
        EXPECT_LT(watch_.slowest(), kSecondsAllowed) << watch_.slowestCall();
        std::printf("%8.3f s  %s\n", watch_.slowest(), watch_.slowestCall());
    }

    static std::string input()
    {
        std::string text = GetParam().input();
        EXPECT_LE(text.size(), kMegabyte);
        return text;
    }

    mf::host::Context host_;
    Stopwatch watch_;
};

using mf::test::nested;
using mf::test::repeated;

// The text as often as it fits.
inline std::string filled(const std::string& text, std::size_t size = kMegabyte - 200)
{
    return mf::test::filled(text, size);
}

// The texts of `make` for 0, 1, 2, ..., joined, as long as they fit.
std::string numbered(const std::function<std::string(int)>& make, std::size_t size = kMegabyte - 200);
// A short name for each number.
std::string nameOf(int number);

// The definition of a profile.
std::string currentDefinition(const std::string& name, const std::string& statements);
// Each line doubles the text of the previous line, up to about 10 * 2^lines.
std::string doubling(int lines, const std::string& first = "x");

}  // namespace time_test
