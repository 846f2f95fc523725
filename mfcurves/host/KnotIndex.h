// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace mf::host {

/// Ascending knots, and a search for the last knot at or before an x. The search takes one look-up
/// in a table unless the knots are distributed very unevenly. Constant after construction.
class KnotIndex {
public:
    KnotIndex() = default;  ///< no knots
    /// Finite and ascending.
    explicit KnotIndex(std::vector<double> knots);

    /// The first and the last knot; infinity and minus infinity without knots.
    double first() const { return first_; }
    double last() const { return last_; }
    /// The knots, followed by two copies of the next double above the last knot, so that the two
    /// elements after each knot exist.
    const double* knots() const { return knots_.data(); }

    /// The index of the last knot at or before x, for an x from first() to last(). Before it is known,
    /// calls likely(i) with an index i such that the result is nearly always i or i + 1.
    template <class Likely>
    std::size_t at(double x, const Likely& likely) const
    {
        const double* const knots = knots_.data();
        const std::uint32_t bucket = iBucketOf(x);
        std::size_t low = placeAtBucket_[bucket];
        likely(low);
        low += x >= knots[low + 1] ? 1 : 0;  // without a branch, as it goes either way in most buckets
        return x < knots[low + 1] ? low : iSearch(x, low, bucket);
    }
    std::size_t at(double x) const
    {
        return at(x, [](std::size_t) {});
    }

private:
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();

    // Never decreases as x grows, whatever the rounding. The table needs no more: knots in
    // lower buckets are below x, knots in higher buckets above it. std::min of integers
    // takes no branch.
    std::uint32_t iBucketOf(double x) const
    {
        const auto bucket = static_cast<std::int64_t>(x * bucketsPerX_ - bucketsBelowFirst_);
        return static_cast<std::uint32_t>(std::min(bucket, lastBucket_));
    }

    // For an x in that bucket, at or above the knot after `low`.
    std::size_t iSearch(double x, std::size_t low, std::uint32_t bucket) const;

    std::vector<double> knots_;
    double first_ = kInfinity;
    double last_ = -kInfinity;
    // The range of x is divided into buckets of equal width. Entry k is the index at the lower
    // edge of bucket k; one more entry after the last has the last index.
    std::vector<std::uint32_t> placeAtBucket_;
    std::int64_t lastBucket_ = 0;
    double bucketsPerX_ = 0.0;
    double bucketsBelowFirst_ = 0.0;  // first_ * bucketsPerX_
};

}  // namespace mf::host
