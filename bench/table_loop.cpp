// SPDX-License-Identifier: MIT

// table_loop COUNT CURVE: the least work of `mfcurve table --samples COUNT` for a curve. Computes the numbers
// of the table first; then a bare loop formats them with std::to_chars, as CSV, and writes them to standard
// output. Prints the processor time of that loop in milliseconds on standard error. CURVE is a document, or
// the text of an expression from 0 to 10.

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"

namespace {

constexpr std::size_t kNumbers = 5;  // of each line
constexpr std::size_t kBuffer = 1 << 16;
constexpr std::size_t kLongestLine = kNumbers * 32;

mf::Curve curveOf(const std::string& text)
{
    if (text.ends_with(".xml"))
        return mf::Curve::read(text);
    mf::CurveDefinition definition;
    definition.shape = mf::ExpressionShape{text, 0.0, 10.0};
    return mf::Curve(definition);
}

std::vector<double> numbersOf(const mf::Curve& curve, std::size_t count)
{
    std::vector<double> numbers;
    numbers.reserve(kNumbers * count);
    const long double first = curve.firstX();
    const long double span = curve.lastX() - first;
    for (std::size_t i = 0; i < count; ++i) {
        const auto part = static_cast<long double>(i) * span / static_cast<long double>(count - 1);
        const auto x = static_cast<double>(first + part);
        const mf::CurveValues values = curve.at(x);
        numbers.insert(numbers.end(), {x, values.y, values.d1, values.d2, values.d3});
    }
    return numbers;
}

void write(const std::vector<double>& numbers)
{
    std::vector<char> buffer(kBuffer + kLongestLine);
    char* end = buffer.data();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        end = std::to_chars(end, end + 32, numbers[i]).ptr;
        *end++ = i % kNumbers == kNumbers - 1 ? '\n' : ',';
        if (end - buffer.data() >= static_cast<std::ptrdiff_t>(kBuffer)) {
            std::fwrite(buffer.data(), 1, static_cast<std::size_t>(end - buffer.data()), stdout);
            end = buffer.data();
        }
    }
    std::fwrite(buffer.data(), 1, static_cast<std::size_t>(end - buffer.data()), stdout);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const std::vector<double> numbers = numbersOf(curveOf(argv[2]), std::strtoull(argv[1], nullptr, 10));
    const std::clock_t start = std::clock();
    write(numbers);
    std::fprintf(stderr, "%.3f\n", 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
}
