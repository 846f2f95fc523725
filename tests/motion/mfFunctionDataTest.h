// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/messageBox.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "tests/support/FakeHost.h"

namespace mf::test {

// The messages that a handler received, one per line.
class Messages {
public:
    Messages()
    {
        platform::setMessageHandler([this](const wchar_t* text, const wchar_t* caption, unsigned style) {
            shown.push_back(std::wstring(caption) + L"|" + text + L"|" + std::to_wstring(style));
        });
    }
    ~Messages() { platform::setMessageHandler({}); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    std::vector<std::wstring> shown;
};

class FunctionData : public testing::Test {
protected:
    FunctionData() { data_ = std::make_unique<mfFunctionData_c>(); }

    mfFunctionSegments_c& segments()
    {
        return dynamic_cast<mfFunctionSegments_c&>(*data_->getFunctionSegments());
    }
    mfFunctionDataPoints_c& dataPoints()
    {
        return dynamic_cast<mfFunctionDataPoints_c&>(*data_->getFunctionDataPoints());
    }
    mfFunctionExpression_c& expression()
    {
        return dynamic_cast<mfFunctionExpression_c&>(*data_->getFunctionExpression());
    }

    FakeHost host_;
    Messages messages_;
    std::unique_ptr<mfFunctionData_c> data_;
};

}  // namespace mf::test
