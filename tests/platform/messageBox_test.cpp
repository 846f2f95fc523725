// SPDX-License-Identifier: MIT

#include "mfcurves/platform/messageBox.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(ShowMessage, PrintsCaptionAndTextWithoutAHandler)
{
    testing::internal::CaptureStderr();
    mf::platform::showMessage(L"the caf\u00e9 is closed", L"Error", mf::platform::kOkWithExclamation);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: the caf\xC3\xA9 is closed\n");
}

TEST(ShowMessage, GoesToTheHandlerAndNowhereElse)
{
    std::wstring shown;
    mf::platform::setMessageHandler([&](const wchar_t* text, const wchar_t* caption, unsigned style) {
        shown = std::wstring(text) + L"|" + caption + L"|" + std::to_wstring(style);
    });
    testing::internal::CaptureStderr();
    mf::platform::showMessage(L"text", L"caption", mf::platform::kOkWithExclamation);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(shown, L"text|caption|48");

    mf::platform::setMessageHandler({});
    testing::internal::CaptureStderr();
    mf::platform::showMessage(L"text", L"caption", mf::platform::kOkWithExclamation);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "caption: text\n");
}

}  // namespace
