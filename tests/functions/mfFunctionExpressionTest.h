// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/platform/resources.h"
#include "tests/support/FakeHost.h"

namespace mf::test {

class Expression : public testing::Test {
protected:
    // A motor's displacement, sampled over [minX, maxX].
    bool sample(const wchar_t* text, double minX = 0.0, double maxX = 1.0)
    {
        function_.setParseExpression(text);
        function_.setMotorDependentVar(mf::MotorDriveType_Displacment);
        function_.setDomain(minX, maxX);
        return function_.calculateValue();
    }

    FakeHost host_;
    mfFunctionExpression_c function_;
};

// Makes a resource module current while this object exists.
class Resources {
public:
    explicit Resources(const platform::ResourceModule* module) : before_(platform::currentResourceModule())
    {
        platform::setCurrentResourceModule(module);
    }
    ~Resources() { platform::setCurrentResourceModule(before_); }
    Resources(const Resources&) = delete;
    Resources& operator=(const Resources&) = delete;

private:
    const platform::ResourceModule* before_;
};

}  // namespace mf::test
