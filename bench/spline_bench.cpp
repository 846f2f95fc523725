// SPDX-License-Identifier: MIT

// Compares the spline with that of the GNU Scientific Library on the same 100,000
// points, and the reading of points with the number parser alone.
//
// Benchmarks are named by subject, work and implementation; ratios.csv lists which are compared.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gsl/gsl_spline.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "mfcurves/functions/mfDataPoints.h"
#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/host/Spline.h"
#include "mfcurves/interfaces/QelSession.h"
#include "tools/mfcurve/pointsFile.h"

namespace bench {
namespace {

constexpr int kPoints = 100000;
constexpr std::size_t kQueries = 1 << 17;

struct Points {
    std::vector<double> x;
    std::vector<double> y;
};

// Measured points: uneven distances between 0.5 and 1.5, a slow wave and noise.
const Points& points()
{
    static const Points made = [] {
        Points points;
        std::mt19937_64 random(4);
        std::uniform_real_distribution<double> distance(0.5, 1.5);
        double x = 0.0;
        for (int i = 0; i < kPoints; ++i) {
            points.x.push_back(x);
            points.y.push_back(std::sin(x * 0.01) + 0.01 * distance(random));
            x += distance(random);
        }
        return points;
    }();
    return made;
}

// Steps along the curve, with that many steps per piece.
std::vector<double> stepQueries(double stepsToAPiece)
{
    const double end = points().x.back();
    std::vector<double> queries(kQueries);
    for (std::size_t i = 0; i < kQueries; ++i)
        queries[i] = std::fmod(static_cast<double>(i) / stepsToAPiece, end);
    return queries;
}

std::vector<double> randomQueries()
{
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> position(0.0, points().x.back());
    std::vector<double> queries(kQueries);
    std::generate(queries.begin(), queries.end(), [&] { return position(random); });
    return queries;
}

struct Kind {
    const char* name;
    int number;
    const gsl_interp_type* gsl;
};

const Kind kKinds[] = {{"akima", 0, gsl_interp_akima}, {"cubic", 1, gsl_interp_cspline}};

struct FreeSpline {
    void operator()(gsl_spline* spline) const { gsl_spline_free(spline); }
    void operator()(gsl_interp_accel* accelerator) const { gsl_interp_accel_free(accelerator); }
};

class GslSpline {
public:
    explicit GslSpline(const Kind& kind)
        : spline_(gsl_spline_alloc(kind.gsl, kPoints)), accelerator_(gsl_interp_accel_alloc())
    {
        build();
    }
    void build() { gsl_spline_init(spline_.get(), points().x.data(), points().y.data(), kPoints); }
    double getValue(double x) { return gsl_spline_eval(spline_.get(), x, accelerator_.get()); }
    double getFirstDerivative(double x)
    {
        return gsl_spline_eval_deriv(spline_.get(), x, accelerator_.get());
    }
    double getSecondDerivative(double x)
    {
        return gsl_spline_eval_deriv2(spline_.get(), x, accelerator_.get());
    }

private:
    std::unique_ptr<gsl_spline, FreeSpline> spline_;
    std::unique_ptr<gsl_interp_accel, FreeSpline> accelerator_;
};

std::unique_ptr<ISimSplineData_c> ourSpline(const Kind& kind)
{
    auto spline = std::make_unique<mf::host::Spline>();
    spline->setKind(kind.number);
    for (int i = 0; i < kPoints; ++i)
        spline->addPoint(points().x[i], points().y[i]);
    return spline;
}

// Aborts when the two splines differ, because their comparison would be meaningless.
void checkAgreement(const Kind& kind)
{
    const auto ours = ourSpline(kind);
    GslSpline gsl(kind);
    for (const double x : randomQueries()) {
        if (std::abs(ours->getValue(x) - gsl.getValue(x)) > 1e-9 ||
            std::abs(ours->getSecondDerivative(x) - gsl.getSecondDerivative(x)) > 1e-9) {
            std::fprintf(stderr, "the splines of kind %s disagree at %.17g\n", kind.name, x);
            std::exit(1);
        }
    }
}

// One iteration is one x.
template <typename Evaluate>
void overQueries(benchmark::State& state, const std::vector<double>& queries, const Evaluate& evaluate)
{
    std::size_t i = 0;
    for (auto _ : state) {
        evaluate(queries[i]);
        i = (i + 1) % kQueries;
    }
}

void evaluateOurs(benchmark::State& state, const Kind& kind, const std::vector<double>& queries)
{
    const auto spline = ourSpline(kind);
    spline->getValue(0.0);
    overQueries(state, queries, [&](double x) {
        benchmark::DoNotOptimize(spline->getValue(x));
        benchmark::DoNotOptimize(spline->getFirstDerivative(x));
        benchmark::DoNotOptimize(spline->getSecondDerivative(x));
        benchmark::DoNotOptimize(spline->getThirdDerivative(x));
    });
}

void evaluateGsl(benchmark::State& state, const Kind& kind, const std::vector<double>& queries)
{
    GslSpline spline(kind);
    overQueries(state, queries, [&](double x) {
        benchmark::DoNotOptimize(spline.getValue(x));
        benchmark::DoNotOptimize(spline.getFirstDerivative(x));
        benchmark::DoNotOptimize(spline.getSecondDerivative(x));
    });
}

void buildOurs(benchmark::State& state, const Kind& kind)
{
    const auto spline = ourSpline(kind);
    for (auto _ : state) {
        spline->setKind(kind.number);  // the pieces are built again at the next evaluation
        benchmark::DoNotOptimize(spline->getValue(0.0));
    }
}

void buildGsl(benchmark::State& state, const Kind& kind)
{
    GslSpline spline(kind);
    for (auto _ : state) {
        spline.build();
        benchmark::DoNotOptimize(spline.getValue(0.0));
    }
}

// One edit of a table of 100,000 rows and the first value after it.
void editOurs(benchmark::State& state)
{
    mf::host::Context host;
    QelSession_c::setMotionFunctionContext(&host);
    mfFunctionDataPoints_c function;
    for (int i = 0; i < kPoints; ++i)
        function.appendDataPoint(new mfDataPoints_c(new mfPoint2D_c(points().x[i], points().y[i])));
    double y = 0.0;
    for (auto _ : state) {
        function.modifyDataPoint(kPoints / 2, 1, 0.0, y);
        benchmark::DoNotOptimize(function.evaluate(1.0, 0));
        y += 1.0;
    }
}

const std::string& csvText()
{
    static const std::string made = [] {
        std::string text = "x, y\n";
        char line[80];
        for (int i = 0; i < kPoints; ++i) {
            std::snprintf(line, sizeof line, "%.9g,%.9g\n", points().x[i], points().y[i]);
            text += line;
        }
        return text;
    }();
    return made;
}

void readOurs(benchmark::State& state)
{
    const std::string& text = csvText();
    for (auto _ : state) {
        auto result = mfcurve::parsePoints(text);
        benchmark::DoNotOptimize(result);
    }
}

// Only parses the numbers; one character follows each.
void readNumbersAlone(benchmark::State& state)
{
    const std::string& text = csvText();
    for (auto _ : state) {
        const char* at = text.data() + text.find('\n') + 1;
        const char* const end = text.data() + text.size();
        double sum = 0.0;
        while (at < end) {
            double number = 0.0;
            at = std::from_chars(at, end, number).ptr + 1;
            sum += number;
        }
        benchmark::DoNotOptimize(sum);
    }
}

[[maybe_unused]] const bool kRegistered = [] {
    static const std::vector<double> walking = stepQueries(10.0);
    static const std::vector<double> striding = stepQueries(3.0);
    static const std::vector<double> random = randomQueries();
    for (const Kind& kind : kKinds) {
        checkAgreement(kind);
        const std::string name = kind.name;
        const auto add = [&](const std::string& work, auto run) {
            benchmark::RegisterBenchmark((name + work).c_str(), run);
        };
        add("/walking/spline", [&](benchmark::State& state) { evaluateOurs(state, kind, walking); });
        add("/walking/gsl", [&](benchmark::State& state) { evaluateGsl(state, kind, walking); });
        add("/striding/spline", [&](benchmark::State& state) { evaluateOurs(state, kind, striding); });
        add("/striding/gsl", [&](benchmark::State& state) { evaluateGsl(state, kind, striding); });
        add("/jumping/spline", [&](benchmark::State& state) { evaluateOurs(state, kind, random); });
        add("/jumping/gsl", [&](benchmark::State& state) { evaluateGsl(state, kind, random); });
        add("/build/spline", [&](benchmark::State& state) { buildOurs(state, kind); });
        add("/build/gsl", [&](benchmark::State& state) { buildGsl(state, kind); });
    }
    benchmark::RegisterBenchmark("points/edit/table", editOurs);
    benchmark::RegisterBenchmark("points/read/csv", readOurs);
    benchmark::RegisterBenchmark("points/read/numbers_alone", readNumbersAlone);
    return true;
}();

}  // namespace
}  // namespace bench
