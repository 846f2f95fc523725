// SPDX-License-Identifier: MIT

#include <optional>
#include <utility>

#include "mfcurves/documents/readCurve.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/progress.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Reads a text, or else the file of that name.
Curve read(const std::string& name, const std::optional<std::string>& text)
{
    Curve curve(mf::FunctionType_Segments);  // the document replaces the kind by its own
    // A file has to fit the function unless it may choose what the function is for.
    curve.function().setMotionObjectType(mf::MotionObjectType_Motor);
    std::optional<Progress> progress;
    mf::documents::ReadOptions options;
    options.takeObjectOfFile = true;
    options.onRow = [&](std::size_t row, std::size_t count) {
        if (!progress)
            progress.emplace("reading", count);
        progress->update(row);
    };
    mf::documents::ReadOutcome outcome = mf::documents::readCurve(
        curve.function(), toCString(text ? "" : name), text.has_value(), text.value_or(""), options);
    if (!outcome.reason.empty())
        throw Failure(kFailed, name + ": " + outcome.reason);
    curve.setTitle(toUtf8(curve.function().getName()));
    std::vector<std::string> remarks;
    for (const mf::documents::Remark& remark : outcome.remarks)
        remarks.push_back(remark.place + (remark.place.empty() ? "" : ": ") + remark.message);
    curve.setRemarks(std::move(remarks));
    return curve;
}

}  // namespace

Curve readDocument(const std::string& path)
{
    if (isStandardStream(path))
        return read(inputName(path), readInput(path));
    return read(path, std::nullopt);
}

Curve readDocumentText(const std::string& text, const std::string& name)
{
    return read(name, text);
}

}  // namespace mfcurve
