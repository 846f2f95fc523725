// SPDX-License-Identifier: MIT
#include "tools/mfcurve/caret.h"

#include <algorithm>
#include <fmt/format.h>

#include "mfcurves/platform/encoding.h"

namespace mfcurve {

namespace {

// How many characters of a long text are shown on each side of the place.
constexpr std::size_t kShownSide = 40;

}  // namespace

// Control characters, including line ends, become blanks, so that the caret keeps its column.
std::string caretBelow(const std::string& text, std::size_t character)
{
    const std::wstring wide = mf::platform::widen(text);
    const std::size_t offset = std::min(character - 1, wide.size());
    const std::size_t first = offset - std::min(offset, kShownSide);
    std::wstring shown = wide.substr(first, 2 * kShownSide);
    std::replace_if(
        shown.begin(), shown.end(), [](wchar_t c) { return c < L' '; }, L' ');
    const char* before = first > 0 ? "..." : "";
    const char* after = first + 2 * kShownSide < wide.size() ? "..." : "";
    const std::size_t column = offset - first + (first > 0 ? 3 : 0);
    return fmt::format("\n    {}{}{}\n    {}^", before, mf::platform::toUtf8(shown), after,
                       std::string(column, ' '));
}

}  // namespace mfcurve
