#include "mfcurves/host/Spline.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace mf::host {

namespace {

constexpr int kAkima = 0;
constexpr int kNaturalCubic = 1;

using Knots = std::vector<double>;
using Pieces = std::vector<SplinePiece>;

// Has memory on its way to the processor while something else is looked at. Any
// address may be named.
void fetchAhead([[maybe_unused]] const void* address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

// Joins the points by chords, which is all that the linear kind asks for and what
// the other two start from.
void joinByChords(const Knots& knots, Pieces& pieces)
{
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
        pieces[i].b = (pieces[i + 1].a - pieces[i].a) / (knots[i + 1] - knots[i]);
}

// The slope at a point from the two chords ahead of it and the two behind it:
// the nearer ones, each weighted by how much the curve bends on the other side.
// Without a bend on either side the two nearer chords count alike.
double akimaSlope(const double* chords)
{
    const double weightBefore = std::abs(chords[3] - chords[2]);
    const double weightBehind = std::abs(chords[1] - chords[0]);
    const double weights = weightBefore + weightBehind;
    if (weights == 0.0)
        return 0.5 * (chords[1] + chords[2]);
    return (weightBefore * chords[1] + weightBehind * chords[2]) / weights;
}

// H. Akima, A new method of interpolation and smooth curve fitting based on local
// procedures, J. ACM 17 (1970). At either end two chords are added that continue
// the last two on a parabola. Needs three points.
void bendByAkima(const Knots& knots, Pieces& pieces)
{
    const std::size_t last = pieces.size() - 1;
    std::vector<double> chords(last + 4);  // the chord of piece i stands at i + 2
    for (std::size_t i = 0; i < last; ++i)
        chords[i + 2] = pieces[i].b;
    chords[1] = 2.0 * chords[2] - chords[3];
    chords[0] = 2.0 * chords[1] - chords[2];
    chords[last + 2] = 2.0 * chords[last + 1] - chords[last];
    chords[last + 3] = 2.0 * chords[last + 2] - chords[last + 1];

    double slope = akimaSlope(&chords[0]);
    for (std::size_t i = 0; i < last; ++i) {
        SplinePiece& piece = pieces[i];
        const double slopeBehind = akimaSlope(&chords[i + 1]);
        const double length = knots[i + 1] - knots[i];
        const double bend = (piece.b - slope) / length;
        const double bendBehind = (piece.b - slopeBehind) / length;
        piece.b = slope;
        piece.c = 2.0 * bend + bendBehind;
        piece.d = -(bend + bendBehind) / length;
        slope = slopeBehind;
    }
}

// The cubic spline with continuous second derivative that is 0 at both ends; de
// Boor, A Practical Guide to Splines, chapter IV. With h the length and m the chord
// of a piece, the halves c of the second derivatives at the points satisfy
//     h[i-1] c[i-1] + 2 (h[i-1] + h[i]) c[i] + h[i] c[i+1] = 3 (m[i] - m[i-1]).
// Until c is known, it holds the right side and d the diagonal of this system.
// Needs three points.
void bendNaturally(const Knots& knots, Pieces& pieces)
{
    const std::size_t last = pieces.size() - 1;
    double lengthBefore = knots[1] - knots[0];
    for (std::size_t i = 1; i < last; ++i) {
        const double length = knots[i + 1] - knots[i];
        pieces[i].c = 3.0 * (pieces[i].b - pieces[i - 1].b);
        pieces[i].d = 2.0 * (lengthBefore + length);
        if (i > 1) {
            const double factor = lengthBefore / pieces[i - 1].d;
            pieces[i].c -= factor * pieces[i - 1].c;
            pieces[i].d -= factor * lengthBefore;
        }
        lengthBefore = length;
    }

    pieces[0].c = 0.0;
    pieces[last].c = 0.0;
    for (std::size_t i = last; i-- > 0;) {
        SplinePiece& piece = pieces[i];
        const double bendBehind = pieces[i + 1].c;
        const double length = knots[i + 1] - knots[i];
        if (i > 0)
            piece.c = (piece.c - length * bendBehind) / piece.d;
        piece.b -= length * (2.0 * piece.c + bendBehind) / 3.0;
        piece.d = (bendBehind - piece.c) / (3.0 * length);
    }
}

// Expands the last but one piece at the last point, whose own Y is kept.
void expandAtEnd(const Knots& knots, Pieces& pieces)
{
    const std::size_t last = pieces.size() - 1;
    const SplinePiece& piece = pieces[last - 1];
    SplinePiece& end = pieces[last];
    const double t = knots[last] - knots[last - 1];
    end.b = piece.b + t * (2.0 * piece.c + t * (3.0 * piece.d));
    end.c = piece.c + t * (3.0 * piece.d);
    end.d = piece.d;
}

}  // namespace

void Spline::setKind(int kind)
{
    kind_ = kind;
    iForgetPieces();
}

void Spline::copyFrom(ISimSplineData_c* source)
{
    if (source == nullptr || source == this)
        return;
    clearPoints();
    for (const auto& [x, y] : source->getPointMap())
        addPoint(x, y);
    setKind(source->getKind());
}

void Spline::clearPoints()
{
    points_.clear();
    iForgetPieces();
}

void Spline::addPoint(double x, double y)
{
    if (!std::isfinite(x))
        return;
    points_.insert_or_assign(points_.end(), x, y);
    iForgetPieces();
}

double Spline::getValue(double x)
{
    return iEvaluate<0>(x);
}

double Spline::getFirstDerivative(double x)
{
    return iEvaluate<1>(x);
}

double Spline::getSecondDerivative(double x)
{
    return iEvaluate<2>(x);
}

double Spline::getThirdDerivative(double x)
{
    return iEvaluate<3>(x);
}

// The piece that answered last answers most of the time, in as few instructions as
// can be. Doubles from 0 on are in the order of their bits, and the bits of negative
// ones and of NaN lie above them all, so one comparison tells 0 <= t < length.
template <int order>
double Spline::iEvaluate(double x)
{
    const double t = x - current_.start;
    if (std::bit_cast<std::uint64_t>(t) < current_.lengthBits)
        return iOrderAt<order>(t);
    return iStepAndEvaluate<order>(x);
}

template <int order>
double Spline::iOrderAt(double t) const
{
    if constexpr (order == 0)
        return current_.a + t * (current_.b + t * (current_.c + t * current_.d));
    else if constexpr (order == 1)
        return current_.b + t * (current_.c2 + t * current_.d3);
    else if constexpr (order == 2)
        return current_.c2 + t * current_.d6;
    else
        return current_.d6;
}

// Curves are mostly walked along, so the piece behind is tried before any search.
// Stands apart so that the caller has nothing to save and restore for it.
template <int order>
[[gnu::noinline]] double Spline::iStepAndEvaluate(double x)
{
    const double* const knot = current_.knot;
    if (!(x >= knot[1] && x < knot[2]))
        return iSearchAndEvaluate(x, order);
    iEnter(knot + 1, current_.piece + 1);
    return iOrderAt<order>(x - current_.start);
}

double Spline::iSearchAndEvaluate(double x, int order)
{
    if (!built_)
        iBuild();
    if (!(x >= firstX_ && x <= lastX_))
        return iOutside(x, order);
    const std::size_t index = iPieceAt(x);
    iEnter(&knots_[index], &pieces_[index]);
    const double t = x - current_.start;
    switch (order) {
        case 0:
            return iOrderAt<0>(t);
        case 1:
            return iOrderAt<1>(t);
        case 2:
            return iOrderAt<2>(t);
        default:
            return iOrderAt<3>(t);
    }
}

double Spline::iOutside(double x, int order) const
{
    if (std::isnan(x))
        return x;
    if (points_.empty() || order > 1)
        return 0.0;
    const bool isAhead = x < firstX_;
    const SplinePiece& end = isAhead ? pieces_.front() : pieces_.back();
    if (order == 1)
        return end.b;
    const double distance = x - (isAhead ? firstX_ : lastX_);
    return end.b == 0.0 ? end.a : end.a + end.b * distance;  // 0 times infinity is not 0
}

void Spline::iEnter(const double* knot, const SplinePiece* piece)
{
    const double length = knot[1] - knot[0];
    current_ = {knot[0],        std::bit_cast<std::uint64_t>(length),
                piece->a,       piece->b,
                piece->c,       piece->d,
                2.0 * piece->c, 3.0 * piece->d,
                6.0 * piece->d, knot,
                piece};
}

// The last piece that starts at or before x, for an x from the first point to the
// last.
std::size_t Spline::iPieceAt(double x) const
{
    const double* const knots = knots_.data();
    const std::uint32_t bucket = iBucketOf(x);
    std::size_t low = pieceAtBucket_[bucket];
    const SplinePiece* const pieces = pieces_.data();
    fetchAhead(pieces + low);  // one of these two it will be, nearly always
    fetchAhead(pieces + low + 1);
    low += x >= knots[low + 1] ? 1 : 0;  // without a branch, as it goes either way in most buckets
    if (x < knots[low + 1])
        return low;
    const double* const end = knots + pieceAtBucket_[bucket + 1] + 1;
    return static_cast<std::size_t>(std::upper_bound(knots + low + 1, end, x) - knots) - 1;
}

// Never falls as x grows, whatever the rounding, which is all that the index needs:
// points in lower buckets lie below x and points in higher ones above it.
std::uint32_t Spline::iBucketOf(double x) const
{
    const double bucket = (x - firstX_) * bucketsPerX_;
    return bucket < lastBucket_ ? static_cast<std::uint32_t>(bucket) : lastBucket_;
}

void Spline::iBuild()
{
    knots_.clear();
    pieces_.clear();
    knots_.reserve(points_.size() + 2);
    pieces_.reserve(points_.size());
    for (const auto& [x, y] : points_) {
        knots_.push_back(x);
        pieces_.push_back({y, 0.0, 0.0, 0.0});
    }
    if (!pieces_.empty()) {
        joinByChords(knots_, pieces_);
        if (pieces_.size() > 2 && kind_ == kAkima)
            bendByAkima(knots_, pieces_);
        if (pieces_.size() > 2 && kind_ == kNaturalCubic)
            bendNaturally(knots_, pieces_);
        if (pieces_.size() > 1)
            expandAtEnd(knots_, pieces_);
        iBuildIndex();
    }
    built_ = true;
}

// One bucket a point. Where the width of a bucket cannot be told, because the range
// overflows or vanishes in it, all points share one.
void Spline::iBuildIndex()
{
    const auto count = static_cast<std::uint32_t>(pieces_.size());
    firstX_ = knots_.front();
    lastX_ = knots_.back();
    knots_.insert(knots_.end(), 2, std::nextafter(lastX_, kInfinity));
    bucketsPerX_ = count / (lastX_ - firstX_);
    lastBucket_ = count - 1;
    if (!std::isfinite(bucketsPerX_) || bucketsPerX_ == 0.0) {
        bucketsPerX_ = 0.0;
        lastBucket_ = 0;
    }

    // The piece at an edge is the number of points, the first apart, below it.
    pieceAtBucket_.assign(lastBucket_ + 2, 0);
    for (std::uint32_t i = 1; i < count; ++i)
        ++pieceAtBucket_[iBucketOf(knots_[i]) + 1];
    std::partial_sum(pieceAtBucket_.begin(), pieceAtBucket_.end(), pieceAtBucket_.begin());
}

void Spline::iForgetPieces()
{
    built_ = false;
    firstX_ = kInfinity;
    lastX_ = -kInfinity;
    current_ = {};
}

}  // namespace mf::host
