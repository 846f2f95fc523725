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
/// Plain: the formula's own value. Where rows or points meet, this is the value of the
/// piece that begins at x; at lastX, of the piece that ends there.
/// Left and Right are one-sided limits: the row, the piece between two points or
/// the branch of a formula on that side.
enum class Side { Plain, Left, Right };

/// The values of a curve below firstX and above lastX.
enum class Outside {
    Extend,    ///< continues the formula of the row at that end, or the end tangent of a spline
    Hold,      ///< the value at that end, with derivatives of 0
    Repeat,    ///< the curve repeats without end in both directions, and starts again at lastX
    Undefined  ///< NaN
};

/// The value of a curve at one x, in the unit of its values, and its first three
/// derivatives by x. NaN for an order without a finite value.
struct CurveValues {
    double y;   ///< the value
    double d1;  ///< its first derivative by x
    double d2;  ///< its second derivative by x
    double d3;  ///< its third derivative by x

    /// The derivative of that order, where 0 is the value; NaN outside 0 to 3.
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

/// A curve as a value. It is made from a definition, a document or a motion function,
/// and never changes.
///
///     const mf::Curve cam = mf::Curve::read("cam.xml");
///     const mf::CurveValues at90 = cam.at(90.0);      // value, velocity, acceleration, jerk
///     const double velocity = cam(90.0, 1);           // one of them
///     const mf::Curve periodic = cam.with(mf::Outside::Repeat);
///
/// Inside its rows, and everywhere for points and expressions, a curve returns the bits
/// of mfFunctionData_c::evaluate for the same data. Where rows meet, mf::Side has the
/// rules; beyond the ends, mf::Outside.
///
/// Units: those of the definition; nothing is converted. Derivatives are by x.
/// Ends: [firstX(), lastX()], both included. A new curve has Outside::Extend.
/// No value: NaN for an order that is not finite at x, for an x that is NaN, for an
/// infinite x with Outside::Repeat, and for an order outside 0 to 3. A derivative of an
/// expression is also NaN where the value or a lower derivative is.
/// Errors: operations that make, read or write a curve throw CurveError with every
/// problem, std::bad_alloc when memory runs out, and nothing else. Evaluation never
/// throws.
/// Threads: any number may use one curve at once, copy it and destroy copies. Making
/// a curve works in any thread, with or without a host's context, and leaves context,
/// locale and the state of documents as they were. Only the thread that owns a function
/// may call `of` with it.
/// Cost: a copy shares the curve. `at` finds the piece by a binary search and runs one
/// formula; four orders cost little more than one. It takes no lock and does not
/// allocate, with one exception: a formula that needs more than 64 kB of registers
/// allocates them at its first evaluation in a thread. If that fails, the values are NaN.
/// Many x are fastest as an array, ascending.
class Curve {
public:
    /// The curve of a definition. Throws CurveError with every problem of the
    /// definition: no rows, points or text; a number that is not finite; rows or
    /// points out of order, `from` above `to`; a law that is not known or does not
    /// compile; a text that is not an expression of at most one variable;
    /// Over::MotionResult without a name.
    MFCURVES_API explicit Curve(const CurveDefinition& definition);

    // A move copies, so that no curve is ever empty.
    Curve(const Curve&) = default;
    Curve& operator=(const Curve&) = default;
    ~Curve() = default;

    /// The curve of a document (docs/curve-document.md) in the file `path`, UTF-8. Oddities of
    /// the document are in warnings(). An error has its place, such as "cam.xml:12", "row 3" or
    /// "point 3". If rows run over a motion result, it has to be among those of `settings`; for
    /// points, only if `settings` have any. Laws that the document does not define come from the
    /// folders of `settings`.
    MFCURVES_API static Curve read(const std::string& path, const ReadSettings& settings = {});
    /// The same for the text of a document, UTF-8.
    MFCURVES_API static Curve parse(std::string_view xml, const ReadSettings& settings = {});
    /// The curve of the active kind of a function, in its current state. A row counts with
    /// its numbers and its law, even if it was not compiled since the last edit. A formula
    /// that is not that of its law is an error, and so is a row that does not start where
    /// the previous one ends. A host's own spline is replaced by mf::host::Spline through
    /// the same points, and an expression's unit factor counts as 1. The function does not
    /// change. What it leaves open, such as its quantity, is in warnings().
    MFCURVES_API static Curve of(mfFunctionData_c& function);

    /// The value at x (order 0) or that derivative (1 to 3).
    MFCURVES_API double operator()(double x, int order = 0) const noexcept;
    /// Value and derivatives at x, or their limits from one side of x.
    MFCURVES_API CurveValues at(double x, Side side = Side::Plain) const noexcept;
    /// Sets y[i] to the derivative of that order at x[i], for i below `count`, with the bits
    /// of single calls. The x need not be sorted; ascending is fastest. `y` may be `x`.
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

    /// All that this curve is made from, including the texts of laws that are not built in.
    /// A curve made from it elsewhere or later has the same bits at every x. The reference is
    /// valid as long as any copy of the curve exists.
    MFCURVES_API const CurveDefinition& definition() const;
    /// Oddities of the document or the function that was read, such as numbers that were read
    /// as others or rows that were moved. Empty for a curve made from a definition.
    MFCURVES_API const std::vector<Problem>& warnings() const;

    /// The same curve with another rule beyond its ends. The rule is not part of the
    /// definition or of documents, and equality ignores it.
    MFCURVES_API Curve with(Outside outside) const;
    /// The rule beyond the ends that `with` set.
    Outside outside() const
    {
        return outside_;
    }

    /// The curve as a document, UTF-8. Its numbers have six decimals (rows) or six
    /// digits (points, ranges). What this changes is appended to `losses`, if it is not
    /// null, as warnings: the first twenty numbers, each with its new value and how far the
    /// value of the curve moves, then their total. Texts that a document cannot store are
    /// reported, too.
    MFCURVES_API std::string toXml(std::vector<Problem>* losses = nullptr) const;
    /// Writes that document to a file. The file has either its old content or the new one,
    /// never a part of it. Throws CurveError with the reason if it cannot be written.
    MFCURVES_API void write(const std::string& path) const;

    /// Equal definitions.
    friend MFCURVES_API bool operator==(const Curve& a, const Curve& b);
    /// Different definitions.
    friend bool operator!=(const Curve& a, const Curve& b)
    {
        return !(a == b);
    }

    /// For the library itself: the compiled curve.
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
