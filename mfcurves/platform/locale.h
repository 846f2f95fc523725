// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace mf::platform {

/// Narrow text to wide text through a multibyte UTF-8 locale.
///
/// The text is cut off at the first sequence that is not valid in the locale. The
/// process is left at the locale "C", whatever it was before. If the process is at
/// "C" already, ASCII text is widened without changing the locale: the result and
/// the final state are the same.
std::wstring widenThroughLocale(const std::string& text);

/// Whether the process is at the locale "C" in every category and the calling
/// thread uses the locale of the process.
bool standsAtC();

/// Lower-case form of a character by the tables of the UTF-8 locale, whatever the
/// locale of the process.
wchar_t foldCase(wchar_t c);

/// Compares after foldCase of each character: -1, 0 or 1.
int compareNoCase(const wchar_t* a, const wchar_t* b);

}  // namespace mf::platform
