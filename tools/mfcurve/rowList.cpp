#include "tools/mfcurve/rowList.h"

#include <cmath>
#include <utility>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kRowForm = "a row is \"end x, value, profile\", such as \"90, 10, Cycloidal\"";

double numberOf(const std::string& text, const std::string& where, const std::string& what)
{
    const std::optional<double> number = readNumber(text);
    if (!number || !std::isfinite(*number))
        throw Failure(kWrong,
                      where + ": the " + what + " \"" + text + "\" is not a finite number; " + kRowForm);
    return *number;
}

void addStart(RowList& list, const std::vector<std::string>& fields, const std::string& where)
{
    list.startX = numberOf(fields.front(), where, "start x");
    list.startValue = numberOf(fields.back(), where, "start value");
}

void addRow(RowList& list, const std::vector<std::string>& fields, const std::string& where)
{
    if (fields.size() != 3)
        throw Failure(kWrong, where + ": " + std::to_string(fields.size()) + " of 3 fields; " + kRowForm);
    if (fields.back().empty())
        throw Failure(kWrong, where + ": the profile is missing; " + kRowForm);
    const double end = numberOf(fields[0], where, "end x");
    const double value = numberOf(fields[1], where, "value");
    const double start = list.rows.empty() ? list.startX : list.rows.back().end;
    if (!(end > start))
        throw Failure(kWrong, where + ": the row ends at " + numberText(end) + ", but it starts at " +
                                  numberText(start) + "; rows stand in ascending order of x");
    list.rows.push_back({end, value, fields[2], where});
}

// The first line may name the columns. What begins like a number is taken for a
// row, so that a slip of the pen is not lost in silence.
bool isHeader(const std::string& content, const std::string& firstField)
{
    return !readNumber(firstField) &&
           std::string_view("0123456789+-.,;").find(content.front()) == std::string_view::npos;
}

void addFile(RowList& list, const CurveOptions& options)
{
    const std::string name = inputName(options.rowsFile);
    const std::string text = readInput(options.rowsFile);
    const std::size_t mark = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    int number = 0;
    bool mayBeHeader = true;
    bool mayBeStart = true;
    for (const std::string& line : splitText(std::string_view(text).substr(mark), '\n')) {
        ++number;
        const std::string content(trimmed(std::string_view(line).substr(0, line.find('#'))));
        if (content.empty())
            continue;
        const std::vector<std::string> fields = splitText(content, ',');
        const std::string where = name + ":" + std::to_string(number);
        if (std::exchange(mayBeHeader, false) && isHeader(content, fields.front()))
            continue;
        if (!std::exchange(mayBeStart, false) || fields.size() != 2)
            addRow(list, fields, where);
        else if (options.start.empty())
            addStart(list, fields, where);
        else
            throw Failure(kWrong, where + ": the line states the start, and so does --start");
    }
}

}  // namespace

RowList readRows(const CurveOptions& options)
{
    RowList list;
    if (!options.start.empty()) {
        const std::vector<std::string> fields = splitText(options.start, ',');
        if (fields.size() > 2)
            throw Failure(kWrong, "--start takes \"value\" or \"x, value\", not \"" + options.start + "\"");
        if (fields.size() == 2)
            list.startX = finiteNumber(fields.front(), "--start");
        list.startValue = finiteNumber(fields.back(), "--start");
    }
    if (!options.rowsFile.empty())
        addFile(list, options);
    for (const std::string& row : options.rows)
        addRow(list, splitText(row, ','), "--row \"" + row + "\"");
    if (list.rows.empty())
        throw Failure(kWrong, inputName(options.rowsFile) + " holds no rows; " + kRowForm);
    return list;
}

}  // namespace mfcurve
