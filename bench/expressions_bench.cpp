// SPDX-License-Identifier: MIT

// Compares an expression curve through mfFunctionData_c::evaluate, as a simulator calls it, with
// the same function as hand-written C++, called through a pointer so that it is not inlined.
//
// Benchmarks are named CURVES:TASK:WHO, with slashes for the colons; ratios.csv lists which are compared.

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/handwritten.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"

namespace bench {
namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "expressions_bench: %s\n", what);
        std::abort();
    }
}

/// The general function plus a number that differs for each curve, so that no two curves share a
/// text, and `padding` characters without effect.
std::wstring textOf(int curve, int padding = 0)
{
    return L"10*sin(2*pi*time)+time^2*exp(-time)/(1+time)+" + std::to_wstring(curve) +
           std::wstring(static_cast<std::size_t>(padding), L' ');
}

std::unique_ptr<mfFunctionData_c> curveOf(const std::wstring& text)
{
    static mf::host::Context* const host = [] {
        auto* made = new mf::host::Context;
        QelSession_c::setMotionFunctionContext(made);
        return made;
    }();
    benchmark::DoNotOptimize(host);

    auto curve = std::make_unique<mfFunctionData_c>();
    require(curve->initialize(), "no curve");
    curve->setFunctionType(mf::FunctionType_Expression);
    curve->setMotorDriveType(mf::MotorDriveType_Displacment);
    auto& expression = dynamic_cast<mfFunctionExpression_c&>(*curve->getFunctionExpression());
    const CString shared(text);
    expression.setMathExpression(shared);
    expression.setParseExpression(shared);
    expression.setDomain(0.5, 2.25);
    require(expression.calculateValue(), "not sampled");
    return curve;
}

/// Many x in random order, so that no x is repeated at once.
class Inputs {
public:
    Inputs()
    {
        for (std::size_t i = 0; i < x_.size(); ++i)
            x_[i] = 0.5 + 1.75 * std::fmod(static_cast<double>(i) * 0.6180339887498949, 1.0);
    }
    double next() { return x_[++at_ % kCount]; }

private:
    static constexpr std::size_t kCount = 1024;
    std::array<double, kCount> x_{};
    std::size_t at_ = 0;
};

Orders ordersOf(IMotionFunctionData_c& curve, double x)
{
    return {curve.evaluate(x, 0), curve.evaluate(x, 1), curve.evaluate(x, 2), curve.evaluate(x, 3)};
}

void handwrittenValue(benchmark::State& state)
{
    Inputs inputs;
    for (auto _ : state)
        benchmark::DoNotOptimize(kGeneral.value(inputs.next()));
}
BENCHMARK(handwrittenValue)->Name("expression_curve/value/handwritten");

void handwrittenOrders(benchmark::State& state)
{
    Inputs inputs;
    for (auto _ : state) {
        Orders orders = kGeneral.orders(inputs.next());
        benchmark::DoNotOptimize(orders);
    }
}
BENCHMARK(handwrittenOrders)->Name("expression_curve/orders/handwritten");

std::vector<std::unique_ptr<mfFunctionData_c>> curves(int count, int padding)
{
    std::vector<std::unique_ptr<mfFunctionData_c>> made;
    for (int i = 0; i < count; ++i)
        made.push_back(curveOf(textOf(i, padding)));
    return made;
}

void libraryValue(benchmark::State& state, int count, int padding)
{
    const auto all = curves(count, padding);
    Inputs inputs;
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(all[i]->evaluate(inputs.next(), 0));
        i = i + 1 < all.size() ? i + 1 : 0;
    }
}
BENCHMARK_CAPTURE(libraryValue, one, 1, 0)->Name("expression_curve/value/library");
BENCHMARK_CAPTURE(libraryValue, hundred, 100, 0)->Name("hundred_expression_curves/value/library");
BENCHMARK_CAPTURE(libraryValue, long_text, 1, 10'000)->Name("long_expression_curve/value/library");

void libraryOrders(benchmark::State& state, int count, int padding)
{
    const auto all = curves(count, padding);
    Inputs inputs;
    std::size_t i = 0;
    for (auto _ : state) {
        Orders orders = ordersOf(*all[i], inputs.next());
        benchmark::DoNotOptimize(orders);
        i = i + 1 < all.size() ? i + 1 : 0;
    }
}
BENCHMARK_CAPTURE(libraryOrders, one, 1, 0)->Name("expression_curve/orders/library");
BENCHMARK_CAPTURE(libraryOrders, hundred, 100, 0)->Name("hundred_expression_curves/orders/library");
BENCHMARK_CAPTURE(libraryOrders, long_text, 1, 10'000)->Name("long_expression_curve/orders/library");

// Aborts unless both compute the same function.
void checkAgreement()
{
    const auto curve = curveOf(textOf(0));
    Inputs inputs;
    for (int i = 0; i < 1000; ++i) {
        const double x = inputs.next();
        const Orders expected = kGeneral.orders(x);
        const Orders orders = ordersOf(*curve, x);
        require(std::abs(orders.value - expected.value) < 1e-9 &&
                    std::abs(orders.first - expected.first) < 1e-9 &&
                    std::abs(orders.second - expected.second) < 1e-9 &&
                    std::abs(orders.third - expected.third) < 1e-9,
                "not the same function");
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
