// SPDX-License-Identifier: MIT

// Any text may be refused as a list of points or rows; none may crash. Accepted points ascend in x, are
// finite, and read back as the same points after writing. The same holds for rows.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/mfcurve/pointsFile.h"
#include "tools/mfcurve/rowsFile.h"
#include "tools/mfcurve/text.h"

namespace {

constexpr std::size_t kLongestText = 4096;  // longer texts find nothing new, slowly

void require(bool holds)
{
    if (!holds)
        std::abort();
}

bool isProfile(std::string_view text)
{
    return text == "Cubic";
}

template <class Parse>
auto accepted(Parse parse) -> std::optional<decltype(parse())>
{
    try {
        return parse();
    } catch (const mfcurve::TextError& error) {
        require(error.what()[0] != '\0' && error.line() >= 0);
        return std::nullopt;
    }
}

void checkPoints(std::string_view text)
{
    const auto list = accepted([&] { return mfcurve::parsePoints(text); });
    if (!list)
        return;
    require(!list->points.empty());
    std::string written;
    const mfcurve::FilePoint* previous = nullptr;
    for (const mfcurve::FilePoint& point : list->points) {
        require(std::isfinite(point.x) && std::isfinite(point.y) && point.line > 0);
        require(previous == nullptr || previous->x < point.x);
        written += mfcurve::numberText(point.x) + ";" + mfcurve::numberText(point.y) + "\n";
        previous = &point;
    }
    const auto again = mfcurve::parsePoints(written);
    require(again.unsortedLine == 0 && again.points.size() == list->points.size());
    for (std::size_t i = 0; i < again.points.size(); ++i)
        require(again.points[i].x == list->points[i].x && again.points[i].y == list->points[i].y);
}

void checkRows(std::string_view text)
{
    const auto list = accepted([&] { return mfcurve::parseRows(text, isProfile); });
    if (!list)
        return;
    require(!list->rows.empty());
    std::string written;
    for (const mfcurve::FileRow& row : list->rows) {
        require(std::isfinite(row.end) && std::isfinite(row.value) && !row.profile.empty());
        // A profile with a quote, a comment mark or a control character would need an escape of its own.
        if (row.profile.find_first_of("\"#\r\n") != std::string::npos)
            return;
        written += mfcurve::numberText(row.end) + ";" + mfcurve::numberText(row.value) + ";\"" + row.profile +
                   "\"\n";
    }
    const auto again = mfcurve::parseRows(written, isProfile);
    require(again.rows.size() == list->rows.size());
    for (std::size_t i = 0; i < again.rows.size(); ++i)
        require(again.rows[i].end == list->rows[i].end && again.rows[i].value == list->rows[i].value &&
                again.rows[i].profile == list->rows[i].profile);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > kLongestText)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkPoints(text);
    checkRows(text);
    return 0;
}
