// SPDX-License-Identifier: MIT

#include "mfcurves/host/KnotIndex.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace mf::host {

// One bucket per knot. If the width of a bucket cannot be computed, because the range
// overflows or is too small, all knots share one bucket.
KnotIndex::KnotIndex(std::vector<double> knots) : knots_(std::move(knots))
{
    if (knots_.empty())
        return;
    const auto count = static_cast<std::uint32_t>(knots_.size());
    first_ = knots_.front();
    last_ = knots_.back();
    knots_.insert(knots_.end(), 2, std::nextafter(last_, kInfinity));
    bucketsPerX_ = count / (last_ - first_);
    lastBucket_ = count - 1;
    if (!std::isfinite(bucketsPerX_ * first_) || !std::isfinite(bucketsPerX_ * last_)) {
        bucketsPerX_ = 0.0;
        lastBucket_ = 0;
    }
    bucketsBelowFirst_ = first_ * bucketsPerX_;

    // The place at an edge is the number of knots, the first apart, below it.
    placeAtBucket_.assign(static_cast<std::size_t>(lastBucket_) + 2, 0);
    for (std::uint32_t i = 1; i < count; ++i)
        ++placeAtBucket_[iBucketOf(knots_[i]) + 1];
    std::partial_sum(placeAtBucket_.begin(), placeAtBucket_.end(), placeAtBucket_.begin());
}

std::size_t KnotIndex::iSearch(double x, std::size_t low, std::uint32_t bucket) const
{
    const double* const knots = knots_.data();
    const double* const end = knots + placeAtBucket_[bucket + 1] + 1;
    return static_cast<std::size_t>(std::upper_bound(knots + low + 1, end, x) - knots) - 1;
}

}  // namespace mf::host
