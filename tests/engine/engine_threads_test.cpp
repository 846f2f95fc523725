// SPDX-License-Identifier: MIT

// Distinct parsers and calculators on distinct threads. What they share in the engine,
// above all compiled texts, must have no effect. Run this under the thread sanitizer, too.

#include <array>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <variant>
#include <vector>

#include "mfcurves/engine/formula.h"
#include "tests/engine/compiled.h"

namespace engine_test {
namespace {

constexpr int kThreads = 8;

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

// A formula never changes: each thread brings registers of its own.
TEST(Threads, EvaluateOneFormula)
{
    using mf::engine::Formula;
    for (const char* text :
         {"3-8*(10*((x-0.5)/1.75)^3-15*((x-0.5)/1.75)^4+6*((x-0.5)/1.75)^5)", "3-8*(1-cos(pi*(x-0.5)/3.5))",
          "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", "if(x-1: x^2, 1, 2*x-1)+5*step(x,0,1,2,3)"}) {
        const Orders expected(text);
        const auto compiled = Formula::compile(wide(text), L"x");
        const Formula& formula = *std::get<std::shared_ptr<const Formula>>(compiled);
        std::vector<std::array<double, 4>> values;
        std::vector<double> points;
        for (int i = 0; i < 200; ++i) {
            const double x = 0.5 + i * 0.01;
            points.push_back(x);
            values.push_back(
                {*expected.at(x, 0), *expected.at(x, 1), *expected.at(x, 2), *expected.at(x, 3)});
        }

        std::atomic<int> wrong = 0;
        onThreads([&](int thread) {
            std::vector<double> registers(formula.registerCount() * mf::engine::kBlock);
            for (std::size_t i = 0; i < points.size(); ++i) {
                const std::size_t at = (i + 25 * static_cast<std::size_t>(thread)) % points.size();
                std::array<double, 4> orders;
                formula.evaluate(points[at], 3, registers.data(), orders.data());
                wrong += orders != values[at];
                formula.evaluate(points[at], 0, registers.data(), orders.data());
                wrong += orders[0] != values[at][0];
            }
            double rows[4][100];
            double* const to[4] = {rows[0], rows[1], rows[2], rows[3]};
            formula.evaluateBlock(&points[50], 100, 3, registers.data(), to);
            for (std::size_t i = 0; i < 100; ++i) {
                for (std::size_t order = 0; order < 4; ++order)
                    wrong += rows[order][i] != values[50 + i][order];
            }
        });
        EXPECT_EQ(wrong, 0) << text;
    }
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
