// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

/// Conversions between the wide text of the exported signatures and the narrow
/// text of profiles and documents. It has no state; make one where it is needed.
///
/// Errors: see each operation; exceptions are passed on to the host.
class MFCURVES_API mfTextConverter_c {
public:
    /// The narrow form of `text` up to its first zero character. Characters that the
    /// narrow encoding cannot represent become its replacement character. Throws
    /// CMemoryException when the encoder runs out of memory, and CGeneralException
    /// with the result code for any other failure.
    std::string toNarrow(const CString& text) const;

    /// The wide form of narrow text, which is UTF-8.
    CString toCString(const std::string& text) const;

    /// Appends the wide form of each element of `source`, in order, to
    /// `destination`.
    void appendToCStringList(const std::vector<std::string>& source, std::vector<CString>& destination) const;

    /// The wide form of `text` by a multibyte UTF-8 locale, cut off at the first
    /// sequence that is not valid in it. Leaves the process at the locale "C",
    /// whatever it was before. Every text for the expression engine is converted
    /// this way.
    std::wstring toWide(const std::string& text) const;
};
