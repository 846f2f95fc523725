// SPDX-License-Identifier: MIT

// Compares three functions as hand-written C++, through the engine and through
// muParser, on the same inputs in one run.
//
// Benchmarks are named by function, work and implementation; ratios.csv lists which are compared.

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <muParser.h>
#include <string>
#include <vector>

#include "bench/handwritten.h"
#include "mfcurves/engine/evaluateMany.h"
#include "mfcurves/engine/formula.h"
#include "mfcurves/interfaces/ICalculator.h"
#include "mfcurves/interfaces/MMEP_Data.h"
#include "mfcurves/interfaces/MotionMEParser.h"

namespace bench {
namespace {

struct Subject {
    std::string name;
    const Handwritten* handwritten;  ///< null for a law that is compared with another law
    /// The text with numbers filled in. Each `variant` has other numbers of the
    /// same length; the hand-written function computes variant 0.
    std::string (*text)(int variant);
};

std::string formatted(const char* format, double start)
{
    char text[512];
    std::snprintf(text, sizeof text, format, start);
    return text;
}

double startOf(int variant)
{
    return 0.5 + variant * 1e-6;
}

// Varies the start of the stretch, which occurs in each u.
std::string polynomialText(int variant)
{
    const std::string u = formatted("((x-%f)/(2.250000-0.500000))", startOf(variant));
    return "(3.000000+(-5.000000-3.000000)*(10*" + u + "^3-15*" + u + "^4+6*" + u + "^5))";
}

std::string law4567Text(int variant)
{
    const std::string u = formatted("((x-%f)/(2.250000-0.500000))", startOf(variant));
    return "(3.000000+(-5.000000-3.000000)*(35*" + u + "^4-84*" + u + "^5+70*" + u + "^6-20*" + u + "^7))";
}

std::string law56789Text(int variant)
{
    const std::string u = formatted("((x-%f)/(2.250000-0.500000))", startOf(variant));
    return "(3.000000+(-5.000000-3.000000)*(126*" + u + "^5-420*" + u + "^6+540*" + u + "^7-315*" + u +
           "^8+70*" + u + "^9))";
}

std::string quarterCosineText(int variant)
{
    const std::string u = formatted("((x-%f)/(2.250000-0.500000))", startOf(variant));
    return "(3.000000+(-5.000000-3.000000)*(1-cos(pi*" + u + "/2)))";
}

std::string generalText(int variant)
{
    if (variant == 0)
        return "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)";
    return formatted("%f*sin(2*pi*x)+x^2*exp(-x)/(1+x)", 10 + startOf(variant));
}

const Subject kSubjects[] = {
    {"polynomial", &kPolynomial, polynomialText}, {"quarter_cosine", &kQuarterCosine, quarterCosineText},
    {"general", &kGeneral, generalText},          {"law_4567", nullptr, law4567Text},
    {"law_56789", nullptr, law56789Text},
};

/// Many x of the law's stretch in random order, so that no x is repeated at once and
/// nothing can be moved out of a loop.
class Inputs {
public:
    Inputs()
    {
        for (std::size_t i = 0; i < x_.size(); ++i)
            x_[i] = 0.5 + 1.75 * std::fmod(static_cast<double>(i) * 0.6180339887498949, 1.0);
    }
    double next() { return x_[++at_ % kCount]; }
    const double* from(std::size_t block) const { return &x_[block % (kCount / kBlock) * kBlock]; }

    static constexpr int kBlock = 100;

private:
    static constexpr std::size_t kCount = 1024;
    std::array<double, kCount> x_{};
    std::size_t at_ = 0;
};

void fail(const std::string& text)
{
    std::fprintf(stderr, "engine_bench: refused: %s\n", text.c_str());
    std::abort();
}

/// A value and its three derivatives, as a host compiles and stores them.
class Compiled {
public:
    explicit Compiled(const std::string& text)
    {
        const std::wstring wide(text.begin(), text.end());
        wchar_t variable[] = L"x";
        MotionMEParser parser;
        parser.parse(wide.c_str(), variable, &orders_[0]);
        for (int order = 1; order < 4; ++order)
            orders_[order] = orders_[order - 1] ? orders_[order - 1]->differentiate(0) : nullptr;
        if (!orders_[3])
            fail(text);
    }
    ~Compiled()
    {
        for (ICalculator* calculator : orders_)
            calculator->Release();
    }
    Compiled(const Compiled&) = delete;
    Compiled& operator=(const Compiled&) = delete;

    double at(int order, double x) const
    {
        MMEP_Data argument(x);
        MMEP_Data result;
        orders_[order]->Evaluate(1, &argument, result);
        return *result.getValue();
    }

    void at(int order, const double* x, std::size_t count, double* y) const
    {
        mf::engine::evaluateMany(*orders_[order], x, y, count);
    }

private:
    std::array<ICalculator*, 4> orders_{};
};

/// One block of samples of all four orders.
struct SampleBlock {
    std::vector<double> value = std::vector<double>(Inputs::kBlock);
    std::vector<double> first = value;
    std::vector<double> second = value;
    std::vector<double> third = value;
    Samples samples = {value.data(), first.data(), second.data(), third.data()};
};

void handwrittenValue(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    for (auto _ : state)
        benchmark::DoNotOptimize(subject.handwritten->value(inputs.next()));
}

void engineValue(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    const Compiled compiled(subject.text(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(compiled.at(0, inputs.next()));
}

void muparserValue(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    double x = 0.5;
    mu::Parser parser;
    parser.DefineConst("pi", 3.14159265358979323846);
    parser.DefineVar("x", &x);
    parser.SetExpr(subject.text(0));
    for (auto _ : state) {
        x = inputs.next();
        benchmark::DoNotOptimize(parser.Eval());
    }
}

void handwrittenOrders(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    for (auto _ : state) {
        Orders orders = subject.handwritten->orders(inputs.next());
        benchmark::DoNotOptimize(orders);
    }
}

void engineOrders(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    const Compiled compiled(subject.text(0));
    for (auto _ : state) {
        const double x = inputs.next();
        Orders orders = {compiled.at(0, x), compiled.at(1, x), compiled.at(2, x), compiled.at(3, x)};
        benchmark::DoNotOptimize(orders);
    }
}

// The engine's own call, which computes all orders of a point in one run.
void formulaOrders(benchmark::State& state, const Subject& subject)
{
    Inputs inputs;
    const std::string text = subject.text(0);
    const auto result = mf::engine::Formula::compile(std::wstring(text.begin(), text.end()), L"x");
    const auto& formula = std::get<std::shared_ptr<const mf::engine::Formula>>(result);
    std::vector<double> registers(formula->registerCount());
    for (auto _ : state) {
        double orders[4];
        formula->evaluate(inputs.next(), 3, registers.data(), orders);
        benchmark::DoNotOptimize(orders);
    }
}

void handwrittenSamples(benchmark::State& state, const Subject& subject)
{
    const Inputs inputs;
    const SampleBlock block;
    std::size_t i = 0;
    for (auto _ : state) {
        subject.handwritten->samples(inputs.from(i++), Inputs::kBlock, block.samples);
        benchmark::ClobberMemory();
    }
}

void engineSamples(benchmark::State& state, const Subject& subject)
{
    const Inputs inputs;
    const SampleBlock block;
    const Compiled compiled(subject.text(0));
    std::size_t i = 0;
    for (auto _ : state) {
        const double* const x = inputs.from(i++);
        compiled.at(0, x, Inputs::kBlock, block.samples.value);
        compiled.at(1, x, Inputs::kBlock, block.samples.first);
        compiled.at(2, x, Inputs::kBlock, block.samples.second);
        compiled.at(3, x, Inputs::kBlock, block.samples.third);
        benchmark::ClobberMemory();
    }
}

/// So many texts that a cache of compiled texts no longer has the first when it is used again.
std::vector<std::string> variants(const Subject& subject)
{
    std::vector<std::string> texts;
    for (int i = 1; i <= 65536; ++i)
        texts.push_back(subject.text(i));
    return texts;
}

// Both run the program once, so that no part of compiling is deferred.
void engineCompile(benchmark::State& state, const Subject& subject)
{
    const std::vector<std::string> texts = variants(subject);
    static std::size_t i = 0;  // each repetition continues where the previous one ended
    for (auto _ : state) {
        const Compiled compiled(texts[i++ % texts.size()]);
        for (int order = 0; order < 4; ++order)
            benchmark::DoNotOptimize(compiled.at(order, 1.25));
    }
}

// One parser for all texts: its set-up is not measured.
void muparserCompile(benchmark::State& state, const Subject& subject)
{
    const std::vector<std::string> texts = variants(subject);
    double x = 1.25;
    mu::Parser parser;
    parser.DefineConst("pi", 3.14159265358979323846);
    parser.DefineVar("x", &x);
    std::size_t i = 0;
    for (auto _ : state) {
        parser.SetExpr(texts[i++ % texts.size()]);
        benchmark::DoNotOptimize(parser.Eval());
    }
}

const struct {
    const char* name;
    void (*run)(benchmark::State& state, const Subject& subject);
} kWorks[] = {
    {"value/handwritten", handwrittenValue},
    {"value/engine", engineValue},
    {"value/muparser", muparserValue},
    {"orders/handwritten", handwrittenOrders},
    {"orders/engine", engineOrders},
    {"orders/formula", formulaOrders},
    {"samples/handwritten", handwrittenSamples},
    {"samples/engine", engineSamples},
    {"compile/engine", engineCompile},
    {"compile/muparser", muparserCompile},
};

// Aborts unless the hand-written functions and the texts are the same functions.
void checkAgreement(const Subject& subject)
{
    if (subject.handwritten == nullptr)
        return;
    Inputs inputs;
    const Compiled compiled(subject.text(0));
    for (int i = 0; i < 100; ++i) {
        const double x = inputs.next();
        const Orders orders = subject.handwritten->orders(x);
        const double expected[] = {orders.value, orders.first, orders.second, orders.third};
        for (int order = 0; order < 4; ++order) {
            if (std::abs(compiled.at(order, x) - expected[order]) > 1e-9 * (1 + std::abs(expected[order]))) {
                std::fprintf(stderr, "engine_bench: %s, order %d differs at %g\n", subject.name.c_str(),
                             order, x);
                std::abort();
            }
        }
        if (std::abs(subject.handwritten->value(x) - orders.value) > 1e-12 * (1 + std::abs(orders.value)))
            std::abort();
    }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
    for (const bench::Subject& subject : bench::kSubjects) {
        bench::checkAgreement(subject);
        for (const auto& work : bench::kWorks) {
            if (subject.handwritten == nullptr && std::string(work.name).ends_with("/handwritten"))
                continue;
            benchmark::RegisterBenchmark((subject.name + "/" + work.name).c_str(),
                                         [&](benchmark::State& state) { work.run(state, subject); });
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
