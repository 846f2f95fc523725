// SPDX-License-Identifier: MIT

// A host that needs more than mf::host::Context: it has its own context, services, study,
// spline and units.

#include <cstdio>
#include <map>
#include <set>
#include <vector>

#include "mfcurves/mfcurves.h"

namespace {

// Holds each value up to the next point: a curve of steps. The library uses a spline only
// through these operations.
class Steps : public ISimSplineData_c {
public:
    void setKind(int kind) override { kind_ = kind; }
    int getKind() override { return kind_; }
    void copyFrom(ISimSplineData_c* source) override
    {
        if (source) {
            points_ = source->getPointMap();
            kind_ = source->getKind();
        }
    }
    const std::map<double, double>& getPointMap() override { return points_; }
    void clearPoints() override { points_.clear(); }
    void addPoint(double x, double y) override { points_[x] = y; }
    double getValue(double x) override
    {
        const auto next = points_.upper_bound(x);
        return next == points_.begin() ? 0.0 : std::prev(next)->second;
    }
    double getFirstDerivative(double) override { return 0.0; }
    double getSecondDerivative(double) override { return 0.0; }
    double getThirdDerivative(double) override { return 0.0; }

private:
    std::map<double, double> points_;
    int kind_ = 2;
};

// The host computes in metres, and its expressions are in millimetres: their values are
// divided by the factor of the quantity.
class Services : public IMotionServices_c {
public:
    CString getDesignLibraryPaths() override { return L""; }  // only the built-in laws
    CString getResourceLibraryPath(const CString&) override { return L""; }
    ISimSplineData_c* createSplineData() override { return *lent_.insert(new Steps).first; }
    void releaseSplineData(ISimSplineData_c* spline) override
    {
        if (lent_.erase(spline) == 1)
            delete spline;
    }
    void getMotionResultNames(std::vector<CString>& names) override { names = {L"Slip Speed"}; }
    int getMotionResultCount() override { return 1; }
    double getUnitFactor(int unitKind) override { return unitKind == kLength ? 1000.0 : 1.0; }
    int getMotorUnitKind(mf::MotorDriveType_e quantity) override
    {
        return quantity == mf::MotorDriveType_Displacment ? kLength : kOther;
    }
    int getForceTorqueUnitKind(mf::ForceTorqueType_e) override { return kOther; }

    std::size_t lentSplines() const { return lent_.size(); }

private:
    static constexpr int kOther = 0;  // the host chooses these numbers
    static constexpr int kLength = 1;

    std::set<ISimSplineData_c*> lent_;
};

class Study : public IMotionStudy_c {
public:
    bool isCycleAngleAvailable() override { return true; }
};

class Context : public QelMotionFunctionContext_c {
public:
    IMotionServices_c* getMotionServices() override { return &services; }
    IMotionStudy_c* getMotionStudy() override { return &study; }
    mfProfileManager_c* getProfileManager() override { return &profiles; }

    Services services;
    Study study;
    mfProfileManager_c profiles;
};

void tryPoints()
{
    mfFunctionData_c curve;
    curve.initialize();
    curve.setFunctionType(mf::FunctionType_DataPoints);
    auto& table = *static_cast<mfFunctionDataPoints_c*>(curve.getFunctionDataPoints());
    table.insertDataPoint(0, new mfDataPoints_c(new mfPoint2D_c(0.0, 1.0)));
    table.insertDataPoint(1, new mfDataPoints_c(new mfPoint2D_c(2.0, 5.0)));
    std::printf("points by the host's spline: %g %g\n", curve.evaluate(1.9, 0), curve.evaluate(2.0, 0));
}

void tryExpression()
{
    mfFunctionData_c curve;
    curve.initialize();
    curve.setFunctionType(mf::FunctionType_Expression);
    curve.setMotorDriveType(mf::MotorDriveType_Displacment);
    curve.getFunctionExpression()->setMathExpression(L"250*time");
    std::printf("an expression in the host's unit: %g\n", curve.evaluate(2.0, 0));
}

}  // namespace

int main()
{
    Context context;  // outlives every function
    QelSession_c::setMotionFunctionContext(&context);
    context.profiles.rebuildUserProfileMap();  // reads the laws; a manager does not do this by itself

    tryPoints();
    tryExpression();
    std::printf("splines not given back: %zu\n", context.services.lentSplines());

    QelSession_c::setMotionFunctionContext(nullptr);
    return 0;
}
