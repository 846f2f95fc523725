// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class CString;

namespace mf {

// A text as the engine gets it: through the narrow encoding and back. What that
// encoding cannot hold changes on the way, and the process is left at the locale
// "C".
std::wstring throughNarrow(const CString& text);

// Whether throughNarrow would return this text as it is, without a trace: no host's
// encoder notices, and the locale that it leaves behind is the one that there is.
bool isSameThroughNarrow(const CString& text);

// The same for a text that is ASCII.
bool narrowingLeavesNoTrace();

}  // namespace mf
