// SPDX-License-Identifier: MIT

#include "mfcurves/documents/readState.h"

#include <utility>

#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/encoding.h"

namespace mf::documents {

CString wideText(const XmlNode& node)
{
    return CString(platform::widen(node.text()));
}

std::string narrowText(const XmlNode& node)
{
    return mfTextConverter_c().toNarrow(wideText(node));
}

std::string quoted(const CString& text)
{
    return '"' + platform::toUtf8(text.View()) + '"';
}

std::string quotedStart(const std::string& text)
{
    constexpr int kLongestQuote = 60;
    const CString wide(platform::widen(text));
    return quoted(wide.GetLength() > kLongestQuote ? wide.Left(kLongestQuote) + L"..." : wide);
}

std::string segmentPlace(int index)
{
    return "row " + std::to_string(index);
}

std::string pointPlace(int index)
{
    return "point " + std::to_string(index + 1);
}

std::string shortNumber(double number)
{
    return platform::formatNumber("%.10G", number);
}

std::string placeOf(std::string_view path)
{
    std::string place;
    while (!path.empty()) {
        const std::size_t separator = path.rfind('/');
        place += place.empty() ? "\"" : " within \"";
        place.append(path.substr(separator + 1)) += '"';
        path = path.substr(0, path.find_last_not_of('/', separator) + 1);
    }
    return place;
}

ReadState::ReadState(const CString& path, bool fromBuffer, const ReadOptions& options)
    : path_(path), fromBuffer_(fromBuffer), options_(options)
{
    document_.setPath(path);
    document_.setFromBuffer(fromBuffer);
}

bool ReadState::fail(std::string reason)
{
    reason_ = std::move(reason);
    return false;
}

bool ReadState::fail(const XmlProblem& problem)
{
    xmlProblem_ = problem;
    if (problem.line == 0)
        return fail(problem.message + '.');
    return fail(problem.message + " (line " + std::to_string(problem.line) + ", column " +
                std::to_string(problem.column) + ").");
}

bool ReadState::failForResult(const CString& name, std::string reason)
{
    missingResult_ = platform::toUtf8(name.View());
    return fail(std::move(reason));
}

void ReadState::remark(std::string place, std::string message)
{
    if (mayRemark())
        remarks_.push_back({std::move(place), std::move(message)});
}

XmlNode ReadState::singleNode(const char* path)
{
    const XmlNode node = xml().selectSingleNode(path);
    if (!node)
        fail("The element " + placeOf(path) + " is missing.");
    return node;
}

bool ReadState::text(const char* path, CString& out)
{
    const XmlNode node = singleNode(path);
    if (node)
        out = wideText(node);
    return static_cast<bool>(node);
}

void ReadState::tellRow(std::size_t row, std::size_t count) const
{
    if (options_.onRow)
        options_.onRow(row, count);
}

ReadOutcome ReadState::outcome(bool taken, MotionObjectType_e objectType)
{
    return {
        taken,     std::move(reason_), std::move(xmlProblem_), std::move(missingResult_), std::move(remarks_),
        objectType};
}

}  // namespace mf::documents
