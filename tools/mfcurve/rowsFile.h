// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mfcurve/columnText.h"

namespace mfcurve {

/// One segment as a user writes it.
struct FileRow {
    double end;
    double value;  ///< at the end
    std::string profile;
    int line;  ///< in the file, from 1; 0 for one of the command line
};

/// Where a curve of rows begins, if the file states it.
struct FileStart {
    double x;
    double value;
    int line;
};

struct RowList {
    std::optional<FileStart> start;
    std::vector<FileRow> rows;
};

/// Reads one row per line: end x, value, profile. A first line of two numbers is the start. `isProfile` says
/// which texts are profiles: a line with one is not a header. Throws TextError with the line, what was found
/// and what was expected.
RowList parseRows(std::string_view bytes, const std::function<bool(std::string_view)>& isProfile,
                  const ColumnSettings& settings = {});

/// Reads one such row from the command line.
FileRow parseRow(std::string_view text, const std::function<bool(std::string_view)>& isProfile);

}  // namespace mfcurve
