// SPDX-License-Identifier: MIT

// One curve, used by four threads at once. A curve is constant, so no lock and no copy is
// needed. Each thread finds the greatest velocity in its quarter of a rise.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <thread>
#include <vector>

#include "mfcurves/mfcurves.h"

namespace {

constexpr int kThreads = 4;
constexpr int kSamples = 1000;

double greatestVelocity(const mf::Curve& curve, double from, double to)
{
    std::vector<double> x(kSamples + 1);
    for (int i = 0; i <= kSamples; ++i)
        x[static_cast<std::size_t>(i)] = from + (to - from) * i / kSamples;
    std::vector<double> velocity(x.size());
    curve.evaluate(x.data(), x.size(), 1, velocity.data());
    return *std::max_element(velocity.begin(), velocity.end());
}

}  // namespace

int main()
{
    mf::SegmentShape shape;
    shape.rows = {{2.0, 100.0, "3-4-5-Polynomial"}};
    mf::CurveDefinition definition;
    definition.shape = shape;
    const mf::Curve rise(definition);

    double greatest[kThreads];
    std::vector<std::thread> threads;
    const double quarter = (rise.lastX() - rise.firstX()) / kThreads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&rise, &greatest, quarter, i] {
            greatest[i] = greatestVelocity(rise, i * quarter, (i + 1) * quarter);
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 0; i < kThreads; ++i)
        std::printf("quarter %d: %.6g\n", i + 1, greatest[i]);
    return 0;
}
