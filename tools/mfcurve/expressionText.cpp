// SPDX-License-Identifier: MIT
#include "tools/mfcurve/expressionText.h"

#include <algorithm>
#include <fmt/format.h>

#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The length of the bracketed text at the start of a text, brackets included.
std::size_t bracketLength(std::string_view text)
{
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        depth += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (depth == 0)
            return i + 1;
    }
    return text.size();
}

// The number, name, call or bracketed text at the start of a text.
std::string_view operand(std::string_view text)
{
    if (text.empty())
        return {};
    std::size_t length = text.front() == '(' ? 0 : wordLength(text);
    if (text.substr(length).starts_with('('))
        length += bracketLength(text.substr(length));
    return text.substr(0, length);
}

bool isZero(const mf::CurveDefinition& definition, std::string_view text, double x)
{
    mf::CurveDefinition part = definition;
    std::get<mf::CurveDefinition::Expression>(part.shape).text = std::string(text);
    try {
        return mf::Curve(part)(x) == 0.0;
    } catch (const mf::CurveError&) {
        return false;  // "1/-2" has no operand here
    }
}

}  // namespace

std::size_t wordLength(std::string_view text)
{
    std::size_t i = 1;
    if (text.front() == '{')
        return std::min(text.find('}'), text.size() - 1) + 1;
    if (isLetter(text.front())) {
        while (i < text.size() && (isLetter(text[i]) || isDigit(text[i])))
            ++i;
        return i;
    }
    if (!isDigit(text.front()) && text.front() != '.')
        return 1;
    while (i < text.size() && (isDigit(text[i]) || text[i] == '.'))
        ++i;
    std::size_t exponent = i + 1;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
            ++exponent;
        if (exponent < text.size() && isDigit(text[exponent]))
            i = exponent;
        while (i < text.size() && isDigit(text[i]))
            ++i;
    }
    return i;
}

std::string zeroDivisor(const mf::Curve& curve, double x)
{
    const auto* shape = std::get_if<mf::CurveDefinition::Expression>(&curve.definition().shape);
    if (shape == nullptr)
        return "";
    std::string_view rest = shape->text;
    for (std::size_t sign = rest.find('/'); sign != std::string_view::npos; sign = rest.find('/')) {
        rest = trimmed(rest.substr(sign + 1));
        const std::string_view divisor = operand(rest);
        if (isZero(curve.definition(), divisor, x))
            return readNumber(divisor) ? "; it divides by 0"
                                       : fmt::format("; it divides by {}, which is 0 there", divisor);
    }
    return "";
}

}  // namespace mfcurve
