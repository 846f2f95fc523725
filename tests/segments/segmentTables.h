// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/platform/encoding.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

// Segment tables as one line of text: "start:end" for each row, followed by "=value" and
// "/name" where they matter.
namespace mf::test {

constexpr int kStartXColumn = 0;
constexpr int kEndXColumn = 1;
constexpr int kValueColumn = 2;
constexpr int kNameColumn = 3;

inline std::unique_ptr<mfSegment_c> makeSegment(const std::string& text)
{
    const auto piece = [&text](char from, const char* until) {
        const std::size_t start = from == '\0' ? 0 : text.find(from);
        if (start == std::string::npos)
            return std::string();
        const std::size_t first = from == '\0' ? 0 : start + 1;
        return text.substr(first, text.find_first_of(until, first) - first);
    };
    const std::string value = piece('=', "/");
    return std::make_unique<mfSegment_c>(std::stod(piece('\0', ":")), std::stod(piece(':', "=/")),
                                         value.empty() ? 0.0 : std::stod(value), piece('/', " ").c_str());
}

inline mfSegment_c& rowOf(const mfFunctionSegments_c& table, int row)
{
    mfSegment_c* segment = nullptr;
    table.selectSegment(row, segment);
    return *segment;
}

// Fills an empty table with exactly these rows, even if addSegment would change them.
inline void fill(mfFunctionSegments_c& table, const std::string& text)
{
    std::istringstream rows(text);
    for (std::string row; rows >> row;) {
        const auto wanted = makeSegment(row);
        auto added = std::make_unique<mfSegment_c>();
        table.addSegment(added.get());
        added.release()->copy(wanted.get());
    }
}

// Appends a row with the profile of that display name; with an empty name, without one.
inline mfSegment_c& addRow(mfFunctionSegments_c& table, mfProfileManager_c& manager, double startX,
                           double endX, double value, const CString& displayName)
{
    auto row = std::make_unique<mfSegment_c>(startX, endX, value, L"");
    if (!displayName.IsEmpty())
        row->setProfileKey(manager.getProfileKeyFromDisplayName(displayName));
    table.addSegment(row.get());
    return *row.release();
}

inline std::string show(const mfFunctionSegments_c& table)
{
    std::ostringstream text;
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const mfSegment_c& segment = rowOf(table, row);
        text << (row > 0 ? " " : "") << segment.getStartX() << ':' << segment.getEndX();
    }
    return text.str();
}

// With values and names.
inline std::string showAll(const mfFunctionSegments_c& table)
{
    std::ostringstream text;
    for (int row = 0; row < table.getSegmentCount(); ++row) {
        const mfSegment_c& segment = rowOf(table, row);
        text << (row > 0 ? " " : "") << segment.getStartX() << ':' << segment.getEndX() << '='
             << segment.getValue() << '/' << platform::toUtf8(segment.getProfileName().View());
    }
    return text.str();
}

inline std::vector<int> reported(const mfFunctionSegments_c& table)
{
    std::vector<int> rows = {-99};  // must be replaced
    table.getUpdateRow(rows);
    return rows;
}

}  // namespace mf::test
