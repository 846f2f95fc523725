// SPDX-License-Identifier: MIT

#include "mfcurves/interfaces/wideFormat.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "mfcurves/platform/numbers.h"

namespace mf::interfaces {
namespace {

// One conversion of the format text: `%-8.3f` has flags "-", width "8",
// precision ".3", type 'f'.
struct Conversion {
    std::string flagsWidthPrecision;
    wchar_t type = L'\0';
    std::wstring_view source;  // the conversion as written in the format text
};

Conversion takeConversion(std::wstring_view& format)
{
    Conversion conversion;
    const std::size_t end = format.find_first_not_of(L"-+ #0123456789.", 1);
    conversion.source = format.substr(0, std::min(end, format.size() - 1) + 1);
    for (const wchar_t c : conversion.source.substr(1, std::min(end, format.size()) - 1))
        conversion.flagsWidthPrecision += static_cast<char>(c);
    if (end != std::wstring_view::npos)
        conversion.type = format[end];
    format.remove_prefix(conversion.source.size());
    return conversion;
}

std::wstring widenAscii(std::string_view text)
{
    return {text.begin(), text.end()};
}

template <typename Number>
std::wstring formatInteger(const Conversion& conversion, Number number)
{
    const std::string format = "%" + conversion.flagsWidthPrecision + static_cast<char>(conversion.type);
    const int length = std::max(std::snprintf(nullptr, 0, format.c_str(), number), 0);
    std::string buffer(static_cast<std::size_t>(length), '\0');
    std::snprintf(buffer.data(), buffer.size() + 1, format.c_str(), number);
    return widenAscii(buffer);
}

std::wstring formatDouble(const Conversion& conversion, double number)
{
    const std::string format = "%" + conversion.flagsWidthPrecision + static_cast<char>(conversion.type);
    return widenAscii(mf::platform::formatNumber(format.c_str(), number));
}

// The C library's rule for texts: the precision truncates; the width pads on the
// left, or on the right with the flag "-".
std::wstring formatText(const Conversion& conversion, std::wstring_view text)
{
    std::string_view rest = conversion.flagsWidthPrecision;
    const std::size_t point = rest.find('.');
    if (point != std::string_view::npos)
        text = text.substr(0, static_cast<std::size_t>(mf::platform::readInteger(rest.substr(point + 1))));
    rest = rest.substr(0, point);
    const std::size_t digits = std::min(rest.find_first_of("123456789"), rest.size());
    const bool padRight = rest.substr(0, digits).find('-') != std::string_view::npos;
    const auto width = static_cast<std::size_t>(mf::platform::readInteger(rest.substr(digits)));
    const std::wstring padding(width - std::min(width, text.size()), L' ');
    return padRight ? std::wstring(text) + padding : padding + std::wstring(text);
}

}  // namespace

std::wstring formatWide(const wchar_t* format, std::va_list arguments)
{
    std::wstring result;
    std::wstring_view rest = format;
    while (!rest.empty()) {
        const std::size_t percent = std::min(rest.find(L'%'), rest.size());
        result.append(rest.substr(0, percent));
        rest.remove_prefix(percent);
        if (rest.empty())
            break;

        const Conversion conversion = takeConversion(rest);
        switch (conversion.type) {
            case L'%':
                result += L'%';
                break;
            case L'd':
            case L'i':
                result += formatInteger(conversion, va_arg(arguments, int));
                break;
            case L'u':
            case L'x':
            case L'X':
                result += formatInteger(conversion, va_arg(arguments, unsigned));
                break;
            case L'e':
            case L'E':
            case L'f':
            case L'g':
            case L'G':
                result += formatDouble(conversion, va_arg(arguments, double));
                break;
            case L's': {
                const wchar_t* const text = va_arg(arguments, const wchar_t*);
                result += formatText(conversion, text ? text : L"");
                break;
            }
            case L'c': {
                const auto character = static_cast<wchar_t>(va_arg(arguments, int));
                result += formatText(conversion, {&character, 1});
                break;
            }
            default:
                result.append(conversion.source);
        }
    }
    return result;
}

}  // namespace mf::interfaces
