// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "tools/mfcurve/diagram.h"

class mfFunctionBase_c;
class mfFunctionDataPoints_c;
class mfFunctionExpression_c;
class mfFunctionSegments_c;
class mfSegment_c;

namespace mfcurve {

constexpr int kOrders = 4;  ///< the value and three derivatives

/// What a curve gives at one x; an order without a finite value is NaN.
struct Sample {
    double x;
    double y[kOrders];

    /// True when the value and its first `orders` - 1 derivatives are finite.
    bool isFinite(int orders) const;
};

struct Range {
    double from;
    double to;
};

/// Units as a picture shows them: nothing is converted.
struct Units {
    std::string variable;
    std::string value;
};

/// One motion function and what the tool needs to know of it.
///
/// The host's context has to stand before one is made, and outlive it.
class Curve {
public:
    /// A function of that kind without content. Fails when the library cannot
    /// make one.
    explicit Curve(mf::FunctionType_e kind);

    mfFunctionData_c& function() { return *function_; }
    mf::FunctionType_e kind() { return function_->getFunctionType(); }
    mfFunctionBase_c& base();  ///< the active kind
    mfFunctionSegments_c& segments();
    mfFunctionDataPoints_c& points();
    mfFunctionExpression_c& expression();

    std::string title() const { return title_; }
    void setTitle(const std::string& title);

    /// Where the curve is not what its document says, one sentence each.
    const std::vector<std::string>& remarks() const { return remarks_; }
    void setRemarks(std::vector<std::string> remarks) { remarks_ = std::move(remarks); }

    /// Value and three derivatives at x. Where two segments meet, the one that
    /// the library's search finds answers.
    Sample at(double x);
    /// The same from one row of a segment table.
    Sample atRow(int row, double x);

    /// How many orders its quantity has a name for: the value and, down to the
    /// jerk, its derivatives.
    int orderCount();
    /// Where the curve is defined; from 0 to 0 when it does not say.
    Range domain();

private:
    std::unique_ptr<mfFunctionData_c> function_;
    std::string title_;
    std::vector<std::string> remarks_;
};

/// The row of a segment table; never null for a row inside it.
mfSegment_c& rowOf(mfFunctionSegments_c& table, int row);

/// All points of a table, ascending in x.
std::vector<mfPoint2D_c> knotsOf(mfFunctionDataPoints_c& table);

/// The name of a row's profile without its source.
std::string profileName(mfSegment_c& segment);

/// "Velocity", by the order of a curve's derivative.
std::string quantityName(Curve& curve, int order);
/// "Cycle angle", or the name of the motion result or of the variable in the
/// text of an expression.
std::string variableName(Curve& curve);
/// The units that cam designers use for such a curve.
Units usualUnits(Curve& curve);
/// The unit of a derivative: "mm/s²" for the first of "mm/s" over "s".
std::string derivativeUnit(const Units& units, int order);

}  // namespace mfcurve
