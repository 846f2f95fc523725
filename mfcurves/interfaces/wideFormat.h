#pragma once

#include <cstdarg>
#include <string>

namespace mf::interfaces {

/// printf over wide text: flags, width and precision of the numeric conversions
/// as the C library has them, `%s` wide text, `%c` a wide character, and a point
/// as the decimal sign under every locale. A conversion that is not known is
/// copied as it stands.
std::wstring formatWide(const wchar_t* format, std::va_list arguments);

}  // namespace mf::interfaces
