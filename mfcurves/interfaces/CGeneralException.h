// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>

#include "mfcurves/platform/mfExport.h"

/// Thrown when a text conversion fails for a reason other than lack of memory.
class MFCURVES_API CGeneralException : public std::runtime_error {
public:
    /// what() includes the code in hexadecimal.
    explicit CGeneralException(std::uint32_t resultCode);

    /// The platform's code for the failure: the error number in the low 16 bits,
    /// 0x80070000 above them.
    std::uint32_t resultCode() const { return resultCode_; }

private:
    std::uint32_t resultCode_;
};
