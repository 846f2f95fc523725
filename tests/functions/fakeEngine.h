// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "tests/support/FakeHost.h"

// Expression functions with a fake engine, all of whose results the test chooses. A
// program that adds fakeEngine.cpp makes the library call the parser defined there.
namespace mf::test {

// The results of the fake engine of the running test, and the calls that it received.
struct Engine {
    std::vector<MMEP_WString> parameters;
    bool succeeds = true;
    bool makesCalculator = true;
    bool throwsInt = false;  // out of parse
    // The value of an order at x; false when it cannot be evaluated.
    std::function<bool(double x, int order, double& y)> evaluate = [](double x, int order, double& y) {
        y = x + 10.0 * order;
        return true;
    };
    int lastOrder = 3;  // the calculator of this order has no derivative

    std::vector<std::string> calls;
    int alive = 0;  // calculators that wait for Release
    int evaluations = 0;
};

extern Engine* engine;  // of the running test

using Meaning = MMEP_WString::Meaning;

inline const MMEP_WString kTime(L"t", Meaning::Time);
inline const MMEP_WString kCycleAngle(L"c", Meaning::CycleAngle);
inline const MMEP_WString kResult(L"{Angle1}", Meaning::ResultObject);
inline const MMEP_WString kOther(L"unknown", Meaning::Other);

class ExpressionOverAnEngine : public testing::Test {
protected:
    ExpressionOverAnEngine() { engine = &engine_; }
    ~ExpressionOverAnEngine() override
    {
        function_.reset();
        EXPECT_EQ(engine_.alive, 0) << "a calculator was not released";
        engine = nullptr;
    }

    // A motor's displacement over [0, 99], so that sample i lies at x = i.
    void prepareToSample()
    {
        function_->setParseExpression(L"the text");
        function_->setMotorDependentVar(mf::MotorDriveType_Displacment);
        function_->setDomain(0.0, 99.0);
    }

    FakeHost host_;
    Engine engine_;
    std::unique_ptr<mfFunctionExpression_c> function_ = std::make_unique<mfFunctionExpression_c>();
};

}  // namespace mf::test
