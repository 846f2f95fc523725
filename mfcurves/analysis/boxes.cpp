// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/boxes.h"

namespace mf::analysis {

using engine::Interval;
using engine::kUnbounded;

// From the highest derivative down. Each order lies within its natural enclosure, within
// Taylor's formula about the middle (with a remainder of second order), and within those
// about both ends (of first order; these are sharp where a derivative is 0 at an end, as in
// motion laws). Where the next order has one sign, the order lies between its values at the
// ends.
Enclosures BoxEvaluator::over(double from, double to, const Enclosures& atFrom, double middle,
                              const Enclosures& atMiddle, const Enclosures& atTo)
{
    Enclosures t;
    evaluate({from, to}, t);
    const Interval box(from, to);
    const Interval forward = box - Interval(from);
    const Interval backward = box - Interval(to);
    const Interval around = box - Interval(middle);
    const double reach = std::max(-around.lo, around.hi);
    const Interval halfSquare(0.0, engine::productUp(0.5 * reach, reach));
    const auto top = static_cast<std::size_t>(highest());

    for (std::size_t k = top; k-- > 0;) {
        const Interval& slope = t[k + 1];
        if (t[k].partial || !slope.isFinite())
            continue;
        t[k] = common(t[k], atFrom[k] + slope * forward);
        t[k] = common(t[k], atTo[k] + slope * backward);
        const bool second = k + 2 <= top && t[k + 2].isFinite();
        const Interval about = second ? atMiddle[k + 1] * around + t[k + 2] * halfSquare : slope * around;
        t[k] = common(t[k], atMiddle[k] + about);
        if (slope.lo >= 0.0)
            t[k] = common(t[k], {atFrom[k].lo, atTo[k].hi});
        else if (slope.hi <= 0.0)
            t[k] = common(t[k], {atTo[k].lo, atFrom[k].hi});
    }
    return t;
}

std::array<double, kHighestOrder + 1> BoxEvaluator::rounding(double from, double to)
{
    std::array<double, kHighestOrder + 1> errors;
    errors.fill(kUnbounded);
    budget_.spend(2 * cost());
    enclosure_.errorBounds({from, to}, errors.data());
    return errors;
}

}  // namespace mf::analysis
