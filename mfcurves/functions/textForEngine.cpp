// SPDX-License-Identifier: MIT

#include "mfcurves/functions/textForEngine.h"

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/narrowText.h"

namespace mf {

std::wstring throughNarrow(const CString& text)
{
    const mfTextConverter_c converter;
    return converter.toWide(converter.toNarrow(text));
}

bool isSameThroughNarrow(const CString& text)
{
    return platform::isAscii(text.View()) && narrowingLeavesNoTrace();
}

bool narrowingLeavesNoTrace()
{
    return platform::hasBuiltInEncoder() && platform::standsAtC();
}

}  // namespace mf
