// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <string>

namespace mf::interfaces {

/// printf over wide text: flags, width and precision as the C library has them,
/// `%d %i` with an int, `%u %x %X` with an unsigned, `%e %E %f %g %G` with a
/// double, `%s` with wide text, `%c` with a wide character, and a point as the
/// decimal sign under every locale. Any other conversion, one with a size before
/// its letter or a star among them, is copied as it stands.
std::wstring formatWide(const wchar_t* format, std::va_list arguments);

}  // namespace mf::interfaces
