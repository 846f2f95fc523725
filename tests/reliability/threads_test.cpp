// SPDX-License-Identifier: MIT

// Distinct objects in several threads evaluate, edit and sample at the same time. With the
// thread sanitizer this shows that the shared data is safe.

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

#include "mfcurves/mfcurves.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 200;

class Threads : public testing::Test {
protected:
    Threads()
    {
        QelSession_c::setMotionFunctionContext(&host_);
        host_.getProfileManager()->rebuildUserProfileMap();
    }
    ~Threads() override { QelSession_c::setMotionFunctionContext(nullptr); }

    // A function for each thread, made by `make` in this thread.
    template <typename Make>
    std::vector<std::unique_ptr<mfFunctionData_c>> functions(Make make)
    {
        std::vector<std::unique_ptr<mfFunctionData_c>> made;
        for (int i = 0; i < kThreads; ++i) {
            made.push_back(std::make_unique<mfFunctionData_c>());
            EXPECT_TRUE(made.back()->initialize());
            make(*made.back());
        }
        return made;
    }

    template <typename Run>
    static void runOnEach(std::vector<std::unique_ptr<mfFunctionData_c>>& functions, Run run)
    {
        std::vector<std::thread> threads;
        for (const auto& function : functions)
            threads.emplace_back([&run, &function] { run(*function); });
        for (std::thread& thread : threads)
            thread.join();
    }

private:
    mf::host::Context host_;
};

TEST_F(Threads, SegmentCurvesOfOneFormulaEvaluateAndSample)
{
    auto curves = functions([](mfFunctionData_c& function) {
        auto& table = static_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
        table.setMotorDependentVar(mf::MotorDriveType_Displacment);
        table.addSegment(new mfSegment_c(0, 0, 0, L"Cubic"));
        table.addSegment(new mfSegment_c(0, 1, 4, L"Cubic"));
        table.parseExpression(1);
    });
    runOnEach(curves, [](mfFunctionData_c& function) {
        auto& table = static_cast<mfFunctionSegments_c&>(*function.getFunctionSegments());
        for (int round = 0; round < kRounds; ++round) {
            table.calculateValue();
            // The cubic is halfway at the middle, with its greatest slope 1.5 h.
            EXPECT_NEAR(function.evaluate(0.5, 0), 2.0, 1e-12);
            EXPECT_NEAR(function.evaluate(0.5, 1), 6.0, 1e-12);
            mfSegment_c* row = nullptr;
            table.selectSegment(1, row);
            EXPECT_NEAR(row->getPlottingData0()[99].y(), 4.0, 1e-12);
        }
    });
}

TEST_F(Threads, ExpressionCurvesCompileTheSameAndOtherTexts)
{
    auto curves =
        functions([](mfFunctionData_c& function) { function.setFunctionType(mf::FunctionType_Expression); });
    runOnEach(curves, [](mfFunctionData_c& function) {
        auto& expression = static_cast<mfFunctionExpression_c&>(*function.getFunctionExpression());
        expression.setPlottingPointCount(100);
        for (int round = 0; round < kRounds; ++round) {
            CString text;
            text.Format(L"%d*time^2", round % 50);
            expression.setMathExpression(text);
            EXPECT_EQ(function.evaluate(2.0, 0), 4.0 * (round % 50));
            EXPECT_EQ(function.evaluate(2.0, 1), 4.0 * (round % 50));
        }
    });
}

TEST_F(Threads, PointCurvesAreEditedAndEvaluated)
{
    auto curves =
        functions([](mfFunctionData_c& function) { function.setFunctionType(mf::FunctionType_DataPoints); });
    runOnEach(curves, [](mfFunctionData_c& function) {
        auto& table = static_cast<mfFunctionDataPoints_c&>(*function.getFunctionDataPoints());
        for (int round = 0; round < kRounds; ++round) {
            auto* row = new mfDataPoints_c();
            row->addPoint(round, 2.0 * round);
            ASSERT_TRUE(table.insertDataPoint(round, row));
            EXPECT_NEAR(function.evaluate(0.5 * round, 0), round, 1e-9);
        }
    });
}

}  // namespace
