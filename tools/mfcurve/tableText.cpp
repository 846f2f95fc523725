// SPDX-License-Identifier: MIT
#include "tools/mfcurve/tableText.h"

#include <cmath>

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

void addNumber(std::string& text, double number, const TableStyle& style)
{
    const std::size_t start = text.size();
    if (style.decimals && std::isfinite(number))
        text += fixedText(number, *style.decimals);
    else
        addNumberText(text, number);
    if (style.decimalMark == '.')
        return;
    const std::size_t point = text.find('.', start);
    if (point != std::string::npos)
        text[point] = style.decimalMark;
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
    return text.front();
}

std::string tableHeader(const std::vector<Column>& columns, const TableStyle& style)
{
    std::string text;
    for (const Column& column : columns)
        (text += text.empty() ? "" : std::string(1, style.delimiter)) += column.name;
    return text + "\n";
}

void addTableLine(std::string& text, double x, const mf::CurveValues& values,
                  const std::vector<Column>& columns, const TableStyle& style)
{
    bool isFirst = true;
    for (const Column& column : columns) {
        if (!isFirst)
            text += style.delimiter;
        isFirst = false;
        addNumber(text, valueOf(column, x, values), style);
    }
    text += '\n';
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
