// SPDX-License-Identifier: MIT
#include "tools/mfcurve/options.h"

#include <charconv>
#include <cmath>

#include "tools/mfcurve/text.h"

namespace mfcurve {

double finiteNumber(std::string_view text, const std::string& option)
{
    const std::optional<double> number = readNumber(text);
    if (!number || !std::isfinite(*number))
        throw UsageError(fmt::format("{} takes a finite number, not \"{}\"", option, text));
    return *number;
}

double positive(std::string_view text, const std::string& option)
{
    const double number = finiteNumber(text, option);
    if (!(number > 0.0))
        throw UsageError(fmt::format("{} takes a number above 0, not \"{}\"", option, text));
    return number;
}

long long wholeNumber(std::string_view text, const std::string& option, long long least, long long most)
{
    long long number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
    if (!isNumber || number < least || number > most)
        throw UsageError(
            fmt::format("{} takes a whole number from {} to {}, not \"{}\"", option, least, most, text));
    return number;
}

void addFormat(CLI::App& command, Format& format)
{
    addChoice<Format>(command, "--format", "how the result is printed",
                      {{"text", Format::Text}, {"json", Format::Json}}, format);
}

}  // namespace mfcurve
