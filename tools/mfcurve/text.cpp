#include "tools/mfcurve/text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mfcurve {

namespace {

// The largest double in plain notation with some decimals.
constexpr std::size_t kLongestNumber = 400;

template <class... Format>
std::string formatted(double number, Format... format)
{
    std::array<char, kLongestNumber> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format...);
    return {buffer.data(), result.ptr};
}

}  // namespace

std::string numberText(double number)
{
    return formatted(number, std::chars_format::general, 17);
}

std::string shortNumberText(double number, int digits)
{
    return formatted(number, std::chars_format::general, digits);
}

std::string fixedText(double number, int decimals)
{
    return formatted(number, std::chars_format::fixed, decimals);
}

std::optional<double> readNumber(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ptr != text.data() + text.size())
        return std::nullopt;
    // Beyond the range of a double a number is infinite or zero.
    return result.ec == std::errc() ? number : mf::platform::readNumber(text);
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> splitText(std::string_view text, char separator)
{
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.emplace_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

CString toCString(std::string_view utf8)
{
    return CString(mf::platform::widen(utf8));
}

std::string toUtf8(const CString& text)
{
    return mf::platform::toUtf8(text.View());
}

}  // namespace mfcurve
