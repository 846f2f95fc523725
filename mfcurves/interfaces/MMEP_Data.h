// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// A number passed to or returned from a compiled expression.
///
/// A default-constructed object holds 0.0.
class MFCURVES_API MMEP_Data {
public:
    MMEP_Data() = default;
    MMEP_Data(double number) : number_(number) {}  ///< holds that number
    ~MMEP_Data() = default;
    MMEP_Data(const MMEP_Data&) = default;
    MMEP_Data& operator=(const MMEP_Data&) = default;

    /// The number, never null. It lives as long as this object.
    double* getValue() const { return &number_; }

private:
    mutable double number_ = 0.0;  // writable through the const getValue
};
