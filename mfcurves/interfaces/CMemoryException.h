#pragma once

#include <new>

#include "mfcurves/platform/mfExport.h"

/// Memory could not be had for a text.
class MFCURVES_API CMemoryException : public std::bad_alloc {
public:
    const char* what() const noexcept override;
};
