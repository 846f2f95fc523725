// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "mfcurves/analysis/analysis.h"
#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/json.h"
#include "tools/mfcurve/options.h"
#include "tools/mfcurve/rowAt.h"
#include "tools/mfcurve/sources.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

struct PeaksOptions {
    CurveOptions curve;
    Format format = Format::Text;
};

// One order of one curve; derivatives are by seconds with --cycle-time.
struct OrderPeaks {
    int order;
    std::string quantity;
    std::string unit;
    mf::analysis::Summary summary;
    int leastRow;
    int greatestRow;
};

// Whether the errors of the peaks of an order are too small to matter: compared with the values of the order,
// or with those of a lower order, over the length of the range.
bool areErrorsSmall(const std::array<mf::analysis::Summary, 4>& summaries, int order, double length)
{
    constexpr double kSmall = 1e-6;
    double scale = 0.0;
    for (int lower = 0; lower <= order; ++lower) {
        const mf::analysis::Summary& summary = summaries[static_cast<std::size_t>(lower)];
        const double size = std::max(std::fabs(summary.least.y), std::fabs(summary.greatest.y));
        scale = std::max(scale, size / std::pow(length, order - lower));
    }
    const mf::analysis::Summary& summary = summaries[static_cast<std::size_t>(order)];
    return std::max(summary.least.error, summary.greatest.error) <= kSmall * scale;
}

std::vector<OrderPeaks> peaksOf(const PeaksOptions& options, const Input& input)
{
    const mf::CurveDefinition& definition = input.curve.definition();
    const mf::drawing::Units units = unitsOf(options.curve, definition);
    const double rate = rateOf(options.curve, definition, input.place);
    const mf::Range range = chosenRange(options.curve, domainOf(input.curve));
    warnOutside(range, input);
    const std::array<mf::analysis::Summary, 4> summaries = mf::analysis::summarize(input.curve, range);
    std::vector<OrderPeaks> peaks;
    for (int order = 0; order < mf::drawing::namedOrders(definition); ++order) {
        mf::analysis::Summary summary = summaries[static_cast<std::size_t>(order)];
        summary.guaranteed &= areErrorsSmall(summaries, order, range.to - range.from);
        const double factor = std::pow(rate, order);
        for (double* number : {&summary.least.y, &summary.greatest.y, &summary.rms, &summary.mean})
            *number *= factor;
        peaks.push_back({order, mf::drawing::quantityName(definition, order),
                         mf::drawing::derivativeUnit(units, order), summary,
                         rowAt(input.curve, summary.least.x, summary.least.side),
                         rowAt(input.curve, summary.greatest.x, summary.greatest.side)});
    }
    return peaks;
}

std::string jsonRow(int row)
{
    return row == 0 ? "null" : std::to_string(row);
}

std::string jsonOrder(const OrderPeaks& peaks)
{
    const mf::analysis::Summary& summary = peaks.summary;
    std::vector<std::string> impulses;
    for (double x : summary.impulses)
        impulses.push_back(jsonNumber(x));
    return jsonObject({{"order", std::to_string(peaks.order)},
                       {"quantity", jsonText(peaks.quantity)},
                       {"unit", jsonText(peaks.unit)},
                       {"min", jsonNumber(summary.least.y)},
                       {"min_x", jsonNumber(summary.least.x)},
                       {"min_row", jsonRow(peaks.leastRow)},
                       {"max", jsonNumber(summary.greatest.y)},
                       {"max_x", jsonNumber(summary.greatest.x)},
                       {"max_row", jsonRow(peaks.greatestRow)},
                       {"rms", jsonNumber(summary.rms)},
                       {"mean", jsonNumber(summary.mean)},
                       {"impulses", jsonArray(impulses)},
                       {"guaranteed", jsonTruth(summary.guaranteed)}});
}

std::string rowText(int row)
{
    return row == 0 ? "-" : std::to_string(row);
}

std::string remark(const mf::analysis::Summary& summary)
{
    std::string text;
    if (!summary.impulses.empty())
        text =
            fmt::format("{} impulse{}, first at {}", summary.impulses.size(),
                        summary.impulses.size() == 1 ? "" : "s", shortNumberText(summary.impulses.front()));
    if (!summary.guaranteed)
        text += text.empty() ? "not proved" : ", not proved";
    return text;
}

std::string trimmedLine(std::string line)
{
    line.resize(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

// Prints the curves side by side: for each order, one line per curve.
void printText(const std::vector<Input>& inputs, const std::vector<std::vector<OrderPeaks>>& all)
{
    constexpr const char* kColumns = "{:<22} {:<9} {:>13} {:>11} {:>4}  {:>13} {:>11} {:>4}  {:>13}  {}";
    print(trimmedLine(
        fmt::format(kColumns, "", "unit", "min", "at x", "row", "max", "at x", "row", "rms", "")));
    std::size_t orders = 0;
    for (const auto& peaks : all)
        orders = std::max(orders, peaks.size());
    for (std::size_t order = 0; order < orders; ++order) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (order >= all[i].size())
                continue;
            const OrderPeaks& peaks = all[i][order];
            const mf::analysis::Summary& summary = peaks.summary;
            print(trimmedLine(
                fmt::format(kColumns, peaks.quantity, peaks.unit, shortNumberText(summary.least.y, 8),
                            shortNumberText(summary.least.x, 8), rowText(peaks.leastRow),
                            shortNumberText(summary.greatest.y, 8), shortNumberText(summary.greatest.x, 8),
                            rowText(peaks.greatestRow), shortNumberText(summary.rms, 8), remark(summary))));
            if (inputs.size() > 1)
                print(fmt::format("  {}\n", inputs[i].file));
        }
    }
}

int runPeaks(const PeaksOptions& options)
{
    const Inputs inputs = readInputs(options.curve);
    std::vector<std::vector<OrderPeaks>> all;
    std::vector<std::string> objects;
    for (const Input& input : inputs.curves) {
        all.push_back(peaksOf(options, input));
        std::vector<std::string> orders;
        for (const OrderPeaks& peaks : all.back())
            orders.push_back(jsonOrder(peaks));
        objects.push_back(jsonObject({{"file", jsonFile(input)}, {"orders", jsonArray(orders)}}));
    }
    if (options.format == Format::Json)
        print(jsonDocument(objects));
    else if (!all.empty())
        printText(inputs.curves, all);
    return inputs.status;
}

}  // namespace

void declarePeaks(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PeaksOptions>();
    CLI::App& command = addCommand(app, "peaks", "Prints the extremes and the RMS of every order");
    addArguments(command, "FILE", options->curve.files, "documents; '-' is standard input");
    addFormat(command, options->format);
    declareCurveOptions(command, options->curve);
    declareSpeedOptions(command, options->curve);
    addNotes(
        command,
        "The extremes are those of the formulas, found by interval arithmetic and not from samples. Where a "
        "lower\n"
        "order jumps, an order has an impulse, which its extremes leave out. Several curves are printed side "
        "by side.\n"
        "Examples:\n"
        "  mfcurve peaks cam.xml --rpm 120\n"
        "  mfcurve peaks cam.xml old.xml --format json");
    whenChosen(command, [options, &action] { action = [options] { return runPeaks(*options); }; });
}

}  // namespace mfcurve
