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
