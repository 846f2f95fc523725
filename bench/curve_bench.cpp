// SPDX-License-Identifier: MIT

// Compares curves with hand-written C++ for the same tables, points and function: at single x
// in random order, so that branches cannot be predicted, and on arrays.
//
// Benchmarks are named by curve, work and implementation; ratios.csv lists which are compared.

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "bench/handwritten.h"
#include "bench/handwrittenCam.h"
#include "bench/handwrittenCurves.h"
#include "mfcurves/curve/Curve.h"
#include "mfcurves/curve/CurvePieces.h"

namespace bench {
namespace {

using mf::Curve;
using mf::CurveDefinition;
using mf::CurveValues;

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "curve_bench: %s\n", what);
        std::abort();
    }
}

/// Many x over [0, end] in random order.
class Inputs {
public:
    explicit Inputs(double end)
    {
        for (std::size_t i = 0; i < x_.size(); ++i)
            x_[i] = end * std::fmod(static_cast<double>(i) * 0.6180339887498949, 1.0);
    }
    double next() { return x_[++at_ % kCount]; }

private:
    static constexpr std::size_t kCount = 4096;
    std::array<double, kCount> x_{};
    std::size_t at_ = 0;
};

CurveDefinition rows(const std::vector<mf::CurveRow>& rows)
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Segments{0.0, 0.0, rows, {}, true};
    return definition;
}

/// The cam of HandwrittenCam.
Curve threeRows()
{
    return Curve(rows(
        {{2.0, 10.0, "3-4-5-Polynomial"}, {3.0, 10.0, "3-4-5-Polynomial"}, {5.0, 0.0, "3-4-5-Polynomial"}}));
}

constexpr double kRowLength = 3.0;

std::vector<double> tableValues(int count)
{
    std::vector<double> values = {0.0};
    for (int i = 1; i <= count; ++i)
        values.push_back(std::round(50.0 * std::sin(i * 1.7)));
    return values;
}

Curve table(int count)
{
    std::vector<mf::CurveRow> list;
    const std::vector<double> values = tableValues(count);
    for (int i = 1; i <= count; ++i)
        list.push_back({kRowLength * i, values[static_cast<std::size_t>(i)], "3-4-5-Polynomial"});
    return Curve(rows(list));
}

constexpr int kPoints = 1000;

Curve points()
{
    CurveDefinition::Points shape;
    shape.interpolation = mf::Interpolation::Cubic;
    for (int i = 0; i < kPoints; ++i) {
        shape.x.push_back(i + 0.3 * std::sin(i * 1.3));
        shape.y.push_back(std::sin(i * 0.01) + 0.01 * std::cos(i * 2.1));
    }
    CurveDefinition definition;
    definition.shape = shape;
    return Curve(definition);
}

HandwrittenSpline handwrittenPoints(const Curve& curve)
{
    std::vector<double> x;
    std::vector<HandwrittenSpline::Piece> pieces;
    for (const mf::curve::CurvePiece& piece : mf::curve::piecesOf(curve)) {
        const auto& cubic = std::get<mf::host::SplinePiece>(piece.formula);
        x.push_back(piece.start);
        pieces.push_back({cubic.a, cubic.b, cubic.c, cubic.d});
    }
    return {x, pieces};
}

Curve general()
{
    CurveDefinition definition;
    definition.shape = CurveDefinition::Expression{"10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", 0.0, 10.0};
    return Curve(definition);
}

// Aborts when the two curves differ, because their comparison would be meaningless.
template <class Hand>
void checkAgreement(const Curve& curve, const Hand& hand, double end)
{
    Inputs inputs(end);
    for (int i = 0; i < 1000; ++i) {
        const double x = inputs.next();
        const CurveValues values = curve.at(x);
        const Orders expected = hand(x);
        const auto near = [](double a, double b) { return std::fabs(a - b) <= 1e-7 * (1.0 + std::fabs(b)); };
        require(near(values.y, expected.value) && near(values.d1, expected.first) &&
                    near(values.d2, expected.second) && near(values.d3, expected.third),
                "the curves disagree");
    }
}

// --- One x at a time ---------------------------------------------------------------------

template <class Hand>
void addPair(const std::string& name, const Curve& curve, double end, const Hand& hand)
{
    checkAgreement(
        curve, [hand](double x) { return hand.orders(x); }, end);
    benchmark::RegisterBenchmark((name + "/orders/handwritten").c_str(), [=](benchmark::State& state) {
        Inputs inputs(end);
        for (auto _ : state) {
            Orders orders = hand.orders(inputs.next());
            benchmark::DoNotOptimize(orders);
        }
    });
    benchmark::RegisterBenchmark((name + "/orders/curve").c_str(), [=](benchmark::State& state) {
        Inputs inputs(end);
        for (auto _ : state) {
            CurveValues values = curve.at(inputs.next());
            benchmark::DoNotOptimize(values);
        }
    });
    if constexpr (requires { hand.value(0.0); }) {
        benchmark::RegisterBenchmark((name + "/value/handwritten").c_str(), [=](benchmark::State& state) {
            Inputs inputs(end);
            for (auto _ : state)
                benchmark::DoNotOptimize(hand.value(inputs.next()));
        });
        benchmark::RegisterBenchmark((name + "/value/curve").c_str(), [=](benchmark::State& state) {
            Inputs inputs(end);
            for (auto _ : state)
                benchmark::DoNotOptimize(curve(inputs.next()));
        });
    }
}

struct HandwrittenGeneral {
    double value(double x) const { return kGeneral.value(x); }
    Orders orders(double x) const { return kGeneral.orders(x); }
};

struct SharedTable {
    std::shared_ptr<const HandwrittenTable> table;
    double value(double x) const { return table->value(x); }
    Orders orders(double x) const { return table->orders(x); }
};

SharedTable handwrittenTable(int count)
{
    return {std::make_shared<const HandwrittenTable>(kRowLength, tableValues(count))};
}

// --- Arrays ------------------------------------------------------------------------------

std::vector<double> ascending(std::size_t count, double end)
{
    std::vector<double> x(count);
    for (std::size_t i = 0; i < count; ++i)
        x[i] = end * static_cast<double>(i) / static_cast<double>(count - 1);
    return x;
}

template <class Hand>
void addArrays(const std::string& name, const Curve& curve, const std::vector<double>& x, const Hand& hand)
{
    benchmark::RegisterBenchmark((name + "/handwritten").c_str(), [=](benchmark::State& state) {
        std::vector<Orders> orders(x.size());
        for (auto _ : state) {
            hand(x.data(), x.size(), orders.data());
            benchmark::ClobberMemory();
        }
    });
    benchmark::RegisterBenchmark((name + "/curve").c_str(), [=](benchmark::State& state) {
        std::vector<CurveValues> values(x.size());
        for (auto _ : state) {
            curve.evaluate(x.data(), x.size(), values.data());
            benchmark::ClobberMemory();
        }
    });
}

// --- Threads -----------------------------------------------------------------------------

// Each thread evaluates the same number of x, and the time is that of all threads together, so
// with two idle processors two threads take as long as one.
void evaluateOnThreads(benchmark::State& state)
{
    constexpr int kEvaluations = 2'000'000;
    const Curve curve = table(30);
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int i = 0; i < state.range(0); ++i)
            threads.emplace_back([&curve] {
                Inputs inputs(kRowLength * 30);
                for (int k = 0; k < kEvaluations; ++k) {
                    CurveValues values = curve.at(inputs.next());
                    benchmark::DoNotOptimize(values);
                }
            });
        for (std::thread& thread : threads)
            thread.join();
    }
}
BENCHMARK(evaluateOnThreads)->Name("curve/threads")->Arg(1)->Arg(2)->UseRealTime()->MeasureProcessCPUTime();

void addAll()
{
    addPair("curve/3 rows", threeRows(), 5.0, HandwrittenCam());
    addPair("curve/30 rows", table(30), kRowLength * 30, handwrittenTable(30));
    addPair("curve/1000 rows", table(1000), kRowLength * 1000, handwrittenTable(1000));
    addPair("curve/general", general(), 10.0, HandwrittenGeneral());
    const Curve cubic = points();
    addPair("curve/points", cubic, cubic.lastX(), handwrittenPoints(cubic));
    const SharedTable fourRows = handwrittenTable(4);
    addArrays("curve/array of rows", table(4), ascending(1'000'000, kRowLength * 4),
              [fourRows](const double* x, std::size_t count, Orders* orders) {
                  fourRows.table->orders(x, count, orders);
              });
    addArrays("curve/array of general", general(), ascending(4096, 10.0), generalOrders);
}

[[maybe_unused]] const bool kAdded = (addAll(), true);

}  // namespace
}  // namespace bench
