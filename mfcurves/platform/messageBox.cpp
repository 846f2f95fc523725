// SPDX-License-Identifier: MIT

#include "mfcurves/platform/messageBox.h"

#include <cstdio>
#include <utility>

#include "mfcurves/platform/encoding.h"

namespace mf::platform {
namespace {

MessageHandler& currentHandler()
{
    static MessageHandler handler;
    return handler;
}

}  // namespace

void setMessageHandler(MessageHandler handler)
{
    currentHandler() = std::move(handler);
}

void showMessage(const wchar_t* text, const wchar_t* caption, unsigned style)
{
    if (const MessageHandler& handler = currentHandler())
        handler(text, caption, style);
    else
        std::fprintf(stderr, "%s: %s\n", toUtf8(caption).c_str(), toUtf8(text).c_str());
}

}  // namespace mf::platform
