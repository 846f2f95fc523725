// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

constexpr unsigned kOkWithExclamation = 48;

/// Shows a message to the user; `style` is kOkWithExclamation.
using MessageHandler = std::function<void(const wchar_t* text, const wchar_t* caption, unsigned style)>;

/// Replaces the handler of the whole process; an empty function restores the
/// default, which prints caption and text to standard error.
MFCURVES_API void setMessageHandler(MessageHandler handler);

/// Passes a message to the current handler.
MFCURVES_API void showMessage(const wchar_t* text, const wchar_t* caption, unsigned style);

}  // namespace mf::platform
