// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <map>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/edits.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/laws.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/writeDocument.h"

namespace mfcurve {

namespace {

struct EditOptions {
    CurveOptions curve;
    std::vector<std::string> files;
    std::vector<std::string> sets;
    std::vector<std::string> insertions;
    std::vector<std::string> deletions;
    std::vector<Edit> edits;
};

// The edits in the order in which the options were written.
std::vector<Edit> editsInOrder(const CLI::App& command)
{
    static const std::map<std::string, Edit::Kind> kKinds = {
        {"--set", Edit::Kind::Set}, {"--insert", Edit::Kind::Insert}, {"--delete", Edit::Kind::Delete}};
    std::vector<Edit> edits;
    for (const auto& [name, text] : textsInOrder(command)) {
        if (const auto kind = kKinds.find(name); kind != kKinds.end())
            edits.push_back({kind->second, text, fmt::format("{} {}", name, text)});
    }
    return edits;
}

int runEdit(EditOptions& options)
{
    if (options.files.size() != 2)
        throw UsageError("edit takes IN and OUT; OUT may be IN");
    if (options.edits.empty())
        throw UsageError("edit needs something to change: --set, --insert or --delete");
    const std::string& output = options.files.back();
    const mf::Curve curve = readDocument(options.files.front(), options.curve);
    Editor editor(curve.definition(), knownLaws(options.curve.libraryFolders));
    for (const Edit& edit : options.edits)
        editor.apply(edit);
    writeDocument(makeCurve({editor.definition(), inputName(options.files.front()), {}}), output);
    for (const std::string& moved : editor.movedRows()) {
        if (isStandardStream(output))
            warn("", moved);
        else
            print(moved + "\n");
    }
    return kDone;
}

}  // namespace

void declareEdit(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<EditOptions>();
    CLI::App& command = addCommand(app, "edit", "Changes rows or points of a document");
    addArguments(command, "FILE", options->files, "IN and OUT; '-' is standard input or output");
    addTexts(command, "--set", "ROW.FIELD=VALUE", "field end, value or profile of a row, x or y of a point",
             options->sets);
    addTexts(command, "--insert", "ROW:END,VALUE,PROFILE",
             "a new row with that number, at most one more than the last; a point is POINT:X,Y",
             options->insertions);
    addTexts(command, "--delete", "ROW", "a row or point", options->deletions);
    declareLibraryOption(command, options->curve.libraryFolders);
    addTexts(command, "--result", "NAME", "name of a motion result that exists; may be repeated",
             options->curve.motionResults)
        .group("Host");
    addNotes(
        command,
        "Rows are numbered as in info: the start is row 0; points from 1. Edits apply in the order written. "
        "A row\n"
        "starts where the previous one ends; a start that moves is printed as 'row 3: start 150 to 120'. An "
        "edit that\n"
        "would leave a row without length is refused. Examples:\n"
        "  mfcurve edit cam.xml new.xml --set 1.value=30\n"
        "  mfcurve edit cam.xml cam.xml --insert '2:120,30,Cubic' --set 1.profile=Modified-Sine");
    whenChosen(command, [options, &action, &command] {
        options->edits = editsInOrder(command);
        action = [options] { return runEdit(*options); };
    });
}

}  // namespace mfcurve
