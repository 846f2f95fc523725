// SPDX-License-Identifier: MIT
#include "tools/mfcurve/columnLine.h"

#include <algorithm>

#include "tools/mfcurve/text.h"

namespace mfcurve {

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view withoutComment(std::string_view line)
{
    if (line.find('#') == std::string_view::npos)
        return line;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            isQuoted = !isQuoted;
        else if (line[i] == '#' && !isQuoted)
            return line.substr(0, i);
    }
    return line;
}

std::string_view takeLine(std::string_view& text)
{
    const auto end = std::find_if(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; });
    const std::string_view line(text.begin(), end);
    text.remove_prefix(line.size());
    text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
    return line;
}

namespace {

// Calls `see` with each character outside quotes and its position.
template <class See>
bool anyUnquoted(std::string_view line, See see)
{
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && see(line[i], i))
            return true;
    }
    return false;
}

}  // namespace

bool hasUnquoted(std::string_view line, char wanted)
{
    return line.find(wanted) != std::string_view::npos &&
           anyUnquoted(line, [&](char c, std::size_t) { return c == wanted; });
}

void splitAtBlanks(std::string_view line, std::vector<std::string_view>& fields)
{
    for (line = withoutBlanks(line); !line.empty(); line = withoutBlanks(line)) {
        const auto end = std::find_if(line.begin(), line.end(), isBlank);
        fields.push_back({line.begin(), end});
        line = {end, line.end()};
    }
}

namespace {

// A tab next to a comma only aligns the columns.
bool hasTabBesideComma(std::string_view line)
{
    return anyUnquoted(line, [&](char c, std::size_t i) {
        return c == '\t' && (withoutBlanks(line.substr(0, i)).ends_with(',') ||
                             withoutBlanks(line.substr(i)).starts_with(','));
    });
}

// "1,5 2,5": with a comma as the separator, "5 2" would be a field, which is not a number.
bool hasDecimalCommasBetweenBlanks(std::string_view line)
{
    if (line.find(',') == std::string_view::npos || std::none_of(line.begin(), line.end(), isBlank))
        return false;
    std::vector<std::string_view> fields;
    splitAtBlanks(line, fields);
    const auto isCut = [](std::string_view field) { return field.starts_with(',') || field.ends_with(','); };
    return fields.size() >= 2 && readDecimal(fields[0]) && readDecimal(fields[1]) &&
           std::none_of(fields.begin(), fields.end(), isCut);
}

}  // namespace

char separatorOf(const std::vector<TextLine>& lines)
{
    const auto any = [&](auto holds) {
        return std::any_of(lines.begin(), lines.end(),
                           [&](const TextLine& line) { return holds(line.content); });
    };
    if (any([](std::string_view line) { return hasUnquoted(line, ';'); }))
        return ';';
    if (any([](std::string_view line) { return hasUnquoted(withoutBlanks(line), '\t'); }) &&
        !any(hasTabBesideComma))
        return '\t';
    if (any([](std::string_view line) { return hasUnquoted(line, ','); }) &&
        !any(hasDecimalCommasBetweenBlanks))
        return ',';
    return ' ';
}

}  // namespace mfcurve
