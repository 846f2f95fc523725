// SPDX-License-Identifier: MIT

// Compares a three-row cam through the library with hand-written C++, and the steps from a
// profile to compiled rows with muParser; measures edits of long tables.
//
// Benchmarks are named by work and implementation, or by work and rows; ratios.csv lists which
// are compared.

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <muParser.h>
#include <string>
#include <vector>

#include "bench/handwrittenCam.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"
#include "tests/segments/segmentTables.h"

namespace bench {
namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "segments_bench: %s\n", what);
        std::abort();
    }
}

/// The host of all tables.
mfProfileManager_c& profiles()
{
    static mf::host::Context* const host = [] {
        auto* made = new mf::host::Context;
        QelSession_c::setMotionFunctionContext(made);
        require(made->profileManager().rebuildUserProfileMap(), "no profiles");
        return made;
    }();
    return host->profileManager();
}

void addPolynomial(mfFunctionSegments_c& table, double startX, double endX, double value)
{
    mf::test::addRow(table, profiles(), startX, endX, value, L"3-4-5-Polynomial (Default)");
}

/// The cam of HandwrittenCam as a motion function, parsed and sampled.
class LibraryCam {
public:
    LibraryCam()
    {
        profiles();
        require(function_.initialize(), "no function");
        function_.setMotorDriveType(mf::MotorDriveType_Displacment);
        table().addSegment(new mfSegment_c(0.0, 0.0, 0.0, L"Initial"));
        addPolynomial(table(), 0.0, 2.0, 10.0);
        addPolynomial(table(), 2.0, 3.0, 10.0);
        addPolynomial(table(), 3.0, 5.0, 0.0);
        for (int row = 1; row <= 3; ++row)
            table().parseExpression(row);
        table().calculateValue();
    }

    mfFunctionSegments_c& table()
    {
        return *static_cast<mfFunctionSegments_c*>(function_.getFunctionSegments());
    }
    IMotionFunctionData_c& function() { return function_; }

private:
    mfFunctionData_c function_;
};

/// Many x over the whole cam in random order, so that branches cannot be predicted.
class Inputs {
public:
    Inputs()
    {
        for (std::size_t i = 0; i < x_.size(); ++i)
            x_[i] = 5.0 * std::fmod(static_cast<double>(i) * 0.6180339887498949, 1.0);
    }
    double next() { return x_[++at_ % kCount]; }

private:
    static constexpr std::size_t kCount = 1024;
    std::array<double, kCount> x_{};
    std::size_t at_ = 0;
};

// ---------------------------------------------------------------- one cam

void handwrittenValue(benchmark::State& state)
{
    Inputs inputs;
    const HandwrittenCam cam;
    for (auto _ : state)
        benchmark::DoNotOptimize(cam.value(inputs.next()));
}
BENCHMARK(handwrittenValue)->Name("cam/value/handwritten");

void libraryValue(benchmark::State& state)
{
    Inputs inputs;
    LibraryCam cam;
    for (auto _ : state)
        benchmark::DoNotOptimize(cam.function().evaluate(inputs.next(), 0));
}
BENCHMARK(libraryValue)->Name("cam/value/library");

void handwrittenOrders(benchmark::State& state)
{
    Inputs inputs;
    const HandwrittenCam cam;
    for (auto _ : state) {
        Orders orders = cam.orders(inputs.next());
        benchmark::DoNotOptimize(orders);
    }
}
BENCHMARK(handwrittenOrders)->Name("cam/orders/handwritten");

void libraryOrders(benchmark::State& state)
{
    Inputs inputs;
    LibraryCam cam;
    for (auto _ : state) {
        const double x = inputs.next();
        Orders orders = {cam.function().evaluate(x, 0), cam.function().evaluate(x, 1),
                         cam.function().evaluate(x, 2), cam.function().evaluate(x, 3)};
        benchmark::DoNotOptimize(orders);
    }
}
BENCHMARK(libraryOrders)->Name("cam/orders/library");

void libraryOrdersAtOnce(benchmark::State& state)
{
    Inputs inputs;
    LibraryCam cam;
    for (auto _ : state) {
        const double x = inputs.next();
        Orders orders{};
        cam.table().calculateValue(cam.table().findSegment(x), x, orders.value, orders.first, orders.second,
                                   orders.third, 3);
        benchmark::DoNotOptimize(orders);
    }
}
BENCHMARK(libraryOrdersAtOnce)->Name("cam/orders_at_once/library");

void handwrittenSamples(benchmark::State& state)
{
    const HandwrittenCam cam;
    int row = 0;
    for (auto _ : state) {
        CamSamples samples = cam.samples(row);
        benchmark::DoNotOptimize(samples);
        row = (row + 1) % 3;
    }
}
BENCHMARK(handwrittenSamples)->Name("cam/samples/handwritten");

void librarySamples(benchmark::State& state)
{
    LibraryCam cam;
    int row = 0;
    for (auto _ : state) {
        cam.table().calculateValue(row + 1);
        benchmark::DoNotOptimize(mf::test::rowOf(cam.table(), row + 1).getPlottingData0());
        row = (row + 1) % 3;
    }
}
BENCHMARK(librarySamples)->Name("cam/samples/library");

// ------------------------------------------------- from a profile to calculators

/// Numbers of the same length, so many that a cache of compiled texts no longer has
/// the first when it is used again.
class StartXs {
public:
    double next() { return 1e-6 * (++at_ % 8192); }

private:
    int at_ = 0;
};

// Starts with the row's numbers and ends with four orders that have run once.
void libraryParse(benchmark::State& state)
{
    LibraryCam cam;
    mfSegment_c& row = mf::test::rowOf(cam.table(), 1);
    StartXs startXs;
    for (auto _ : state) {
        row.setStartX(startXs.next());
        cam.table().parseExpression(1);
        benchmark::DoNotOptimize(row.getCalculator(3));
        for (int order = 0; order < 4; ++order)
            benchmark::DoNotOptimize(cam.function().evaluate(1.25, order));
    }
}
BENCHMARK(libraryParse)->Name("cam/parse/library");

// One parser for all texts, which are made before: neither its set-up nor writing the
// numbers into the texts is measured.
void muparserParse(benchmark::State& state)
{
    LibraryCam cam;
    mfSegment_c& row = mf::test::rowOf(cam.table(), 1);
    StartXs startXs;
    std::vector<std::string> texts;
    for (int i = 0; i < 8192; ++i) {
        row.setStartX(startXs.next());
        cam.table().parseExpression(1);
        texts.push_back(mf::platform::toUtf8(row.getProfileExpr().View()));
    }
    double x = 1.25;
    mu::Parser parser;
    parser.DefineVar("x", &x);
    std::size_t i = 0;
    for (auto _ : state) {
        parser.SetExpr(texts[i++ % texts.size()]);
        benchmark::DoNotOptimize(parser.Eval());
    }
}
BENCHMARK(muparserParse)->Name("cam/parse/muparser");

// ------------------------------------------------------------- long tables

void fill(mfFunctionSegments_c& table, int rows)
{
    table.setIndependentVar(mf::IndependentVariableType_Time);
    table.setMotorDependentVar(mf::MotorDriveType_Displacment);
    table.addSegment(new mfSegment_c(0.0, 0.0, 0.0, L"Initial"));
    for (int row = 1; row < rows; ++row)
        addPolynomial(table, row - 1, row, row % 7);
}

// Pushes the end of row 1 over all later rows, and back.
void pushAllRows(benchmark::State& state)
{
    profiles();
    mfFunctionSegments_c table;
    fill(table, static_cast<int>(state.range(0)));
    double x = 1.0;
    for (auto _ : state) {
        x += 1.0;
        table.modifySegment(1, 1, 0.0, x, 0.0, L"");
    }
}
BENCHMARK(pushAllRows)->Name("table/push_all_rows")->Arg(1'000)->Arg(10'000);

void insertAndDeleteAtTheFront(benchmark::State& state)
{
    profiles();
    mfFunctionSegments_c table;
    fill(table, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        table.insertSegment(2, new mfSegment_c);
        table.deleteSegment(2);
    }
}
BENCHMARK(insertAndDeleteAtTheFront)->Name("table/insert_and_delete")->Arg(1'000)->Arg(10'000);

void parseAllRows(benchmark::State& state)
{
    profiles();
    mfFunctionSegments_c table;
    const int rows = static_cast<int>(state.range(0));
    fill(table, rows);
    for (auto _ : state) {
        for (int row = 1; row < rows; ++row)
            table.parseExpression(row);
    }
}
BENCHMARK(parseAllRows)->Name("table/parse_all_rows")->Arg(1'000)->Arg(10'000);

// Every row is compiled and differentiated again, because its start value changes.
void parseAndSampleAllRows(benchmark::State& state)
{
    profiles();
    mfFunctionSegments_c table;
    const int rows = static_cast<int>(state.range(0));
    fill(table, rows);
    double offset = 0.0;
    for (auto _ : state) {
        offset += 1.0;
        for (int row = 1; row < rows; ++row) {
            mf::test::rowOf(table, row).setValue(row % 7 + offset);
            table.parseExpression(row);
        }
        table.calculateValue();
        for (int row = 1; row < rows; ++row)
            benchmark::DoNotOptimize(mf::test::rowOf(table, row).getPlottingData0());
    }
}
BENCHMARK(parseAndSampleAllRows)->Name("table/parse_and_sample_all_rows")->Arg(1'000)->Arg(10'000);

// Aborts unless the two cams are equal.
void checkAgreement()
{
    Inputs inputs;
    const HandwrittenCam handwritten;
    LibraryCam library;
    for (int i = 0; i < 1000; ++i) {
        const double x = inputs.next();
        const Orders orders = handwritten.orders(x);
        const double expected[] = {orders.value, orders.first, orders.second, orders.third};
        for (int order = 0; order < 4; ++order)
            require(std::abs(library.function().evaluate(x, order) - expected[order]) < 1e-9,
                    "the cams are not the same");
        require(handwritten.value(x) == orders.value, "the orders are not the same");
    }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
    bench::checkAgreement();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
