// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#if __has_include(<version>)
#include <version>
#endif
#ifdef __cpp_lib_span
#include <span>
#endif

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"
#include "mfcurves/platform/mfExport.h"

class mfFunctionData_c;

namespace mf {

namespace curve {
class FrozenCurve;
}

/// From which side an x is approached.
///
/// Plain: where rows or points meet, the piece that begins at x, and at lastX the
/// one that ends there; inside a row and for an expression the formula's own value.
/// Left and Right are one-sided limits: the row, the piece between two points or
/// the branch of a formula on that side.
enum class Side { Plain, Left, Right };

/// What a curve is below firstX and above lastX.
enum class Outside {
    Extend,    ///< the formula of the row at that end goes on, or the end tangent of a spline
    Hold,      ///< the value at that end, with derivatives of 0
    Repeat,    ///< the curve begins anew at lastX, in both directions without end
    Undefined  ///< NaN
};

/// The value of a curve at one x, in the unit of its values, and its first three
/// derivatives by x. NaN where there is no finite value.
struct CurveValues {
    double y;   ///< the value
    double d1;  ///< its first derivative by x
    double d2;  ///< its second derivative by x
    double d3;  ///< its third derivative by x

    /// The derivative of that order, 0 being the value; NaN outside 0 to 3.
    double operator[](int order) const
    {
        switch (order) {
            case 0:
                return y;
            case 1:
                return d1;
            case 2:
                return d2;
            case 3:
                return d3;
            default:
                return std::numeric_limits<double>::quiet_NaN();
        }
    }
};

/// A curve as a value: made once from a definition, a document or a motion
/// function, and constant from then on.
///
///     const mf::Curve cam = mf::Curve::read("cam.xml");
///     const mf::CurveValues at90 = cam.at(90.0);      // value, velocity, acceleration, jerk
///     const double velocity = cam(90.0, 1);           // one of them
///     const mf::Curve periodic = cam.with(mf::Outside::Repeat);
///
/// Inside its rows, and everywhere for points and expressions, a curve has the bits
/// of mfFunctionData_c::evaluate for the same data. Where rows meet and beyond the
/// ends the rules are those of mf::Side and mf::Outside.
///
/// Units: those of the definition; nothing is converted. Derivatives are by x.
/// Ends: [firstX(), lastX()], both included. A new curve has Outside::Extend.
/// No value: NaN, for every order that is not finite at x, for a NaN, for an infinite
/// x with Outside::Repeat, and for an order outside 0 to 3. A derivative of an
/// expression is NaN also where the value or a lower derivative is.
/// Errors: whatever makes, reads or writes a curve throws CurveError with every
/// problem, std::bad_alloc when memory runs out, and nothing else. Evaluation never
/// throws.
/// Threads: any number may use one curve at once, copy it and destroy copies. Making
/// a curve works in any thread, with or without a host's context, and leaves context,
/// locale and the state of documents as they were; `of` belongs to the thread that owns
/// its function.
/// Cost: a copy shares the curve. `at` finds its piece in the time of a binary search
/// and runs one formula, four orders for little more than one. It takes no lock and
/// does not allocate, except that the first evaluation in a thread of a formula that
/// needs more than 64 kB of registers gets them; if it cannot, the values are NaN.
/// Many x are fastest as an array, ascending.
class Curve {
public:
    /// The curve of a definition. Throws CurveError with every problem of the
    /// definition: without rows, points or text; a number that is not finite, rows
    /// or points out of order, `from` above `to`; a law that is not known or does not
    /// compile, a text that is not an expression of one variable; Over::MotionResult
    /// without a name.
    MFCURVES_API explicit Curve(const CurveDefinition& definition);

    // Moving copies, so that there is no curve without a value.
    Curve(const Curve&) = default;
    Curve& operator=(const Curve&) = default;
    ~Curve() = default;

    /// The curve of a document (docs/curve-document.md) in the file `path`, UTF-8. What the
    /// document says oddly is in warnings(); an error says where as "cam.xml:12", "row 3" or
    /// "point 3", and names a motion result that `settings` lack. Rows take laws that the
    /// document does not define from the folders of `settings`.
    MFCURVES_API static Curve read(const std::string& path, const ReadSettings& settings = {});
    /// The same for the text of a document, UTF-8.
    MFCURVES_API static Curve parse(std::string_view xml, const ReadSettings& settings = {});
    /// The curve that a function is now: of the kind that is active. A row is its numbers
    /// and its law, whether or not it was compiled since the last edit; a formula that is not
    /// that of its law is an error. A table is accepted if each row starts where the
    /// previous one ends. A host's own spline is replaced by mf::host::Spline through
    /// the same points, and an expression's unit factor counts as 1. The function stays
    /// as it is; what it does not say, its quantity for one, is in warnings().
    MFCURVES_API static Curve of(mfFunctionData_c& function);

    /// The value at x (order 0) or that derivative (1 to 3).
    MFCURVES_API double operator()(double x, int order = 0) const noexcept;
    /// Value and derivatives at x, or their limits from one side of x.
    MFCURVES_API CurveValues at(double x, Side side = Side::Plain) const noexcept;
    /// Sets y[i] to the derivative of that order at x[i], for i below `count`. Any
    /// order of x; ascending is fastest. `y` may be `x`. The bits are those of single calls.
    MFCURVES_API void evaluate(const double* x, std::size_t count, int order, double* y) const noexcept;
    /// The same for value and derivatives: values[i] is at(x[i]).
    MFCURVES_API void evaluate(const double* x, std::size_t count, CurveValues* values) const noexcept;
#ifdef __cpp_lib_span
    /// The same for as many x as both spans have room for.
    void evaluate(std::span<const double> x, int order, std::span<double> y) const noexcept
    {
        evaluate(x.data(), x.size() < y.size() ? x.size() : y.size(), order, y.data());
    }
    /// Values and derivatives for as many x as both spans have room for.
    void evaluate(std::span<const double> x, std::span<CurveValues> values) const noexcept
    {
        evaluate(x.data(), x.size() < values.size() ? x.size() : values.size(), values.data());
    }
#endif

    MFCURVES_API double firstX() const;  ///< start of the first row, first point, or `from`
    MFCURVES_API double lastX() const;   ///< end of the last row, last point, or `to`

    /// All that makes this curve, the texts of its laws that are not built in included:
    /// a curve made from it has the same bits at every x, wherever and whenever. It lives as
    /// long as any copy of the curve.
    MFCURVES_API const CurveDefinition& definition() const;
    /// What reading the document or the function found odd: numbers that read as others, rows
    /// that moved. Empty for a curve made from a definition.
    MFCURVES_API const std::vector<Problem>& warnings() const;

    /// The same curve under another rule beyond its ends. The rule is not part of the
    /// definition and of documents, and equality does not see it.
    MFCURVES_API Curve with(Outside outside) const;
    /// The rule beyond the ends that `with` set.
    Outside outside() const
    {
        return outside_;
    }

    /// The curve as a document, UTF-8. Its numbers have six decimals (rows) or six
    /// digits (points, ranges). What that changes is appended to `losses`, if it is
    /// not null, as warnings: twenty numbers one by one, each with what it becomes and how
    /// far the value of the curve moves, and how many there are. Texts that a document cannot
    /// hold are among them.
    MFCURVES_API std::string toXml(std::vector<Problem>* losses = nullptr) const;
    /// Writes that document to a file. The file holds the old content or the new, never a
    /// part. Throws CurveError with the reason when it cannot be written.
    MFCURVES_API void write(const std::string& path) const;

    /// Equal definitions.
    friend MFCURVES_API bool operator==(const Curve& a, const Curve& b);
    /// Definitions that differ.
    friend bool operator!=(const Curve& a, const Curve& b)
    {
        return !(a == b);
    }

    /// For the library itself: what it evaluates.
    const curve::FrozenCurve& frozen() const
    {
        return *frozen_;
    }

private:
    Curve(std::shared_ptr<const curve::FrozenCurve> frozen, Outside outside);

    std::shared_ptr<const curve::FrozenCurve> frozen_;
    Outside outside_ = Outside::Extend;
};

}  // namespace mf
