// SPDX-License-Identifier: MIT
#include "tools/mfcurve/steps.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fmt/format.h>
#include <string>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// A double as a whole number times a power of ten, by its shortest decimal digits.
struct Decimal {
    long long digits = 0;
    int exponent = 0;
};

Decimal decimalOf(double number)
{
    char buffer[40];
    const auto end =
        std::to_chars(std::begin(buffer), std::end(buffer), number, std::chars_format::scientific).ptr;
    const std::string_view shortest(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t letter = shortest.find('e');
    std::string digits(shortest.substr(0, letter));
    const std::size_t point = digits.find('.');
    const int decimals = point == std::string::npos ? 0 : static_cast<int>(digits.size() - point - 1);
    std::erase(digits, '.');
    Decimal decimal;
    decimal.digits = std::stoll(digits);
    decimal.exponent = std::stoi(std::string(shortest.substr(letter + 1))) - decimals;
    return decimal;
}

// The digits of a decimal at a smaller exponent; std::nullopt when they are too many.
std::optional<long long> scaled(const Decimal& decimal, int exponent)
{
    constexpr long long kMost = 100'000'000'000'000'000;
    long long digits = decimal.digits;
    for (int i = decimal.exponent; i > exponent && digits != 0; --i) {
        if (std::llabs(digits) > kMost / 10)
            return std::nullopt;
        digits *= 10;
    }
    return digits;
}

// The double nearest to digits * 10^exponent. If both factors are exact doubles, one multiplication or
// division rounds correctly.
double nearest(long long digits, int exponent)
{
    constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr int kMostExponent = 22;
    constexpr long long kMostDigits = 1LL << 53;
    if (std::abs(exponent) <= kMostExponent && std::llabs(digits) <= kMostDigits) {
        const auto exact = static_cast<double>(digits);
        return exponent < 0 ? exact / kPowers[-exponent] : exact * kPowers[exponent];
    }
    return readNumber(fmt::format("{}e{}", digits, exponent)).value_or(0.0);
}

}  // namespace

Steps Steps::byCount(mf::Range range, std::size_t count, bool isOpen)
{
    Steps steps;
    steps.range_ = range;
    steps.count_ = count;
    steps.parts_ = isOpen ? count : std::max<std::size_t>(count - 1, 1);
    return steps;
}

Steps Steps::byStep(mf::Range range, double step, bool isOpen, std::size_t most)
{
    Steps steps;
    steps.range_ = range;
    steps.step_ = step;
    steps.parts_ = 0;
    const Decimal start = decimalOf(range.from);
    const Decimal increment = decimalOf(step);
    steps.exponent_ = std::min(start.exponent, increment.exponent);
    const auto startDigits = scaled(start, steps.exponent_);
    const auto incrementDigits = scaled(increment, steps.exponent_);
    const double estimate = (range.to - range.from) / step + 2.0;
    if (!(estimate <= static_cast<double>(most)))
        throw UsageError(fmt::format("--step {} would make {} lines, and {} is the most", numberText(step),
                                     shortNumberText(std::floor(estimate - 1.0), 9), most));
    constexpr double kMostDigits = 9e18;
    if (startDigits && incrementDigits &&
        std::fabs(static_cast<double>(*startDigits)) + estimate * static_cast<double>(*incrementDigits) <
            kMostDigits) {
        steps.isDecimal_ = true;
        steps.start_ = *startDigits;
        steps.increment_ = *incrementDigits;
    }
    steps.count_ = static_cast<std::size_t>(estimate);
    const auto isInside = [&](double x) { return isOpen ? x < range.to : x <= range.to; };
    while (steps.count_ > 1 && !isInside(steps.at(steps.count_ - 1)))
        --steps.count_;
    return steps;
}

double Steps::at(std::size_t index) const
{
    if (isDecimal_)
        return nearest(start_ + static_cast<long long>(index) * increment_, exponent_);
    if (parts_ == 0)
        return std::fma(static_cast<double>(index), step_, range_.from);
    if (index == parts_)
        return range_.to;
    const long double part =
        static_cast<long double>(index) * (static_cast<long double>(range_.to) - range_.from);
    return static_cast<double>(range_.from + part / static_cast<long double>(parts_));
}

}  // namespace mfcurve
