// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class CString;

namespace mf {

// Converts a text to the narrow encoding and back, the form in which the engine gets
// it. Characters that the encoding cannot represent change, and the process is left at
// the locale "C".
std::wstring throughNarrow(const CString& text);

// Whether throughNarrow would return this text unchanged and have no side effect: it
// calls no encoder of the host, and the process is already at the locale "C".
bool isSameThroughNarrow(const CString& text);

// The same for a text that is known to be ASCII.
bool narrowingLeavesNoTrace();

}  // namespace mf
