// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

/// Identifies one profile in the profile manager. Profiles of the same name differ by
/// their source or by a running number.
///
/// Copying: a value; it does not refer to a record.
class MFCURVES_API mfProfileKey_c {
public:
    mfProfileKey_c() = default;  ///< the empty key
    mfProfileKey_c(const mfProfileKey_c&) = default;
    mfProfileKey_c& operator=(const mfProfileKey_c&) = default;
    ~mfProfileKey_c();

    /// True when the indexes are equal and name and source are equal ignoring case.
    bool operator==(const mfProfileKey_c& other) const;

    /// True when both texts are empty and the index is 0. A key with only a name is
    /// not empty.
    bool isEmpty() const;

    /// True when name and source are equal ignoring case, whatever the index.
    bool sameNameAndSource(const mfProfileKey_c& other) const;

    /// The strict order of every map from key to record: by name, then source, both
    /// ignoring case, then index.
    static bool keyLess(const mfProfileKey_c& a, const mfProfileKey_c& b);

    /// Sets `out` to name and source, followed by the mark `<index>` if the index is 1
    /// or more.
    void keyDisplayName(CString& out) const;

    CString name;            ///< the profile's name
    CString source;          ///< " (Default)", " (User)" or " (" + file stem + ")"
    std::int32_t index = 0;  ///< running number among equal names and sources, 0 for the first
};
