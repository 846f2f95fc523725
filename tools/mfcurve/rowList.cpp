// SPDX-License-Identifier: MIT

#include "tools/mfcurve/rowList.h"

#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/host.h"
#include "tools/mfcurve/rowsFile.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

bool isProfile(std::string_view name)
{
    const mfProfileKey_c key = profileManager().getProfileKeyFromDisplayName(toCString(name));
    return profileManager().findProfile(key) != nullptr;
}

Failure failureIn(const std::string& name, const TextError& error)
{
    const std::string line = error.line() == 0 ? "" : ":" + std::to_string(error.line());
    return {kWrong, name + line + ": " + error.what()};
}

void addRow(CurveRows& list, const FileRow& row, const std::string& where)
{
    const double start = list.rows.empty() ? list.startX : list.rows.back().end;
    if (!(row.end > start))
        throw Failure(kWrong, where + ": the row ends at " + numberText(row.end) + ", but it starts at " +
                                  numberText(start) + "; rows are in ascending order of x");
    list.rows.push_back({row.end, row.value, row.profile, where});
}

void addFile(CurveRows& list, const CurveOptions& options)
{
    const std::string name = inputName(options.rowsFile);
    const std::string bytes = readInput(options.rowsFile);
    try {
        const RowList read = parseRows(bytes, isProfile, options.columns);
        if (read.start && !options.start.empty())
            throw TextError(read.start->line, "the line states the start, and so does --start");
        if (read.start) {
            list.startX = read.start->x;
            list.startValue = read.start->value;
        }
        for (const FileRow& row : read.rows)
            addRow(list, row, name + ":" + std::to_string(row.line));
    } catch (const TextError& error) {
        throw failureIn(name, error);
    }
}

}  // namespace

CurveRows readRows(const CurveOptions& options)
{
    CurveRows list;
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
    for (const std::string& row : options.rows) {
        const std::string where = "--row \"" + row + "\"";
        try {
            addRow(list, parseRow(row, isProfile), where);
        } catch (const TextError& error) {
            throw Failure(kWrong, where + ": " + error.what());
        }
    }
    return list;
}

}  // namespace mfcurve
