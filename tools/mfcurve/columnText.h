// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mfcurve/columnLine.h"
#include "tools/mfcurve/textDecoding.h"

namespace mfcurve {

/// Which lines and columns of a file are read: --csv-columns and --csv-skip.
struct ColumnSettings {
    std::vector<std::string> columns;  ///< numbers from 1, or names in a header; empty: the first columns
    int skippedLines = 0;              ///< at the start of the file
};

/// What a caller expects of each line.
struct ColumnForm {
    std::vector<std::string> names;  ///< one for each column: "x", "y"
    std::vector<std::string> also;   ///< the same columns in the output of `table`: "x", "value"
    std::string expected;            ///< "a point is ...", the end of messages
    std::string advice;              ///< the end of a message about too many columns; may be empty
    std::function<bool(std::string_view)> isData;  ///< texts that, like a number, are not in a header
};

/// A line with data.
struct ColumnLine {
    int number = 0;  ///< in the file, from 1
    std::size_t firstField = 0;
    std::size_t fields = 0;
};

/// The columns of a text, separated by commas, semicolons, tabs or blanks, with the same separator in the
/// whole text. Blank lines and text after a "#" are ignored.
///
/// Headers are lines before the data in which no field is a number or other data; there may be several. A
/// line whose first field begins with a digit, but is not a number, is an error and not a header.
/// The separator is that of a first line "sep=;", or else the first of semicolon, tab, comma and blank that
/// occurs. A comma is a decimal comma when another separator is used, and inside quotes. A text with both
/// decimal points and decimal commas is refused.
class ColumnText {
public:
    /// Throws TextError with the line, what was found and what was expected.
    ColumnText(std::string_view bytes, const ColumnForm& form, const ColumnSettings& settings);
    ColumnText(const ColumnText&) = delete;  // the fields refer to the text
    ColumnText& operator=(const ColumnText&) = delete;

    const std::vector<ColumnLine>& lines() const { return lines_; }

    /// The chosen fields of a line in order, without quotes and blanks around them. Fewer than the chosen
    /// columns if the line does not have all of them.
    std::span<const std::string_view> fieldsOf(const ColumnLine& line) const
    {
        return {fields_.data() + line.firstField, line.fields};
    }

    /// The finite number in a column of a line. Throws TextError when that field is missing or is not one.
    double number(const ColumnLine& line, std::size_t column);

private:
    struct DecimalMark {
        char mark = 0;
        int line = 0;
    };

    std::vector<TextLine> linesWithContent(const ColumnSettings& settings);
    void split(const TextLine& line, std::vector<std::string_view>& fields);
    std::string_view takeQuoted(std::string_view& rest, int line);
    bool isHeader(const std::vector<std::string_view>& fields) const;
    std::vector<std::size_t> chosenColumns(const ColumnSettings& settings);
    std::size_t columnOf(const std::string& name) const;
    std::optional<std::size_t> columnNamed(std::string_view name) const;
    void addLine(int number, const std::vector<std::string_view>& fields);

    const ColumnForm& form_;
    std::string text_;
    std::deque<std::string> unquoted_;  // quoted fields whose content differs from the text
    char separator_ = ',';
    bool isSeparatorStated_ = false;
    std::vector<std::vector<std::string_view>> headers_;
    bool areColumnsFirst_ = false;  // by default and not by choice, so more fields are an error
    std::vector<std::size_t> columns_;
    std::vector<ColumnLine> lines_;
    std::vector<std::string_view> fields_;  // of all lines, one line after the other
    DecimalMark decimal_;
};

/// A text for a message: quoted, on one line, and shortened between characters.
std::string inQuotes(std::string_view text);

}  // namespace mfcurve
