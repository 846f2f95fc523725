// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <string>

namespace mf::interfaces {

/// printf for wide text, with flags, width and precision as in the C library.
/// `%d %i` take an int, `%u %x %X` an unsigned, `%e %E %f %g %G` a double, `%s`
/// wide text and `%c` a wide character. The decimal sign is a point under every
/// locale. Any other conversion is copied unchanged, including one with a size
/// modifier or a star.
std::wstring formatWide(const wchar_t* format, std::va_list arguments);

}  // namespace mf::interfaces
