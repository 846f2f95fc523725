// SPDX-License-Identifier: MIT

#include "mfcurves/engine/evaluateMany.h"

#include <algorithm>
#include <cmath>
#include <typeinfo>

#include "mfcurves/engine/blocks.h"
#include "mfcurves/engine/calculator.h"

namespace mf::engine {
namespace {

std::size_t evaluateOneByOne(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        MMEP_Data argument(x[i]);
        MMEP_Data result;
        if (!calculator.Evaluate(1, &argument, result))
            return i;
        y[i] = *result.getValue();
    }
    return count;
}

// Copies numbers and returns the number of those before the first that is not finite.
std::size_t copyUntilFailure(const double* values, std::size_t count, double* y)
{
    if (copyFinite(values, count, y))
        return count;
    const auto isFinite = [](double value) { return std::isfinite(value); };
    return static_cast<std::size_t>(std::find_if_not(values, values + count, isFinite) - values);
}

}  // namespace

bool isOwnCalculator(const ICalculator& calculator)
{
    return typeid(calculator) == typeid(Calculator);
}

int evaluateOrders(ICalculator& calculator, double x, int order, double* values)
{
    return static_cast<const Calculator&>(calculator).family().evaluateOrders(x, order, values);
}

std::size_t evaluateMany(ICalculator& calculator, const double* x, double* y, std::size_t count)
{
    if (!isOwnCalculator(calculator))
        return evaluateOneByOne(calculator, x, y, count);
    const auto& own = static_cast<const Calculator&>(calculator);
    if (!Block::takes(*own.family().programs().all))
        return evaluateOneByOne(calculator, x, y, count);
    // Callers request the orders of one expression one after the other at the same points.
    thread_local Block block;
    for (std::size_t done = 0; done < count;) {
        const std::size_t points = std::min(count - done, kBlock);
        const double* const values = block.values(own.family().programs(), own.order(), x + done, points);
        if (block.areFinite()) {
            std::copy_n(values, points, y + done);
            done += points;
            continue;
        }
        const std::size_t finite = copyUntilFailure(values, points, y + done);
        done += finite;
        if (finite < points)
            return done;
    }
    return count;
}

}  // namespace mf::engine
