// SPDX-License-Identifier: MIT

#include "mfcurves/curve/problems.h"

#include <algorithm>
#include <utility>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/numbers.h"

namespace mf::curve {
namespace {

bool isCapital(char c)
{
    return c >= 'A' && c <= 'Z';
}

}  // namespace

Place::operator std::string() const
{
    return what == nullptr ? std::string() : std::string(what) + ' ' + std::to_string(number);
}

void report(std::vector<Problem>& problems, std::string where, std::string message)
{
    problems.push_back({Problem::Level::Error, std::move(where), std::move(message)});
}

void reportNotFinite(std::vector<Problem>& problems, Place where, const char* what, double number)
{
    report(problems, where,
           std::string(what) + " is " + shortNumber(number) + ", which is not a finite number");
}

bool hasError(const std::vector<Problem>& problems)
{
    return std::any_of(problems.begin(), problems.end(),
                       [](const Problem& problem) { return problem.level == Problem::Level::Error; });
}

CurveError errorOf(std::vector<Problem> problems)
{
    std::stable_partition(problems.begin(), problems.end(),
                          [](const Problem& problem) { return problem.level == Problem::Level::Error; });
    return CurveError(std::move(problems));
}

std::string shortNumber(double number)
{
    return platform::formatNumber("%.10g", number);
}

std::string oneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '\0' && c < ' '; }, ' ');
    return text;
}

std::string quoted(const std::string& text)
{
    constexpr std::size_t kLongestQuote = 60;
    std::wstring wide = platform::widen(text);
    if (wide.size() > kLongestQuote)
        wide = wide.substr(0, kLongestQuote) + L"...";
    return '"' + oneLine(platform::toUtf8(wide)) + '"';
}

std::string messageOf(std::string sentence)
{
    if (sentence.ends_with('.'))
        sentence.pop_back();
    if (!sentence.empty() && isCapital(sentence[0]) && !(sentence.size() > 1 && isCapital(sentence[1])))
        sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
    return sentence;
}

std::string messageOf(const engine::ParseError& error)
{
    const std::string message = messageOf(error.message);
    return error.expected.empty() ? message : message + "; expected " + error.expected;
}

}  // namespace mf::curve
