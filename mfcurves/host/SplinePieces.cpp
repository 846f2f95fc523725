// SPDX-License-Identifier: MIT

#include "mfcurves/host/SplinePieces.h"

#include <cmath>
#include <utility>

namespace mf::host {

namespace {

constexpr int kAkima = 0;
constexpr int kNaturalCubic = 1;

using Knots = std::vector<double>;
using Pieces = std::vector<SplinePiece>;

// Joins the points by chords. The linear kind needs no more; the other two kinds start
// from this.
void joinByChords(const Knots& knots, Pieces& pieces)
{
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
        pieces[i].b = (pieces[i + 1].a - pieces[i].a) / (knots[i + 1] - knots[i]);
}

// The slope at a point from the two chords before it and the two after it: the mean of
// the two nearer chords, each weighted by how much the curve bends on the other side.
// Without a bend on both sides, the two nearer chords have equal weight.
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
    std::vector<double> chords(last + 4);  // the chord of piece i is at i + 2
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

// There are as many pieces as points: the last piece is the previous one expanded at the
// last point, and is valid only there.
SplinePieces::SplinePieces(std::vector<double> x, const std::vector<double>& y, int kind)
{
    pieces_.reserve(y.size());
    for (const double value : y)
        pieces_.push_back({value, 0.0, 0.0, 0.0});
    if (!pieces_.empty())
        joinByChords(x, pieces_);
    if (pieces_.size() > 2 && kind == kAkima)
        bendByAkima(x, pieces_);
    if (pieces_.size() > 2 && kind == kNaturalCubic)
        bendNaturally(x, pieces_);
    if (pieces_.size() > 1)
        expandAtEnd(x, pieces_);
    index_ = KnotIndex(std::move(x));
}

double SplinePieces::outside(double x, int order) const
{
    if (std::isnan(x))
        return x;
    if (pieces_.empty() || order > 1)
        return 0.0;
    const bool isBelow = x <= firstX();
    const SplinePiece& end = isBelow ? pieces_.front() : pieces_.back();
    if (order == 1)
        return end.b;
    const double distance = x - (isBelow ? firstX() : lastX());
    return end.b == 0.0 ? end.a : end.a + end.b * distance;  // 0 times infinity is not 0
}

}  // namespace mf::host
