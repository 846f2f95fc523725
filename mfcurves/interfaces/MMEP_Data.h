// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// A number on its way into or out of a compiled expression.
///
/// It always holds a number: an empty one holds 0.0.
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
    mutable double number_ = 0.0;  // handed out for writing by a const operation
};
