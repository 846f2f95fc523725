// SPDX-License-Identifier: MIT

#include "tools/mfcurve/expressionProblem.h"

#include <algorithm>

#include "mfcurves/engine/parseError.h"
#include "mfcurves/interfaces/MotionMEParser.h"
#include "mfcurves/segments/mfSegment.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Of a long text so many characters are shown on each side of the place.
constexpr int kShownSide = 40;
constexpr const char* kIndent = "    ";

// The text around a place and a caret below it. Control characters, line ends
// among them, become blanks, so that the caret keeps its column.
std::string pointAt(const CString& text, int offset)
{
    const int first = std::max(0, offset - kShownSide);
    std::wstring shown(text.View().substr(static_cast<std::size_t>(first), std::size_t{2} * kShownSide));
    std::replace_if(
        shown.begin(), shown.end(), [](wchar_t c) { return c < L' '; }, L' ');
    const bool isCut = first > 0;
    const bool isCutBehind = first + 2 * kShownSide < text.GetLength();
    const auto column = static_cast<std::size_t>(offset - first) + (isCut ? 3 : 0);
    return std::string(kIndent) + (isCut ? "..." : "") + toUtf8(CString(shown)) + (isCutBehind ? "..." : "") +
           "\n" + kIndent + std::string(column, ' ') + "^";
}

std::string parameterNames(MotionMEParser& parser)
{
    constexpr int kMostNames = 5;
    std::string names;
    for (int i = 0; i < std::min(parser.getParamsNum(), kMostNames); ++i)
        names += (i == 0 ? "" : ", ") + toUtf8(CString(parser.getParam(i).text));
    return names + (parser.getParamsNum() > kMostNames ? ", ..." : "");
}

// Why the text cannot be compiled with that variable, or with none named.
std::optional<std::string> compileProblem(const CString& text, const wchar_t* variable)
{
    const auto error = mf::engine::checkText(text, variable);
    if (!error)
        return std::nullopt;
    std::string message =
        "the expression is wrong at character " + std::to_string(error->offset + 1) + ": " + error->message;
    if (!error->expected.empty())
        message += "; expected " + error->expected;
    return message + "\n" + pointAt(text, static_cast<int>(error->offset));
}

}  // namespace

std::optional<std::string> expressionProblem(const CString& text)
{
    if (auto problem = compileProblem(text, nullptr))
        return problem;
    MotionMEParser parser;
    parser.parse(text, nullptr, nullptr);
    if (parser.getParamsNum() > 1)
        return "the expression has " + std::to_string(parser.getParamsNum()) + " variables, " +
               parameterNames(parser) + "; a curve has one";
    return std::nullopt;
}

std::optional<std::string> lawProblem(mfSegment_c& segment)
{
    const CString variable = segment.getProflieIndepVar();
    return compileProblem(segment.getProfileExpr(), variable);
}

}  // namespace mfcurve
