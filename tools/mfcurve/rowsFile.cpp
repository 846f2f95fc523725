// SPDX-License-Identifier: MIT
#include "tools/mfcurve/rowsFile.h"

#include <fmt/format.h>

#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

ColumnForm rowForm(const std::function<bool(std::string_view)>& isProfile, const char* advice)
{
    return {{"end x", "value", "profile"},
            {},
            "a row is \"end x, value, profile\", such as \"90, 10, Half-Cosine\"",
            advice,
            isProfile};
}

FileRow rowOf(ColumnText& text, const ColumnLine& line, const ColumnForm& form)
{
    const double end = text.number(line, 0);
    const double value = text.number(line, 1);
    if (line.fields < 3)
        throw TextError(line.number, fmt::format("the profile is missing: 2 of 3 fields; {}", form.expected));
    return {end, value, std::string(text.fieldsOf(line)[2]), line.number};
}

}  // namespace

RowList parseRows(std::string_view bytes, const std::function<bool(std::string_view)>& isProfile,
                  const ColumnSettings& settings)
{
    const ColumnForm form = rowForm(isProfile, "; --csv-columns chooses among more, such as 1,2,4");
    ColumnText text(bytes, form, settings);
    RowList list;
    for (const ColumnLine& line : text.lines()) {
        const bool isFirst = &line == &text.lines().front();
        if (isFirst && line.fields == 2 && readDecimal(text.fieldsOf(line)[1]))
            list.start = FileStart{text.number(line, 0), text.number(line, 1), line.number};
        else
            list.rows.push_back(rowOf(text, line, form));
    }
    if (list.rows.empty())
        throw TextError(0, "there are no rows; " + form.expected);
    return list;
}

FileRow parseRow(std::string_view row, const std::function<bool(std::string_view)>& isProfile)
{
    const ColumnForm form = rowForm(isProfile, "");
    ColumnText text(row, form, {});
    if (text.lines().size() != 1)
        throw TextError(0, inQuotes(row) + " is not a row; " + form.expected);
    return rowOf(text, text.lines().front(), form);
}

}  // namespace mfcurve
