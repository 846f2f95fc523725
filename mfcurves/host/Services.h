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
    UnitKind_None = 0,  ///< a quantity that is not set or has no meaning
    UnitKind_Displacement = 1,
    UnitKind_Velocity = 2,
    UnitKind_Acceleration = 3,
    UnitKind_Force = 4,
    UnitKind_Torque = 5,
};

/// The services of a program that is its own host.
///
/// A new object has no design library, no resource library and no motion results,
/// and its unit factors are 1.0.
///
/// Threads: set it up before functions are used; after that, several threads may use it.
/// Ownership: this object owns the splines that createSplineData makes, so it has to
/// outlive the functions that use them. releaseSplineData ignores a spline that this
/// object did not make.
class MFCURVES_API Services : public IMotionServices_c {
public:
    /// Makes one new, empty spline.
    using SplineFactory = std::function<std::unique_ptr<ISimSplineData_c>()>;

    Services();
    ~Services() override;
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    /// Sets the folders of the design library, separated by ";"; blanks are part of a name.
    /// The profile manager reads them at its next rebuild and remembers the folders that
    /// it found: see mfProfileManager_c::rebuildUserProfileMap.
    void setDesignLibraryPaths(const CString& paths) { designLibraryPaths_ = paths; }
    /// Sets the path of the resource library, which is returned for every base name.
    void setResourceLibraryPath(const CString& path) { resourceLibraryPath_ = path; }
    /// Sets the factor that values of a UnitKind are divided by; 1.0 unless set.
    void setUnitFactor(int unitKind, double factor) { unitFactors_[unitKind] = factor; }
    /// Sets the names of the existing motion results. Without names, data points in a
    /// document accept any motion result and segments accept none.
    void setMotionResultNames(std::vector<CString> names) { motionResultNames_ = std::move(names); }
    /// Sets what makes the splines from now on; an empty factory restores the default,
    /// Spline. If the factory returns null, so does createSplineData.
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
    std::mutex splinesMutex_;  // functions in several threads share the services
    std::map<ISimSplineData_c*, std::unique_ptr<ISimSplineData_c>> splines_;
};

}  // namespace mf::host
