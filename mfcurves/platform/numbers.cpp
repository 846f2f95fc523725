// SPDX-License-Identifier: MIT

#include "mfcurves/platform/numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <limits>
#include <locale.h>
#include <vector>

namespace mf::platform {
namespace {

// The calling thread uses the "C" locale while this object exists.
class PointLocale {
public:
    PointLocale() : previous_(uselocale(cLocale())) {}
    ~PointLocale() { uselocale(previous_); }
    PointLocale(const PointLocale&) = delete;
    PointLocale& operator=(const PointLocale&) = delete;

private:
    static locale_t cLocale()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
        return locale;
    }

    locale_t previous_;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

// Removes white space and one sign from the front; true when the sign is a minus.
bool takeSign(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    const bool minus = text.starts_with('-');
    if (minus || text.starts_with('+'))
        text.remove_prefix(1);
    return minus;
}

// Words such as "nan" and "inf" do not count as numbers.
bool startsDecimal(std::string_view text)
{
    if (text.starts_with('.'))
        text.remove_prefix(1);
    return !text.empty() && isDigit(text.front());
}

// The value of a number that from_chars reports as out of range: infinity or 0.0. The
// position of its first nonzero digit decides whether it is too large or too small.
double outOfRange(std::string_view digits)
{
    long long exponent = 0;
    const std::size_t mark = digits.find_first_of("eE");
    if (mark != std::string_view::npos) {
        std::string_view text = digits.substr(mark + 1);
        const bool minus = takeSign(text);
        long long written = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), written);
        if (result.ec == std::errc::result_out_of_range)
            written = std::numeric_limits<std::int32_t>::max();
        exponent = minus ? -written : written;
    }
    const std::string_view mantissa = digits.substr(0, mark);
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
    return exponent + point - first > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

std::string formatNumber(const char* format, double number)
{
    const PointLocale locale;
    char buffer[64];
    const int length = std::snprintf(buffer, sizeof buffer, format, number);
    if (length < static_cast<int>(sizeof buffer))
        return {buffer, static_cast<std::size_t>(std::max(length, 0))};
    std::vector<char> large(static_cast<std::size_t>(length) + 1);
    std::snprintf(large.data(), large.size(), format, number);
    return large.data();
}

std::string sixDecimals(double number)
{
    char buffer[std::numeric_limits<double>::max_exponent10 + 16];  // sign, digits, point and decimals
    const auto result =
        std::to_chars(std::begin(buffer), std::end(buffer), number, std::chars_format::fixed, 6);
    return {buffer, result.ptr};
}

double readNumber(std::string_view text)
{
    const bool minus = takeSign(text);
    if (!startsDecimal(text))
        return 0.0;
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range)
        number = outOfRange(text.substr(0, static_cast<std::size_t>(end - text.data())));
    return minus ? -number : number;
}

bool isNumber(std::string_view text)
{
    takeSign(text);
    text = text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (!startsDecimal(text) || end != text.data() + text.size())
        return false;
    return error == std::errc() || outOfRange(text) == 0.0;
}

std::int32_t readInteger(std::string_view text)
{
    const bool minus = takeSign(text);
    if (text.empty() || !isDigit(text.front()))
        return 0;
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range)
        number = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(minus ? std::max(-number, -kLargest - 1) : std::min(number, kLargest));
}

}  // namespace mf::platform
