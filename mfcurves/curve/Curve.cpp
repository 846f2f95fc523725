// SPDX-License-Identifier: MIT

#include "mfcurves/curve/Curve.h"

#include <utility>

#include "mfcurves/curve/FrozenCurve.h"

namespace mf {

Curve::Curve(const CurveDefinition& definition)
    : frozen_(std::make_shared<const curve::FrozenCurve>(definition))
{
}

Curve::Curve(std::shared_ptr<const curve::FrozenCurve> frozen, Outside outside)
    : frozen_(std::move(frozen)), outside_(outside)
{
}

double Curve::operator()(double x, int order) const noexcept
{
    if (order < 0 || order > 3)
        return std::numeric_limits<double>::quiet_NaN();
    double values[4];
    frozen_->evaluate(x, Side::Plain, outside_, order, values);
    return values[order];
}

CurveValues Curve::at(double x, Side side) const noexcept
{
    double values[4];
    frozen_->evaluate(x, side, outside_, 3, values);
    return {values[0], values[1], values[2], values[3]};
}

void Curve::evaluate(const double* x, std::size_t count, int order, double* y) const noexcept
{
    for (std::size_t i = 0; i < count; ++i)
        y[i] = (*this)(x[i], order);
}

void Curve::evaluate(const double* x, std::size_t count, CurveValues* values) const noexcept
{
    for (std::size_t i = 0; i < count; ++i)
        values[i] = at(x[i]);
}

double Curve::firstX() const
{
    return frozen_->firstX();
}

double Curve::lastX() const
{
    return frozen_->lastX();
}

const CurveDefinition& Curve::definition() const
{
    return frozen_->definition();
}

const std::vector<Problem>& Curve::warnings() const
{
    return frozen_->warnings();
}

Curve Curve::with(Outside outside) const
{
    return {frozen_, outside};
}

bool operator==(const Curve& a, const Curve& b)
{
    return a.frozen_ == b.frozen_ || a.definition() == b.definition();
}

}  // namespace mf
