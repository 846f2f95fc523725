// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveFacts.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/sources.h"

namespace mfcurve {

namespace {

struct InfoOptions {
    CurveOptions curve;
    Format format = Format::Text;
};

// Prints the facts of the curves, including those that are not sound, as text or as JSON.
class InfoPrinter {
public:
    explicit InfoPrinter(const InfoOptions& options) : options_(options) {}

    void addDescribed()
    {
        for (const Input& input : readInputs(options_.curve).curves)
            add(input, {});
    }

    void addDocument(const std::string& file)
    {
        std::vector<mf::Problem> problems;
        try {
            const mf::Curve curve = readDocument(file, options_.curve, &problems);
            add({curve, file, inputName(file)}, problems);
        } catch (const Failure& failure) {
            addUnsound(file, failure.problems());
        }
    }

    int finish()
    {
        if (options_.format == Format::Json)
            print(jsonDocument(objects_));
        return status_;
    }

private:
    void beginSection(const std::string& file)
    {
        if (options_.format == Format::Text && options_.curve.files.size() > 1)
            print((isFirst_ ? "" : "\n") + file + "\n");
        isFirst_ = false;
    }

    void add(const Input& input, const std::vector<mf::Problem>& problems)
    {
        beginSection(input.file);
        if (!problems.empty())
            status_ = kFailed;
        if (options_.format == Format::Json)
            objects_.push_back(factsAsJson(input, problems));
        else
            print(factsAsText(input.curve, problems));
    }

    void addUnsound(const std::string& file, const std::vector<mf::Problem>& problems)
    {
        beginSection(file);
        status_ = kFailed;
        if (options_.format == Format::Json)
            objects_.push_back(unsoundAsJson(file, problems));
        else
            print(unsoundAsText());
        for (const mf::Problem& problem : problems)
            report(problem);
    }

    const InfoOptions& options_;
    std::vector<std::string> objects_;
    bool isFirst_ = true;
    int status_ = kDone;
};

int runInfo(const InfoOptions& options)
{
    checkNoStretch(options.curve);
    checkOneSource(options.curve);
    InfoPrinter printer(options);
    if (options.curve.files.empty())
        printer.addDescribed();
    for (const std::string& file : options.curve.files)
        printer.addDocument(file);
    return printer.finish();
}

}  // namespace

void declareInfo(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<InfoOptions>();
    CLI::App& command = addCommand(app, "info", "Shows what a document contains and whether it is sound");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    addNotes(
        command,
        "Prints name, kind, variables, domain, problems, rows with their profiles and, at each seam, the "
        "jump "
        "of the\n"
        "value and of each derivative; for an angle curve also from its end to its start. If a curve is not "
        "valid,\n"
        "the exit status is 1, and the other commands refuse its document. Examples:\n"
        "  mfcurve info cam.xml\n"
        "  mfcurve info *.xml");
    whenChosen(command, [options, &action] { action = [options] { return runInfo(*options); }; });
}

}  // namespace mfcurve
