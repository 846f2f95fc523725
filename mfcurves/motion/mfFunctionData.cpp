// SPDX-License-Identifier: MIT

#include "mfcurves/motion/mfFunctionData.h"

#include <new>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/platform/messageBox.h"
#include "mfcurves/platform/resources.h"
#include "mfcurves/profiles/OlderProfile.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"

namespace {

// Makes the resource library current while the kinds are made, then restores the
// previous one.
class ResourceSwap {
public:
    explicit ResourceSwap(const wchar_t* path)
    {
        const mf::platform::ResourceModule* const library = mf::platform::loadResourceModule(path);
        before_ = mf::platform::currentResourceModule();
        mf::platform::setCurrentResourceModule(library);
    }
    ~ResourceSwap() { mf::platform::setCurrentResourceModule(before_); }
    ResourceSwap(const ResourceSwap&) = delete;
    ResourceSwap& operator=(const ResourceSwap&) = delete;

private:
    const mf::platform::ResourceModule* before_ = nullptr;
};

}  // namespace

mfFunctionData_c::mfFunctionData_c() = default;

mfFunctionData_c::~mfFunctionData_c()
{
    delete functionSegments_;
    functionSegments_ = nullptr;
    delete functionDataPoints_;
    functionDataPoints_ = nullptr;
    delete functionExpression_;
    functionExpression_ = nullptr;
}

// The host's resource library is current while the kinds are made, so that a kind may
// look up strings. A library that cannot be loaded is not a failure: it is a null
// module, in which every string is empty.
bool mfFunctionData_c::initialize()
{
    IMotionServices_c* const services = mf::interfaces::motionServices();
    if (!services) {
        mf::platform::showMessage(L"Failed to load the resource file", L"Error",
                                  mf::platform::kOkWithExclamation);
        return false;
    }
    const ResourceSwap swap(services->getResourceLibraryPath(L"mfres"));

    functionSegments_ = new (std::nothrow) mfFunctionSegments_c;
    functionDataPoints_ = new (std::nothrow) mfFunctionDataPoints_c;
    functionExpression_ = new (std::nothrow) mfFunctionExpression_c;

    if (!mfProfileManager_c::s_UseNewProfileManager()) {
        if (getDesignLibraryPath())
            setProfile();
        setDefaultProfile();
    }
    if (functionSegments_)
        iHandInStartUpProfiles();
    return true;
}

void mfFunctionData_c::iHandInStartUpProfiles()
{
    std::vector<CString> names, variables, x1s, y1s, x2s, y2s;
    std::vector<std::vector<CString>> tokens;
    getProfileName(names);
    getProfileEleExpr(tokens);
    getProfileIndependentVar(variables);
    getStartX(x1s);
    getStartY(y1s);
    getEndX(x2s);
    getEndY(y2s);
    functionSegments_->initializeSegment(names, tokens, variables, x1s, y1s, x2s, y2s);
}

// Calls `use` with the active kind, if it exists. The only place that decides which
// kind is active; it does so at each use, because the host may change the type.
template <class Use>
void mfFunctionData_c::iUseActiveKind(Use use)
{
    const auto useIfThere = [&](auto* kind) {
        if (kind)
            use(*kind);
    };
    switch (functionType_) {
        case mf::FunctionType_Segments:
            return useIfThere(functionSegments_);
        case mf::FunctionType_DataPoints:
            return useIfThere(functionDataPoints_);
        case mf::FunctionType_Expression:
            return useIfThere(functionExpression_);
    }
}

double mfFunctionData_c::evaluate(double x, int order)
{
    double value = 0.0;
    iUseActiveKind([&](auto& kind) { value = kind.evaluate(x, order); });
    return value;
}

void mfFunctionData_c::setMotorDriveType(mf::MotorDriveType_e quantity)
{
    iUseActiveKind([quantity](mfFunctionBase_c& kind) { kind.motorDependentVar = quantity; });
}

mf::MotorDriveType_e mfFunctionData_c::getMotorDriveType()
{
    mf::MotorDriveType_e quantity = mf::MotorDriveType_None;
    iUseActiveKind([&quantity](const mfFunctionBase_c& kind) { quantity = kind.motorDependentVar; });
    return quantity;
}

bool mfFunctionData_c::isXValueCycleAngle()
{
    bool isCycleAngle = false;
    iUseActiveKind([&isCycleAngle](const mfFunctionBase_c& kind) {
        isCycleAngle = kind.independentVar == mf::IndependentVariableType_CycleAngle;
    });
    return isCycleAngle;
}

bool mfFunctionData_c::isXValueTimeOrCycleAngle()
{
    return true;
}

void mfFunctionData_c::updateForLegacyData(bool pointPerRow)
{
    if (functionDataPoints_)
        functionDataPoints_->updateForLegacyData(pointPerRow);
    else if (functionExpression_)
        functionExpression_->updateForLegacyData(pointPerRow);
}

CString mfFunctionData_c::getName()
{
    return functionName_;
}

void mfFunctionData_c::setName(CString& name)
{
    functionName_ = name;
}

void mfFunctionData_c::setFunctionType(mf::FunctionType_e type)
{
    functionType_ = type;
}

mf::FunctionType_e mfFunctionData_c::getFunctionType()
{
    return functionType_;
}

void mfFunctionData_c::setXYDataType(mf::MotFuncXYDataType_e type)
{
    xyDataType_ = type;
}

mf::MotFuncXYDataType_e mfFunctionData_c::getXYDataType()
{
    return xyDataType_;
}

bool mfFunctionData_c::getCanUseElseWhere()
{
    return canUseElseWhere_;
}

void mfFunctionData_c::setCanUseElseWhere(bool usable)
{
    canUseElseWhere_ = usable;
}

void mfFunctionData_c::setMotionObjectType(mf::MotionObjectType_e type)
{
    functionObjectType_ = type;
}

mf::MotionObjectType_e mfFunctionData_c::getMotionObjectType()
{
    return functionObjectType_;
}

bool mfFunctionData_c::isMotorData()
{
    return functionObjectType_ == mf::MotionObjectType_Motor;
}

bool mfFunctionData_c::isForceData()
{
    return functionObjectType_ == mf::MotionObjectType_Force;
}

bool mfFunctionData_c::isTorqueData()
{
    return functionObjectType_ == mf::MotionObjectType_Torque;
}

IFunctionSegments_c* mfFunctionData_c::getFunctionSegments()
{
    return functionSegments_;
}

IFunctionDataPoints_c* mfFunctionData_c::getFunctionDataPoints()
{
    return functionDataPoints_;
}

IFunctionExpression_c* mfFunctionData_c::getFunctionExpression()
{
    return functionExpression_;
}

// For the caller, the text ends at its first zero character.
const char* mfFunctionData_c::getXMLData()
{
    const char* const text = xmlData_.c_str();
    return *text == '\0' ? nullptr : text;
}

void mfFunctionData_c::setXMLData(char* text)
{
    xmlData_ = std::string(text ? text : "");
}
