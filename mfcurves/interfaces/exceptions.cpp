// SPDX-License-Identifier: MIT

#include <cstdio>
#include <string>

#include "mfcurves/interfaces/CGeneralException.h"
#include "mfcurves/interfaces/CMemoryException.h"

namespace {

std::string describe(std::uint32_t resultCode)
{
    char text[48];
    std::snprintf(text, sizeof text, "text conversion failed with code 0x%08X", resultCode);
    return text;
}

}  // namespace

const char* CMemoryException::what() const noexcept
{
    return "no memory for a text";
}

CGeneralException::CGeneralException(std::uint32_t resultCode)
    : std::runtime_error(describe(resultCode)), resultCode_(resultCode)
{
}
