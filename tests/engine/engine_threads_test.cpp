// SPDX-License-Identifier: MIT

// Distinct parsers and calculators on distinct threads. What they share inside the
// engine, compiled texts above all, must not show; the thread sanitizer looks on.

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "tests/engine/compiled.h"

namespace engine_test {
namespace {

constexpr int kThreads = 4;

void onThreads(const std::function<void(int thread)>& work)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back(work, thread);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Threads, CompileTheSameTexts)
{
    std::atomic<int> wrong = 0;
    onThreads([&](int) {
        for (int i = 0; i < 300; ++i) {
            const double factor = i % 40;
            const Orders compiled("x^3*" + std::to_string(i % 40) + "+sin(x)*0");
            if (!compiled || compiled.at(2.0, 0) != 8 * factor || compiled.at(2.0, 2) != 12 * factor)
                ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, CompileDifferentTexts)
{
    std::atomic<int> wrong = 0;
    onThreads([&](int thread) {
        for (int i = 0; i < 300; ++i) {
            const double added = thread * 1000 + i;
            const Calculator calculator = compile("x+" + std::to_string(thread * 1000 + i));
            if (evaluate(calculator, 1.0) != 1.0 + added)
                ++wrong;
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, EvaluateFamiliesOfOneText)
{
    std::atomic<int> wrong = 0;
    onThreads([&](int thread) {
        const Orders compiled("10*sin(2*pi*x)+x^2*exp(-x)/(1+x)");
        const Orders other("10*sin(2*pi*x)+x^2*exp(-x)/(1+x)");
        for (int i = 0; i < 1000; ++i) {
            const double x = thread + i * 0.001;
            for (int order = 0; order < 4; ++order) {
                if (compiled.at(x, order) != other.at(x, order))
                    ++wrong;
            }
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, UseACalculatorMadeElsewhere)
{
    std::vector<Calculator> values;
    for (int thread = 0; thread < kThreads; ++thread)
        values.push_back(compile("x^4"));
    std::atomic<int> wrong = 0;
    onThreads([&](int thread) {
        const Calculator first = derivative(values[static_cast<std::size_t>(thread)]);
        for (int i = 0; i < 1000; ++i) {
            if (evaluate(first, 2.0 + i) != 4.0 * (2.0 + i) * (2.0 + i) * (2.0 + i))
                ++wrong;
        }
        values[static_cast<std::size_t>(thread)].reset();
    });
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace engine_test
