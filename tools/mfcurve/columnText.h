// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mfcurve/columnLine.h"
#include "tools/mfcurve/textDecoding.h"

namespace mfcurve {

/// Which lines and columns of a file count: --csv-columns and --csv-skip.
struct ColumnSettings {
    std::vector<std::string> columns;  ///< numbers from 1, or names in a header; none: the first columns
    int skippedLines = 0;              ///< at the start of the file
};

/// What a caller wants of each line.
struct ColumnForm {
    std::vector<std::string> names;  ///< one for each column: "x", "y"
    std::vector<std::string> also;   ///< the same columns in the output of `table`: "x", "value"
    std::string expected;            ///< "a point is ...", the end of messages
    std::string advice;              ///< to lines with more columns, the end of a message; may be empty
    std::function<bool(std::string_view)> isData;  ///< a text that, like a number, makes a line no header
};

/// A line that holds data: the wanted fields in order, without quotes and blanks around them. Fields that
/// the line does not have are missing at the end.
struct ColumnLine {
    int number = 0;  ///< in the file, from 1
    std::vector<std::string_view> fields;
};

/// The columns of a text: separated by commas, semicolons, tabs or blanks, the same in the whole text. Blank
/// lines and what follows a "#" do not count.
///
/// Headers are the lines before the data in which no field is a number or other data; any number of them. A
/// first field that begins with a digit, and is not a number, is a slip and not a header.
/// The separator is that of a first line "sep=;", or else the first of semicolon, tab, comma and blank that
/// occurs. Commas are decimal ones where another separator is in use, and inside quotes. A text that uses
/// decimal points and decimal commas is refused.
class ColumnText {
public:
    /// Throws TextError with the line, what was found and what was expected.
    ColumnText(std::string_view bytes, const ColumnForm& form, const ColumnSettings& settings);
    ColumnText(const ColumnText&) = delete;  // the fields refer to the text
    ColumnText& operator=(const ColumnText&) = delete;

    const std::vector<ColumnLine>& lines() const { return lines_; }

    /// The finite number in a column of a line. Throws TextError where there is none.
    double number(const ColumnLine& line, std::size_t column);

private:
    struct DecimalMark {
        char mark = 0;
        int line = 0;
    };

    std::vector<TextLine> linesWithContent(const ColumnSettings& settings);
    std::vector<std::string_view> split(const TextLine& line);
    std::string_view takeQuoted(std::string_view& rest, int line);
    bool isHeader(const std::vector<std::string_view>& fields) const;
    std::vector<std::size_t> chosenColumns(const ColumnSettings& settings);
    std::size_t columnOf(const std::string& name) const;
    std::optional<std::size_t> columnNamed(std::string_view name) const;
    ColumnLine wantedFields(int number, const std::vector<std::string_view>& fields) const;

    const ColumnForm& form_;
    std::string text_;
    std::deque<std::string> unquoted_;  // fields that are not in the text as they are
    char separator_ = ',';
    bool isSeparatorStated_ = false;
    std::vector<std::vector<std::string_view>> headers_;
    bool areColumnsFirst_ = false;  // nobody chose them, so a line with more fields is odd
    std::vector<std::size_t> columns_;
    std::vector<ColumnLine> lines_;
    DecimalMark decimal_;
};

/// A text as a message can show it: not too long, on one line, its characters whole, in quotes.
std::string inQuotes(std::string_view text);

}  // namespace mfcurve
