// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/foundRange.h"

namespace mf::analysis {

using engine::Interval;

void FoundRange::see(double x, const Interval& y)
{
    if (!y.isFinite())
        return;
    if (!(y.middle() >= seen.lo)) {
        seen.lo = y.middle();
        seenLowAt = x;
    }
    if (!(y.middle() <= seen.hi)) {
        seen.hi = y.middle();
        seenHighAt = x;
    }
}

void FoundRange::offer(double x, const Interval& y)
{
    if (!y.isFinite())
        return;
    const double same = 0x1p-51 * y.largest();
    const bool unknown = !least.y.isFinite();
    const double below = least.y.middle() - y.middle();
    const double above = y.middle() - greatest.y.middle();
    if (unknown || below > same || (below >= -same && x < least.x))
        least = {x, y};
    if (unknown || above > same || (above >= -same && x < greatest.x))
        greatest = {x, y};
    see(x, y);
}

void FoundRange::replaceIfAsGood(double x, const Interval& y)
{
    if (y.middle() <= least.y.middle())
        least = {x, y};
    if (y.middle() >= greatest.y.middle())
        greatest = {x, y};
}

}  // namespace mf::analysis
