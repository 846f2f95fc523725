// SPDX-License-Identifier: MIT
#include "tools/mfcurve/columnLine.h"

#include <algorithm>

#include "tools/mfcurve/text.h"

namespace mfcurve {

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view withoutComment(std::string_view line)
{
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
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    if (end == std::string_view::npos)
        text = {};
    else
        text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
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
    return anyUnquoted(line, [&](char c, std::size_t) { return c == wanted; });
}

std::vector<std::string_view> splitAtBlanks(std::string_view line)
{
    std::vector<std::string_view> fields;
    for (line = withoutBlanks(line); !line.empty(); line = withoutBlanks(line)) {
        const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
        fields.push_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return fields;
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
    const std::vector<std::string_view> fields = splitAtBlanks(line);
    const auto isCut = [](std::string_view field) { return field.starts_with(',') || field.ends_with(','); };
    return fields.size() >= 2 && line.find(',') != std::string_view::npos && readDecimal(fields[0]) &&
           readDecimal(fields[1]) && std::none_of(fields.begin(), fields.end(), isCut);
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
