// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include "mfcurves/platform/mfExport.h"

/// Thrown when no memory can be allocated for a text.
class MFCURVES_API CMemoryException : public std::bad_alloc {
public:
    /// Says that there was no memory for a text.
    const char* what() const noexcept override;
};
