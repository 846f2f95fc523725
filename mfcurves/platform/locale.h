// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace mf::platform {

/// Narrow text to wide text through the multibyte locale of the process.
///
/// The process is left at the locale "C", whatever it stood at before. Text
/// behind a sequence that is not valid in the locale is cut off. Pure ASCII text
/// in a process that already stands at "C" is widened without touching the
/// locale: the result and the state left are the same.
std::wstring widenThroughLocale(const std::string& text);

/// Whether the process stands at the locale "C" in every category, and the
/// calling thread at that of the process.
bool standsAtC();

/// Lower-case form of a character by the tables of the UTF-8 locale, whatever
/// locale the process stands at.
wchar_t foldCase(wchar_t c);

/// Compares without regard to case, as foldCase has it: negative, 0 or positive.
int compareNoCase(const wchar_t* a, const wchar_t* b);

}  // namespace mf::platform
