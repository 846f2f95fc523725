// SPDX-License-Identifier: MIT
#include "tools/mfcurve/columnText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <numeric>

#include "tools/mfcurve/columnLine.h"
#include "tools/mfcurve/nearest.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

bool beginsWithDigit(std::string_view field)
{
    if (!field.empty() && std::string_view("+-").find(field.front()) != std::string_view::npos)
        field.remove_prefix(1);
    if (!field.empty() && std::string_view(".,").find(field.front()) != std::string_view::npos)
        field.remove_prefix(1);
    return !field.empty() && field.front() >= '0' && field.front() <= '9';
}

}  // namespace

std::string inQuotes(std::string_view text)
{
    constexpr std::size_t kLongest = 60;
    const bool isLong = text.size() > kLongest;
    std::size_t size = std::min(text.size(), kLongest);
    while (isLong && size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
        --size;
    std::string shown(text.substr(0, size));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
    return '"' + shown + (isLong ? "...\"" : "\"");
}

ColumnText::ColumnText(std::string_view bytes, const ColumnForm& form, const ColumnSettings& settings)
    : form_(form), text_(decodedText(bytes))
{
    const std::vector<TextLine> lines = linesWithContent(settings);
    if (!isSeparatorStated_)
        separator_ = separatorOf(lines);
    lines_.reserve(lines.size());
    fields_.reserve(lines.size() * form_.names.size());
    std::vector<std::string_view> fields;
    for (const TextLine& line : lines) {
        split(line, fields);
        if (std::all_of(fields.begin(), fields.end(), [](std::string_view field) { return field.empty(); }))
            continue;
        if (lines_.empty() && isHeader(fields)) {
            headers_.push_back(fields);
            continue;
        }
        if (columns_.empty())
            columns_ = chosenColumns(settings);
        addLine(line.number, fields);
    }
}

std::vector<TextLine> ColumnText::linesWithContent(const ColumnSettings& settings)
{
    std::vector<TextLine> lines;
    lines.reserve(static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1);
    std::string_view rest = text_;
    for (int number = 1; !rest.empty(); ++number) {
        const std::string_view line = takeLine(rest);
        if (number <= settings.skippedLines)
            continue;
        const std::string_view content = withoutComment(line);
        const std::string_view trimmed = withoutBlanks(content);
        if (trimmed.size() == 5 && trimmed.starts_with("sep=") && lines.empty() && !isSeparatorStated_) {
            separator_ = trimmed.back();
            isSeparatorStated_ = true;
        } else if (!trimmed.empty()) {
            lines.push_back({number, content});
        }
    }
    return lines;
}

std::string_view ColumnText::takeQuoted(std::string_view& rest, int line)
{
    std::string field;
    std::size_t i = 1;
    for (; i < rest.size(); ++i) {
        if (rest[i] == '"' && rest.substr(i + 1).starts_with('"'))
            ++i;
        else if (rest[i] == '"')
            break;
        field += rest[i];
    }
    if (i >= rest.size())
        throw TextError(line, "the quote at " + inQuotes(rest) + " is not closed; " + form_.expected);
    rest.remove_prefix(i + 1);
    return withoutBlanks(unquoted_.emplace_back(std::move(field)));
}

void ColumnText::split(const TextLine& line, std::vector<std::string_view>& fields)
{
    fields.clear();
    // A line without a tab among lines with tabs is separated by blanks.
    const bool isAtBlanks = separator_ == ' ' || (separator_ == '\t' && !hasUnquoted(line.content, '\t'));
    if (isAtBlanks && line.content.find('"') == std::string_view::npos)
        return splitAtBlanks(line.content, fields);
    const auto isSkipped = [&](char c) { return isBlank(c) && (c != '\t' || separator_ != '\t'); };
    const auto isEnd = [&](char c) { return isAtBlanks ? isBlank(c) : c == separator_; };
    const auto untilEnd = [&](std::string_view text) {
        return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isEnd) - text.begin());
    };
    std::string_view rest = line.content;
    for (;;) {
        while (!rest.empty() && isSkipped(rest.front()))
            rest.remove_prefix(1);
        if (rest.starts_with('"')) {
            fields.push_back(takeQuoted(rest, line.number));
            const std::size_t end = untilEnd(rest);
            if (!withoutBlanks(rest.substr(0, end)).empty())
                throw TextError(line.number, inQuotes(rest.substr(0, end)) + " follows a closing quote; " +
                                                 form_.expected);
            rest.remove_prefix(end);
        } else if (!isAtBlanks || !rest.empty()) {
            const std::size_t end = untilEnd(rest);
            fields.push_back(withoutBlanks(rest.substr(0, end)));
            rest.remove_prefix(end);
        }
        if (rest.empty())
            return;
        rest.remove_prefix(1);
    }
}

bool ColumnText::isHeader(const std::vector<std::string_view>& fields) const
{
    const auto isData = [&](std::string_view field) {
        return readDecimal(field).has_value() || (form_.isData && form_.isData(field));
    };
    return !beginsWithDigit(fields.front()) && std::none_of(fields.begin(), fields.end(), isData);
}

std::optional<std::size_t> ColumnText::columnNamed(std::string_view name) const
{
    for (const auto& header : headers_) {
        const auto found = std::find_if(header.begin(), header.end(),
                                        [&](std::string_view field) { return equalsInAnyCase(field, name); });
        if (found != header.end())
            return static_cast<std::size_t>(found - header.begin());
    }
    return std::nullopt;
}

std::size_t ColumnText::columnOf(const std::string& name) const
{
    std::size_t number = 0;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
    if (result.ec == std::errc() && result.ptr == name.data() + name.size() && number > 0)
        return number - 1;
    if (const auto column = columnNamed(name))
        return *column;
    std::vector<std::string> known;
    for (const auto& header : headers_)
        known.insert(known.end(), header.begin(), header.end());
    std::erase(known, "");
    throw TextError(
        0, fmt::format("there is no column {}{}; --csv-columns takes numbers from 1 or names in a header",
                       inQuotes(name), nearestAdvice(name, known)));
}

// The columns of the settings, those of the output of `table`, or the first columns.
std::vector<std::size_t> ColumnText::chosenColumns(const ColumnSettings& settings)
{
    std::vector<std::size_t> columns;
    if (!settings.columns.empty() && settings.columns.size() != form_.names.size())
        throw TextError(0,
                        fmt::format("--csv-columns takes {} columns here, {}, and not {}", form_.names.size(),
                                    fmt::join(form_.names, ", "), settings.columns.size()));
    for (const std::string& name : settings.columns)
        columns.push_back(columnOf(name));
    if (!columns.empty())
        return columns;
    for (const std::string& name : form_.also) {
        if (const auto column = columnNamed(name))
            columns.push_back(*column);
    }
    if (!columns.empty() && columns.size() == form_.also.size())
        return columns;
    areColumnsFirst_ = true;
    columns.resize(form_.names.size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    return columns;
}

void ColumnText::addLine(int number, const std::vector<std::string_view>& fields)
{
    const std::size_t first = fields_.size();
    for (std::size_t column : columns_) {
        if (column >= fields.size())
            break;
        fields_.push_back(fields[column]);
    }
    while (fields_.size() > first + 1 && fields_.back().empty())
        fields_.pop_back();
    lines_.push_back({number, first, fields_.size() - first});
    const auto isTooMuch = [](std::string_view field) { return !field.empty(); };
    if (areColumnsFirst_ && fields.size() > columns_.size() &&
        std::any_of(fields.begin() + static_cast<std::ptrdiff_t>(columns_.size()), fields.end(), isTooMuch))
        throw TextError(number, fmt::format("{} of {} fields; {}{}", fields.size(), columns_.size(),
                                            form_.expected, form_.advice));
}

double ColumnText::number(const ColumnLine& line, std::size_t column)
{
    const std::string& name = form_.names[column];
    const std::string_view field = column < line.fields ? fieldsOf(line)[column] : std::string_view();
    if (field.empty() && !areColumnsFirst_)
        throw TextError(line.number, fmt::format("the {} is missing: column {} is empty; {}", name,
                                                 columns_[column] + 1, form_.expected));
    if (field.empty())
        throw TextError(line.number, fmt::format("the {} is missing: {} of {} fields; {}", name, line.fields,
                                                 form_.names.size(), form_.expected));
    const std::optional<double> number = readDecimal(field);
    if (!number || !std::isfinite(*number))
        throw TextError(line.number, fmt::format("the {} {} is not a finite number; {}", name,
                                                 inQuotes(field), form_.expected));
    const auto mark = std::find_if(field.begin(), field.end(), [](char c) { return c == '.' || c == ','; });
    if (mark == field.end())
        return *number;
    if (decimal_.mark == 0)
        decimal_ = {*mark, line.number};
    if (decimal_.mark != *mark)
        throw TextError(
            line.number,
            fmt::format("the {} {} has a decimal {}, but line {} has a decimal {}; a file has one of them",
                        name, inQuotes(field), *mark == ',' ? "comma" : "point", decimal_.line,
                        decimal_.mark == ',' ? "comma" : "point"));
    return *number;
}

}  // namespace mfcurve
