#pragma once

#include "mfcurves/platform/mfExport.h"

#include <new>

/// Memory could not be had for a text.
class MFCURVES_API CMemoryException : public std::bad_alloc
{
public:
    const char* what() const noexcept override;
};
