// SPDX-License-Identifier: MIT
#include "tools/mfcurve/curveSamples.h"

#include <algorithm>
#include <fmt/format.h>

#include "mfcurves/drawing/quantities.h"
#include "tools/mfcurve/expressionText.h"
#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/progress.h"
#include "tools/mfcurve/samples.h"
#include "tools/mfcurve/text.h"

namespace mfcurve {

namespace {

constexpr std::size_t kBlock = 4096;

void evaluate(const mf::Curve& curve, const Steps& steps, std::size_t start, double rate, SampleBlock& block)
{
    const std::size_t count = std::min(kBlock, steps.count() - start);
    block.x.resize(count);
    block.values.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        block.x[i] = steps.at(start + i);
    curve.evaluate(block.x.data(), count, block.values.data());
    if (rate == 1.0)
        return;
    for (mf::CurveValues& values : block.values)
        values = atRate(values, rate);
}

}  // namespace

int sampleCurve(const Input& input, const Steps& steps, double rate, const char* command,
                const std::function<void(const SampleBlock&)>& take)
{
    const int orders = mf::drawing::namedOrders(input.curve.definition());
    Progress progress(command, steps.count());
    SampleBlock block;
    std::size_t undefined = 0;
    double firstUndefined = 0.0;
    for (std::size_t done = 0; done < steps.count(); done += kBlock) {
        evaluate(input.curve, steps, done, rate, block);
        for (std::size_t i = 0; i < block.x.size(); ++i) {
            if (!isFinite(block.values[i], orders) && undefined++ == 0)
                firstUndefined = block.x[i];
        }
        take(block);
        progress.update(done);
    }
    if (undefined == 0)
        return kDone;
    warn(input.place,
         fmt::format("the curve has no finite value or derivative at {} of the samples, first at x = {}{}",
                     undefined, numberText(firstUndefined), zeroDivisor(input.curve, firstUndefined)));
    return kFailed;
}

}  // namespace mfcurve
