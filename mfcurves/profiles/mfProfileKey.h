// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

/// What identifies one profile in the profile manager. Profiles of one name
/// differ by where they came from or by a running number.
///
/// Copying: a value; it never refers to a record.
class MFCURVES_API mfProfileKey_c {
public:
    mfProfileKey_c() = default;  ///< the empty key
    mfProfileKey_c(const mfProfileKey_c&) = default;
    mfProfileKey_c& operator=(const mfProfileKey_c&) = default;
    ~mfProfileKey_c();

    /// Name and source equal without regard to case, and the index equal.
    bool operator==(const mfProfileKey_c& other) const;

    /// True when both texts are empty and the index is 0. A key with a name alone
    /// is not empty.
    bool isEmpty() const;

    /// Name and source equal without regard to case, whatever the index.
    bool sameNameAndSource(const mfProfileKey_c& other) const;

    /// Strict order of every map from key to record: by name, then source, both
    /// without regard to case, then index.
    static bool keyLess(const mfProfileKey_c& a, const mfProfileKey_c& b);

    /// Name and source, with the mark `<index>` behind them for an index of 1 or
    /// more.
    void keyDisplayName(CString& out) const;

    CString name;            ///< the profile's name
    CString source;          ///< " (Default)", " (User)" or " (" + file stem + ")"
    std::int32_t index = 0;  ///< running number among equal names and sources, 0 for the first
};
