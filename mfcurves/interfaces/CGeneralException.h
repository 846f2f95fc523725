// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>

#include "mfcurves/platform/mfExport.h"

/// A conversion of a text failed for another reason than memory.
class MFCURVES_API CGeneralException : public std::runtime_error {
public:
    /// With that code, which what() shows.
    explicit CGeneralException(std::uint32_t resultCode);

    /// The platform's code for the failure: the error number in the low 16 bits,
    /// 0x80070000 above them.
    std::uint32_t resultCode() const { return resultCode_; }

private:
    std::uint32_t resultCode_;
};
