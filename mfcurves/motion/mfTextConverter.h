// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

/// Conversions between the wide text of the exported signatures and the narrow
/// text of profiles and documents. It holds nothing and is made where it is
/// needed.
///
/// Errors: see each operation; exceptions travel to the host.
class MFCURVES_API mfTextConverter_c {
public:
    /// The narrow form of `text` up to its first zero character. What the narrow
    /// encoding cannot hold becomes its replacement character. Throws
    /// CMemoryException when the encoder runs out of memory and CGeneralException
    /// with the result code when it fails otherwise.
    std::string toNarrow(const CString& text) const;

    /// The wide form of narrow text, which is UTF-8.
    CString toCString(const std::string& text) const;

    /// Appends the wide form of each element of `source`, in order, to what
    /// `destination` holds.
    void appendToCStringList(const std::vector<std::string>& source, std::vector<CString>& destination) const;

    /// The wide form of `text` as the multibyte locale of the process has it; cut
    /// off at the first sequence that the locale cannot read. Leaves the process
    /// at the locale "C", whatever it stood at before: the road of every text
    /// into the expression engine.
    std::wstring toWide(const std::string& text) const;
};
