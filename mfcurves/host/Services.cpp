// SPDX-License-Identifier: MIT

#include "mfcurves/host/Services.h"

#include <utility>

#include "mfcurves/host/Spline.h"

namespace mf::host {

Services::Services() = default;
Services::~Services() = default;

CString Services::getDesignLibraryPaths()
{
    return designLibraryPaths_;
}

CString Services::getResourceLibraryPath(const CString& /*baseName*/)
{
    return resourceLibraryPath_;
}

ISimSplineData_c* Services::createSplineData()
{
    std::unique_ptr<ISimSplineData_c> made = splineFactory_ ? splineFactory_() : std::make_unique<Spline>();
    ISimSplineData_c* const spline = made.get();
    if (spline) {
        const std::lock_guard lock(splinesMutex_);
        splines_[spline] = std::move(made);
    }
    return spline;
}

void Services::releaseSplineData(ISimSplineData_c* spline)
{
    const std::lock_guard lock(splinesMutex_);
    splines_.erase(spline);
}

void Services::getMotionResultNames(std::vector<CString>& names)
{
    names = motionResultNames_;
}

int Services::getMotionResultCount()
{
    return static_cast<int>(motionResultNames_.size());
}

double Services::getUnitFactor(int unitKind)
{
    const auto found = unitFactors_.find(unitKind);
    return found == unitFactors_.end() ? 1.0 : found->second;
}

int Services::getMotorUnitKind(mf::MotorDriveType_e quantity)
{
    switch (quantity) {
        case mf::MotorDriveType_Displacment:
            return UnitKind_Displacement;
        case mf::MotorDriveType_Velocity:
            return UnitKind_Velocity;
        case mf::MotorDriveType_Acceleration:
            return UnitKind_Acceleration;
        default:
            return UnitKind_None;
    }
}

int Services::getForceTorqueUnitKind(mf::ForceTorqueType_e quantity)
{
    switch (quantity) {
        case mf::ForceTorqueType_Force:
            return UnitKind_Force;
        case mf::ForceTorqueType_Torque:
            return UnitKind_Torque;
        default:
            return UnitKind_None;
    }
}

}  // namespace mf::host
