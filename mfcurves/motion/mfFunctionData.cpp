#include "mfcurves/motion/mfFunctionData.h"

#include <new>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/functions/mfFunctionExpression.h"
#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/platform/messageBox.h"
#include "mfcurves/platform/resources.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/segments/mfFunctionSegments.h"

namespace {

// The end of a list getter: what the caller's list holds stays in front.
template <typename T>
void appendTo(std::vector<T>& list, const std::vector<T>& more)
{
    list.insert(list.end(), more.begin(), more.end());
}

// Makes the resource library current while the kinds are made, and the one
// before it again when that is done.
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

mfFunctionData_c::~mfFunctionData_c()
{
    delete functionSegments_;
    functionSegments_ = nullptr;
    delete functionDataPoints_;
    functionDataPoints_ = nullptr;
    delete functionExpression_;
    functionExpression_ = nullptr;
}

// The library that names the variables is current while the kinds are made, so
// that a kind may look strings up. A library that cannot be loaded is a null
// module, in which every string is empty, and no reason to fail.
bool mfFunctionData_c::initialize()
{
    IMotionServices_c* const services = mf::interfaces::motionServices();
    if (services == nullptr) {
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
    if (functionSegments_ != nullptr)
        functionSegments_->initializeSegment(profileNames_, profileEleExprs_, profileIndependentVars_,
                                             profileStartX_, profileStartY_, profileEndX_, profileEndY_);
    return true;
}

// The one place that tells which kind is active, asked at every use: the host
// may change the type at any time.
mfFunctionBase_c* mfFunctionData_c::iActiveKind()
{
    switch (functionType_) {
        case mf::FunctionType_Segments:
            return functionSegments_;
        case mf::FunctionType_DataPoints:
            return functionDataPoints_;
        case mf::FunctionType_Expression:
            return functionExpression_;
        default:
            return nullptr;
    }
}

double mfFunctionData_c::evaluate(double x, int order)
{
    switch (functionType_) {
        case mf::FunctionType_Segments:
            return functionSegments_ == nullptr ? 0.0 : functionSegments_->evaluate(x, order);
        case mf::FunctionType_DataPoints:
            return functionDataPoints_ == nullptr ? 0.0 : functionDataPoints_->evaluate(x, order);
        case mf::FunctionType_Expression:
            return functionExpression_ == nullptr ? 0.0 : functionExpression_->evaluate(x, order);
        default:
            return 0.0;
    }
}

void mfFunctionData_c::setMotorDriveType(mf::MotorDriveType_e quantity)
{
    if (mfFunctionBase_c* const kind = iActiveKind())
        kind->motorDependentVar = quantity;
}

mf::MotorDriveType_e mfFunctionData_c::getMotorDriveType()
{
    const mfFunctionBase_c* const kind = iActiveKind();
    return kind == nullptr ? mf::MotorDriveType_None : kind->motorDependentVar;
}

bool mfFunctionData_c::isXValueCycleAngle()
{
    const mfFunctionBase_c* const kind = iActiveKind();
    return kind != nullptr && kind->independentVar == mf::IndependentVariableType_CycleAngle;
}

bool mfFunctionData_c::isXValueTimeOrCycleAngle()
{
    return true;
}

void mfFunctionData_c::updateForLegacyData(bool pointPerRow)
{
    if (functionDataPoints_ != nullptr)
        functionDataPoints_->updateForLegacyData(pointPerRow);
    else if (functionExpression_ != nullptr)
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

// The end of the text is its first zero character, as it is for whoever reads it.
const char* mfFunctionData_c::getXMLData()
{
    const char* const text = xmlData_.c_str();
    return *text == '\0' ? nullptr : text;
}

void mfFunctionData_c::setXMLData(char* text)
{
    xmlData_ = std::string(text == nullptr ? "" : text);
}

void mfFunctionData_c::getProfileName(std::vector<CString>& names) const
{
    appendTo(names, profileNames_);
}

void mfFunctionData_c::getProfileExpr(std::vector<CString>& expressions) const
{
    appendTo(expressions, profileExprs_);
}

void mfFunctionData_c::getProfileIndependentVar(std::vector<CString>& names) const
{
    appendTo(names, profileIndependentVars_);
}

void mfFunctionData_c::getStartX(std::vector<CString>& names) const
{
    appendTo(names, profileStartX_);
}

void mfFunctionData_c::getStartY(std::vector<CString>& names) const
{
    appendTo(names, profileStartY_);
}

void mfFunctionData_c::getEndX(std::vector<CString>& names) const
{
    appendTo(names, profileEndX_);
}

void mfFunctionData_c::getEndY(std::vector<CString>& names) const
{
    appendTo(names, profileEndY_);
}

void mfFunctionData_c::getProfileEleExpr(std::vector<std::vector<CString>>& tokens) const
{
    appendTo(tokens, profileEleExprs_);
}
