// SPDX-License-Identifier: MIT
#include "tools/mfcurve/tableText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <string_view>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/choices.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

double valueOf(const Column& column, double x, const mf::CurveValues& values)
{
    return column.order < 0 ? x : values[column.order];
}

std::string withMark(std::string number, char decimalMark)
{
    std::replace(number.begin(), number.end(), '.', decimalMark);
    return number;
}

}  // namespace

std::array<Column, 5> allColumns()
{
    return {{{"x", -1}, {"value", 0}, {"d1", 1}, {"d2", 2}, {"d3", 3}}};
}

std::vector<Column> namedColumns(const mf::CurveDefinition& definition)
{
    const auto all = allColumns();
    return {all.begin(), all.begin() + 1 + mf::drawing::namedOrders(definition)};
}

std::vector<Column> readColumns(const std::string& text)
{
    Choices<Column> choices;
    for (const Column& column : allColumns())
        choices.emplace_back(column.name, column);
    std::vector<Column> columns;
    for (const std::string& name : splitText(text, ','))
        columns.push_back(chosen(name, "--columns", choices));
    return columns;
}

char readDelimiter(const std::string& text)
{
    if (text == "tab" || text == "\\t")
        return '\t';
    if (text.size() != 1)
        throw UsageError("--delimiter takes one character or tab, not \"" + text + "\"");
    const bool isOfNumbers = std::isalnum(static_cast<unsigned char>(text.front())) != 0 ||
                             std::string_view("+-\"\n\r").find(text.front()) != std::string_view::npos;
    if (isOfNumbers)
        throw UsageError("--delimiter takes a character that is in no number and no name, not \"" + text +
                         "\"");
    return text.front();
}

TableLines::TableLines(const std::vector<Column>& columns, const TableStyle& style) : style_(style)
{
    for (const Column& column : columns)
        cells_.push_back({column, std::numeric_limits<double>::quiet_NaN(), 0, {}});
}

std::string TableLines::header() const
{
    std::string text;
    for (const Cell& cell : cells_)
        (text += text.empty() ? "" : std::string(1, style_.delimiter)) += cell.column.name;
    return text + "\n";
}

void TableLines::write(Cell& cell, double number) const
{
    cell.number = number;
    char* const end = writeNumber(cell.text, number);
    if (style_.decimalMark != '.')
        std::replace(cell.text, end, '.', style_.decimalMark);
    cell.size = static_cast<std::size_t>(end - cell.text);
}

void TableLines::add(std::string& text, double x, const mf::CurveValues& values)
{
    for (Cell& cell : cells_) {
        const double number = valueOf(cell.column, x, values);
        if (style_.decimals && std::isfinite(number)) {
            text += withMark(fixedText(number, *style_.decimals), style_.decimalMark);
        } else {
            if (number != cell.number)
                write(cell, number);
            text.append(cell.text, cell.size);
        }
        text += style_.delimiter;
    }
    text.back() = '\n';
}

void addJsonLine(std::string& text, double x, const mf::CurveValues& values,
                 const std::vector<Column>& columns, bool isFirst)
{
    text += isFirst ? "\n{" : ",\n{";
    for (std::size_t i = 0; i < columns.size(); ++i)
        text += fmt::format("{}\"{}\": {}", i == 0 ? "" : ", ", columns[i].name,
                            jsonNumber(valueOf(columns[i], x, values)));
    text += '}';
}

}  // namespace mfcurve
