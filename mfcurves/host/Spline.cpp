#include "mfcurves/host/Spline.h"

#include <algorithm>
#include <cmath>

namespace mf::host {

namespace {

constexpr int kAkima = 0;
constexpr int kNaturalCubic = 1;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Joins the points by chords, which is all that the linear kind asks for and what
// the other two start from.
void joinByChords(std::vector<SplinePiece>& pieces)
{
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
        pieces[i].b = (pieces[i + 1].a - pieces[i].a) / (pieces[i + 1].start - pieces[i].start);
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
void bendByAkima(std::vector<SplinePiece>& pieces)
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
        const double length = pieces[i + 1].start - piece.start;
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
void bendNaturally(std::vector<SplinePiece>& pieces)
{
    const std::size_t last = pieces.size() - 1;
    double lengthBefore = pieces[1].start - pieces[0].start;
    for (std::size_t i = 1; i < last; ++i) {
        const double length = pieces[i + 1].start - pieces[i].start;
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
        const double length = pieces[i + 1].start - piece.start;
        if (i > 0)
            piece.c = (piece.c - length * bendBehind) / piece.d;
        piece.b -= length * (2.0 * piece.c + bendBehind) / 3.0;
        piece.d = (bendBehind - piece.c) / (3.0 * length);
    }
}

// Expands the last but one piece at the last point, whose own Y is kept.
void expandAtEnd(std::vector<SplinePiece>& pieces)
{
    SplinePiece& end = pieces[pieces.size() - 1];
    const SplinePiece& piece = pieces[pieces.size() - 2];
    const double t = end.start - piece.start;
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
    const double t = iMoveTo(x);
    return current_.a + t * (current_.b + t * (current_.c + t * current_.d));
}

double Spline::getFirstDerivative(double x)
{
    const double t = iMoveTo(x);
    return current_.b + t * (2.0 * current_.c + t * (3.0 * current_.d));
}

double Spline::getSecondDerivative(double x)
{
    const double t = iMoveTo(x);
    return 2.0 * current_.c + t * (6.0 * current_.d);
}

double Spline::getThirdDerivative(double x)
{
    iMoveTo(x);
    return 6.0 * current_.d;
}

// Makes current_ what answers at x and returns the distance of x from its start.
double Spline::iSearch(double x)
{
    if (!built_)
        iBuild();
    if (std::isnan(x)) {
        iForgetCurrent();
        current_ = {kNaN, kNaN, kNaN, kNaN, kNaN};
        return kNaN;
    }
    if (pieces_.empty())
        return iFollowTangent(SplinePiece{}, x, -kInfinity, kInfinity);
    const SplinePiece& first = pieces_.front();
    if (x < first.start)
        return iFollowTangent(first, x, -kInfinity, first.start);
    const SplinePiece& last = pieces_.back();
    if (x > last.start)
        return iFollowTangent(last, x, std::nextafter(last.start, kInfinity), kInfinity);
    iEnter(iPieceAt(x));
    return x - current_.start;
}

// Outside the points, from `from` to `to`. At an infinite distance the powers of t
// would meet the zeros behind them, so the value there takes their place.
double Spline::iFollowTangent(const SplinePiece& end, double x, double from, double to)
{
    current_ = {end.start, end.a, end.b, 0.0, 0.0};
    const double distance = x - end.start;
    if (!std::isfinite(distance)) {
        iForgetCurrent();
        if (end.b != 0.0)
            current_.a = end.b * distance;
        return 0.0;
    }
    from_ = std::max({from, -kLargest, end.start - kLargest});
    to_ = std::min(to, end.start + kLargest);
    return distance;
}

void Spline::iEnter(std::size_t piece)
{
    currentPiece_ = piece;
    current_ = pieces_[piece];
    from_ = current_.start;
    to_ = piece + 1 < pieces_.size() ? pieces_[piece + 1].start : std::nextafter(from_, kInfinity);
}

// The last piece that starts at or before x, for an x from the first point to the
// last. Curves are mostly walked along, so the neighbours of the piece found last
// are tried first.
std::size_t Spline::iPieceAt(double x) const
{
    const std::size_t count = pieces_.size();
    const std::size_t here = currentPiece_;
    if (here + 2 < count && x >= pieces_[here + 1].start && x < pieces_[here + 2].start)
        return here + 1;
    if (here > 0 && x >= pieces_[here - 1].start && x < pieces_[here].start)
        return here - 1;

    const std::uint32_t bucket = iBucketOf(x);
    std::size_t low = pieceAtBucket_[bucket];
    std::size_t high = pieceAtBucket_[bucket + 1];
    while (low < high) {
        const std::size_t middle = high - (high - low) / 2;
        if (pieces_[middle].start <= x)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

// Never falls as x grows, whatever the rounding, which is all that the index needs:
// points in lower buckets lie below x and points in higher ones above it.
std::uint32_t Spline::iBucketOf(double x) const
{
    const auto last = static_cast<std::uint32_t>(pieceAtBucket_.size() - 2);
    const double bucket = (x - pieces_.front().start) * bucketsPerX_;
    return bucket < last ? static_cast<std::uint32_t>(bucket) : last;
}

void Spline::iBuild()
{
    pieces_.clear();
    pieces_.reserve(points_.size());
    for (const auto& [x, y] : points_)
        pieces_.push_back({x, y, 0.0, 0.0, 0.0});

    joinByChords(pieces_);
    if (pieces_.size() > 2 && kind_ == kAkima)
        bendByAkima(pieces_);
    if (pieces_.size() > 2 && kind_ == kNaturalCubic)
        bendNaturally(pieces_);
    if (pieces_.size() > 1)
        expandAtEnd(pieces_);
    iBuildIndex();
    currentPiece_ = 0;
    built_ = true;
}

// One bucket a point. Where the width of a bucket cannot be told, because the range
// overflows or vanishes in it, all points share one.
void Spline::iBuildIndex()
{
    pieceAtBucket_.clear();
    if (pieces_.empty())
        return;
    std::size_t buckets = pieces_.size();
    bucketsPerX_ = static_cast<double>(buckets) / (pieces_.back().start - pieces_.front().start);
    if (!std::isfinite(bucketsPerX_) || bucketsPerX_ == 0.0) {
        bucketsPerX_ = 0.0;
        buckets = 1;
    }

    pieceAtBucket_.assign(buckets + 1, 0);
    std::size_t bucket = 1;
    for (std::size_t i = 1; i < pieces_.size(); ++i) {
        for (const std::size_t end = iBucketOf(pieces_[i].start); bucket <= end; ++bucket)
            pieceAtBucket_[bucket] = static_cast<std::uint32_t>(i - 1);
    }
    for (; bucket <= buckets; ++bucket)
        pieceAtBucket_[bucket] = static_cast<std::uint32_t>(pieces_.size() - 1);
}

void Spline::iForgetPieces()
{
    built_ = false;
    iForgetCurrent();
}

// No x is at or above infinity and below its opposite.
void Spline::iForgetCurrent()
{
    from_ = kInfinity;
    to_ = -kInfinity;
}

}  // namespace mf::host
