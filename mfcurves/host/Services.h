// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/platform/mfExport.h"

namespace mf::host {

/// The quantities that have a unit of their own, as arguments of getUnitFactor.
enum UnitKind : int {
    UnitKind_None = 0,  ///< a quantity that is not set or has no meaning; its factor is 1.0 too
    UnitKind_Displacement = 1,
    UnitKind_Velocity = 2,
    UnitKind_Acceleration = 3,
    UnitKind_Force = 4,
    UnitKind_Torque = 5,
};

/// The services of a program that is its own host.
///
/// A new object names no design library, no resource library and no motion
/// results, and its unit factors are 1.0.
///
/// Threads: set it up before functions are used; then it may be asked from several.
/// Ownership: the splines that createSplineData makes belong to this object, so
/// it has to outlive the functions that use them. A spline that it did not make
/// is no business of releaseSplineData and stays with its owner.
class MFCURVES_API Services : public IMotionServices_c {
public:
    /// Makes one new, empty spline.
    using SplineFactory = std::function<std::unique_ptr<ISimSplineData_c>()>;

    Services();
    ~Services() override;
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    /// Sets the folders of the design library, separated by ";". The profile manager reads
    /// them at its next rebuild and remembers the folders that it found: see
    /// mfProfileManager_c::rebuildUserProfileMap. Blanks belong to a name.
    void setDesignLibraryPaths(const CString& paths) { designLibraryPaths_ = paths; }
    /// The path of the resource library, whatever base name is asked for.
    void setResourceLibraryPath(const CString& path) { resourceLibraryPath_ = path; }
    /// What the values of a quantity are divided by; 1.0 while nothing is set.
    void setUnitFactor(int unitKind, double factor) { unitFactors_[unitKind] = factor; }
    /// Sets the motion results that exist. Without names, data points take any result and
    /// segments none.
    void setMotionResultNames(std::vector<CString> names) { motionResultNames_ = std::move(names); }
    /// Makes the splines from now on; an empty factory brings the default back. A
    /// factory may answer null, and so does createSplineData then.
    void setSplineFactory(SplineFactory factory) { splineFactory_ = std::move(factory); }

    CString getDesignLibraryPaths() override;
    CString getResourceLibraryPath(const CString& baseName) override;
    ISimSplineData_c* createSplineData() override;
    void releaseSplineData(ISimSplineData_c* spline) override;
    void getMotionResultNames(std::vector<CString>& names) override;
    int getMotionResultCount() override;
    double getUnitFactor(int unitKind) override;
    int getMotorUnitKind(mf::MotorDriveType_e quantity) override;
    int getForceTorqueUnitKind(mf::ForceTorqueType_e quantity) override;

private:
    CString designLibraryPaths_;
    CString resourceLibraryPath_;
    std::map<int, double> unitFactors_;
    std::vector<CString> motionResultNames_;
    SplineFactory splineFactory_;
    std::mutex splinesMutex_;  // functions on distinct threads share the services
    std::map<ISimSplineData_c*, std::unique_ptr<ISimSplineData_c>> splines_;
};

}  // namespace mf::host
