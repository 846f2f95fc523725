// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/IMotionStudy.h"
#include "mfcurves/interfaces/ISimSplineData.h"
#include "mfcurves/interfaces/QelMotionFunctionContext.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/platform/encoding.h"

// The fake host of all tests. A test makes one on its stack:
//
//     mf::test::FakeHost host;                 // installs itself in the session
//     host.services.unitFactor = 2.0;          // set what it returns
//     host.servicesAnswer = nullptr;           // or make it return null
//     ...
//     EXPECT_THAT(host.calls, testing::ElementsAre("getMotionServices", "createSplineData"));
//
// `calls` records the calls in order, each with its name and arguments. The destructor
// removes the host from the session and fails the test if a spline that the host lent was
// not released, or one was released that it did not lend. So objects that use the host
// must be declared after it.

// How a failed comparison prints a text.
inline void PrintTo(const CString& text, std::ostream* os)
{
    *os << '"' << mf::platform::toUtf8(text.View()) << '"';
}

namespace mf::test {

using Calls = std::vector<std::string>;

// A spline that stores its points and records its calls. Its value and derivatives come
// from `answer`; by default the value at x is x + 0, the first derivative x + 10, the
// second x + 20, the third x + 30.
class RecordingSpline : public ISimSplineData_c {
public:
    Calls calls;
    int kind = 2;
    std::map<double, double> points;
    std::function<double(double x, int order)> answer = [](double x, int order) { return x + 10.0 * order; };

    void setKind(int newKind) override
    {
        record("setKind", newKind);
        kind = newKind;
    }
    int getKind() override
    {
        record("getKind");
        return kind;
    }
    // Copies points and kind through the interface, as any spline has to.
    void copyFrom(ISimSplineData_c* source) override
    {
        record("copyFrom");
        if (source == nullptr || source == this)
            return;
        points = source->getPointMap();
        kind = source->getKind();
    }
    const std::map<double, double>& getPointMap() override
    {
        record("getPointMap");
        return points;
    }
    void clearPoints() override
    {
        record("clearPoints");
        points.clear();
    }
    void addPoint(double x, double y) override
    {
        record("addPoint", x, y);
        points[x] = y;
    }
    double getValue(double x) override
    {
        record("getValue", x);
        return answer(x, 0);
    }
    double getFirstDerivative(double x) override
    {
        record("getFirstDerivative", x);
        return answer(x, 1);
    }
    double getSecondDerivative(double x) override
    {
        record("getSecondDerivative", x);
        return answer(x, 2);
    }
    double getThirdDerivative(double x) override
    {
        record("getThirdDerivative", x);
        return answer(x, 3);
    }

private:
    template <typename... Arguments>
    void record(const char* name, Arguments... arguments)
    {
        std::ostringstream call;
        call << name;
        ((call << ' ' << arguments), ...);
        calls.push_back(call.str());
    }
};

class FakeServices : public IMotionServices_c {
public:
    explicit FakeServices(Calls& calls) : calls_(calls) {}

    CString designLibraryPaths;
    CString resourceLibraryPath;
    bool givesSplines = true;  // false: createSplineData returns null
    std::vector<CString> motionResultNames;
    int motionResultCount = 0;                           // not the length of the names unless a test says so
    double unitFactor = 1.0;                             // of every unit kind without one of its own
    std::map<int, double> unitFactors;                   // by unit kind: motor quantities 100 + quantity,
                                                         // forces and torques 200 + quantity
    std::vector<std::unique_ptr<RecordingSpline>> lent;  // in the order lent, not yet back
    std::vector<std::unique_ptr<RecordingSpline>> takenBack;  // in the order taken back
    int strangers = 0;                                        // splines released that were never lent

    // The one spline that is lent; fails if there is not exactly one.
    RecordingSpline& spline()
    {
        if (lent.size() != 1)
            throw std::logic_error("the host has lent " + std::to_string(lent.size()) + " splines");
        return *lent.front();
    }

    CString getDesignLibraryPaths() override
    {
        calls_.emplace_back("getDesignLibraryPaths");
        return designLibraryPaths;
    }
    CString getResourceLibraryPath(const CString& baseName) override
    {
        calls_.push_back("getResourceLibraryPath " + mf::platform::toUtf8(baseName.View()));
        return resourceLibraryPath;
    }
    ISimSplineData_c* createSplineData() override
    {
        calls_.emplace_back("createSplineData");
        if (!givesSplines)
            return nullptr;
        lent.push_back(std::make_unique<RecordingSpline>());
        return lent.back().get();
    }
    void releaseSplineData(ISimSplineData_c* spline) override
    {
        calls_.emplace_back("releaseSplineData");
        for (auto it = lent.begin(); it != lent.end(); ++it) {
            if (it->get() == spline) {
                takenBack.push_back(std::move(*it));
                lent.erase(it);
                return;
            }
        }
        ++strangers;
    }
    void getMotionResultNames(std::vector<CString>& names) override
    {
        calls_.emplace_back("getMotionResultNames");
        EXPECT_TRUE(names.empty());
        names = motionResultNames;
    }
    int getMotionResultCount() override
    {
        calls_.emplace_back("getMotionResultCount");
        return motionResultCount;
    }
    double getUnitFactor(int unitKind) override
    {
        calls_.push_back("getUnitFactor " + std::to_string(unitKind));
        const auto found = unitFactors.find(unitKind);
        return found == unitFactors.end() ? unitFactor : found->second;
    }
    int getMotorUnitKind(mf::MotorDriveType_e quantity) override
    {
        calls_.push_back("getMotorUnitKind " + std::to_string(quantity));
        return 100 + quantity;
    }
    int getForceTorqueUnitKind(mf::ForceTorqueType_e quantity) override
    {
        calls_.push_back("getForceTorqueUnitKind " + std::to_string(quantity));
        return 200 + quantity;
    }

private:
    Calls& calls_;
};

class FakeStudy : public IMotionStudy_c {
public:
    explicit FakeStudy(Calls& calls) : calls_(calls) {}

    bool cycleAngleAvailable = true;

    bool isCycleAngleAvailable() override
    {
        calls_.emplace_back("isCycleAngleAvailable");
        return cycleAngleAvailable;
    }

private:
    Calls& calls_;
};

class FakeHost : public QelMotionFunctionContext_c {
public:
    Calls calls;
    FakeServices services{calls};
    FakeStudy study{calls};
    IMotionServices_c* servicesAnswer = &services;  // null: the host has no services
    IMotionStudy_c* studyAnswer = &study;           // null: there is no study
    mfProfileManager_c* managerAnswer = nullptr;    // a test that needs a manager makes one

    FakeHost() { QelSession_c::setMotionFunctionContext(this); }
    ~FakeHost() override
    {
        QelSession_c::setMotionFunctionContext(nullptr);
        EXPECT_TRUE(services.lent.empty()) << services.lent.size() << " splines did not come back";
        EXPECT_EQ(services.strangers, 0) << "splines came back that were never lent";
    }
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    IMotionServices_c* getMotionServices() override
    {
        calls.emplace_back("getMotionServices");
        return servicesAnswer;
    }
    IMotionStudy_c* getMotionStudy() override
    {
        calls.emplace_back("getMotionStudy");
        return studyAnswer;
    }
    mfProfileManager_c* getProfileManager() override
    {
        calls.emplace_back("getProfileManager");
        return managerAnswer;
    }
};

}  // namespace mf::test
