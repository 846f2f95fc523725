// SPDX-License-Identifier: MIT

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <memory>

#include "tools/mfcurve/commands.h"
#include "tools/mfcurve/curveOptions.h"
#include "tools/mfcurve/curveSource.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/progress.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr std::size_t kMostSamples = 10'000'000;
constexpr const char* kColumns[] = {"value", "d1", "d2", "d3"};

struct TableOptions {
    CurveOptions curve;
    std::string samples = "101";
    std::string format = "csv";
};

std::size_t sampleCount(const std::string& text)
{
    std::size_t count = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
    if (!isNumber || count == 0 || count > kMostSamples)
        throw Failure(kWrong, "--samples takes a whole number from 1 to " + std::to_string(kMostSamples) +
                                  ", not \"" + text + "\"");
    return count;
}

double sampleX(const Range& range, std::size_t index, std::size_t count)
{
    if (index == 0)
        return range.from;
    if (index + 1 == count)
        return range.to;
    const double part = static_cast<double>(index) / static_cast<double>(count - 1);
    return std::lerp(range.from, range.to, part);
}

std::string csvHeader(int orders)
{
    std::string text = "x";
    for (int order = 0; order < orders; ++order)
        text += std::string(",") + kColumns[order];
    return text + "\n";
}

std::string csvLine(const Sample& sample, int orders)
{
    std::string text = numberText(sample.x);
    for (int order = 0; order < orders; ++order)
        text += "," + numberText(sample.y[order]);
    return text + "\n";
}

std::string jsonObject(const Sample& sample, int orders)
{
    std::string text = "{\"x\":" + numberText(sample.x);
    for (int order = 0; order < orders; ++order) {
        const double y = sample.y[order];
        text += std::string(",\"") + kColumns[order] + "\":" + (std::isfinite(y) ? numberText(y) : "null");
    }
    return text + "}";
}

std::string jsonText(const std::string& text)
{
    std::string result = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        if (static_cast<unsigned char>(c) >= ' ')
            result += c;
    }
    return result + "\"";
}

// Prints the samples of curves one after the other, in one of the two formats.
class TablePrinter {
public:
    explicit TablePrinter(const TableOptions& options)
        : options_(options), count_(sampleCount(options.samples)), isJson_(options.format == "json")
    {
    }

    void printCurve(Curve& curve, const std::string& section)
    {
        const Range range = chosenRange(options_.curve, curve.domain());
        warnOutside(range, curve.domain(), sectionPlace(section));
        const int orders = curve.orderCount();
        printHead(section, orders);
        std::size_t undefined = 0;
        double firstUndefined = 0.0;
        Progress progress("table", count_);
        for (std::size_t i = 0; i < count_; ++i) {
            const Sample sample = curve.at(sampleX(range, i, count_));
            if (!sample.isFinite(orders) && undefined++ == 0)
                firstUndefined = sample.x;
            if (isJson_)
                print((i == 0 ? "\n" : ",\n") + jsonObject(sample, orders));
            else
                print(csvLine(sample, orders));
            progress.update(i);
        }
        if (isJson_)
            print("\n]");
        if (undefined == 0)
            return;
        status_ = kFailed;
        warn(sectionPlace(section) + "the curve has no finite value or derivative at " +
             std::to_string(undefined) + " of the samples, first at x = " + numberText(firstUndefined));
    }

    // Closes what is open and answers the exit status.
    int finish()
    {
        if (isJson_ && isBegun_)
            print(inSections_ ? "\n}\n" : "\n");
        return status_;
    }

private:
    void printHead(const std::string& section, int orders)
    {
        if (isJson_ && !section.empty())
            print((inSections_ ? ",\n" : "{\n") + jsonText(section) + ": ");
        else if (!section.empty())
            print("# " + section + "\n");
        print(isJson_ ? "[" : csvHeader(orders));
        isBegun_ = true;
        inSections_ = !section.empty();
    }

    const TableOptions& options_;
    std::size_t count_;
    bool isJson_;
    bool isBegun_ = false;
    bool inSections_ = false;
    int status_ = kDone;
};

int runTable(const TableOptions& options)
{
    TablePrinter printer(options);
    const int read = forEachCurve(
        options.curve, [&](Curve& curve, const std::string& section) { printer.printCurve(curve, section); });
    return std::max(printer.finish(), read);
}

}  // namespace

void declareTable(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<TableOptions>();
    CLI::App& command = *app.add_subcommand("table", "Prints evenly spaced samples as CSV or JSON");
    command.add_option("FILE", options->curve.files, "documents; '-' is standard input");
    command.add_option("--samples", options->samples, "how many samples, both ends included")
        ->type_name("N")
        ->capture_default_str();
    command.add_option("--format", options->format, "csv or json")
        ->check(CLI::IsMember({"csv", "json"}))
        ->type_name("FORMAT")
        ->capture_default_str();
    declareCurveOptions(command, options->curve);
    command.footer(
        "The columns are x,value,d1,d2,d3, with as many derivatives as the curve has names for: three of a\n"
        "displacement, two of a velocity, one of an acceleration, a force or a torque. Examples:\n"
        "  mfcurve table cam.xml --samples 361 > cam.csv\n"
        "  mfcurve table --expression 'sin(x)' --from 0 --to 3.14 --samples 5 --format json");
    command.callback([options, &action] { action = [options] { return runTable(*options); }; });
}

}  // namespace mfcurve
