// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fmt/format.h>

#include "mfcurves/curve/laws.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/nearest.h"
#include "tools/mfcurve/rowsFile.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

// Collects rows that follow each other.
class RowCollector {
public:
    explicit RowCollector(const CurveOptions& options) : laws_(knownLaws(options.libraryFolders))
    {
        shape_.startX = options.start ? options.start->x : 0.0;
        shape_.startValue = options.start ? options.start->value : 0.0;
        places_.emplace_back("the start");
    }

    bool isProfile(std::string_view name) const { return findLaw(laws_, name) != nullptr; }

    void addFile(const CurveOptions& options)
    {
        const std::string& path = *options.rowsFile;
        try {
            const RowList list = parseRows(
                readInput(path), [this](std::string_view name) { return isProfile(name); }, options.columns);
            if (list.start && options.start)
                throw TextError(list.start->line, "the line states the start, and so does --start");
            if (list.start) {
                shape_.startX = list.start->x;
                shape_.startValue = list.start->value;
            }
            for (const FileRow& row : list.rows)
                addRow(row, linePlace(path, row.line));
        } catch (const TextError& error) {
            throw Failure(kWrong, linePlace(path, error.line()), error.what());
        }
    }

    void addText(const std::string& text)
    {
        const std::string place = "--row \"" + text + "\"";
        try {
            addRow(parseRow(text, [this](std::string_view name) { return isProfile(name); }), place);
        } catch (const TextError& error) {
            throw Failure(kWrong, place, error.what());
        }
    }

    mf::SegmentShape takeShape() { return std::move(shape_); }
    std::vector<std::string> takePlaces() { return std::move(places_); }

private:
    void addRow(const FileRow& row, const std::string& place)
    {
        const double start = shape_.rows.empty() ? shape_.startX : shape_.rows.back().endX;
        if (!(row.end > start))
            throw Failure(
                kWrong, place,
                fmt::format("the row ends at {}, but it starts at {}; rows are in ascending order of x",
                            numberText(row.end), numberText(start)));
        const mf::Law* law = findLaw(laws_, row.profile);
        if (law == nullptr)
            throw Failure(kWrong, place, unknownLaw(laws_, row.profile));
        if (law->source != "built-in")
            useLaw(*law);
        shape_.rows.push_back({row.end, row.value, law->name});
        places_.push_back(place);
    }

    void useLaw(const mf::Law& law)
    {
        for (const mf::LawText& used : shape_.laws) {
            if (used.name == law.name)
                return;
        }
        shape_.laws.push_back({law.name, law.text});
    }

    std::vector<mf::Law> laws_;
    mf::SegmentShape shape_;
    std::vector<std::string> places_;
};

}  // namespace

Description describedRows(const CurveOptions& options)
{
    RowCollector rows(options);
    if (options.rowsFile)
        rows.addFile(options);
    for (const std::string& row : options.rows)
        rows.addText(row);
    Description description;
    description.definition.shape = rows.takeShape();
    description.definition.name = options.rowsFile && !isStandardStream(*options.rowsFile)
                                      ? std::filesystem::path(*options.rowsFile).stem().string()
                                      : "Segments";
    description.places = rows.takePlaces();
    return description;
}

}  // namespace mfcurve
