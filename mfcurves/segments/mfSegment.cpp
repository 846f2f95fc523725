#include "mfcurves/segments/mfSegment.h"

#include <cstddef>

#include "mfcurves/functions/motorDerivatives.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"

namespace {

constexpr int kMotor = 0;
constexpr int kForceOrTorque = 1;

int derivativeArrays(int motionObjectType, mf::MotorDriveType_e kind)
{
    if (motionObjectType == kMotor)
        return mf::motorDerivatives(kind);
    return motionObjectType == kForceOrTorque ? 1 : 0;
}

}  // namespace

mfSegment_c::mfSegment_c() : calculator_(this) {}

mfSegment_c::mfSegment_c(double startX, double endX, double value, const CString& profileName)
    : startX_(startX), endX_(endX), value_(value), profileName_(profileName), calculator_(this)
{
}

mfSegment_c::~mfSegment_c()
{
    delete profileKey_;
    for (int order = 0; order <= 3; ++order)
        iFreePlottingData(order);
}

void mfSegment_c::setProfileKey(const mfProfileKey_c& key)
{
    auto* copied = new mfProfileKey_c(key);
    delete profileKey_;
    profileKey_ = copied;
    profile_ = nullptr;
    if (copied->name.IsEmpty())
        return;
    if (mfProfileManager_c* manager = mf::interfaces::profileManager())
        profile_ = manager->findProfile(*copied);
}

CString mfSegment_c::getDisplayName() const
{
    CString name;
    if (profileKey_ != nullptr)
        profileKey_->keyDisplayName(name);
    return name;
}

mfPoint2D_c* mfSegment_c::getPlottingData(int order) const
{
    return order >= 0 && order <= 3 ? plottingData_[order] : nullptr;
}

// Everything is freed before anything is built: when memory runs out, the arrays
// that are missing are null and the length says 0.
void mfSegment_c::initializePlottingData(int motionObjectType, mf::MotorDriveType_e kind)
{
    plottingDataOrders_ = derivativeArrays(motionObjectType, kind);
    plottingDataLength_ = 0;
    for (int order = 0; order <= plottingDataOrders_; ++order)
        iFreePlottingData(order);
    if (plottingDataCount_ < 1)
        return;
    for (int order = 0; order <= plottingDataOrders_; ++order)
        plottingData_[order] = new mfPoint2D_c[static_cast<std::size_t>(plottingDataCount_)];
    plottingDataLength_ = plottingDataCount_;
}

void mfSegment_c::iFreePlottingData(int order)
{
    delete[] plottingData_[order];
    plottingData_[order] = nullptr;
}

bool mfSegment_c::copy(mfSegment_c* other)
{
    if (other == nullptr)
        return false;
    if (other == this)
        return true;
    startX_ = other->startX_;
    endX_ = other->endX_;
    value_ = other->value_;
    profileName_ = other->profileName_;
    profileIndepVar_ = other->profileIndepVar_;
    profileExpr_ = other->profileExpr_;
    plottingDataCount_ = other->plottingDataCount_;
    if (other->profileKey_ != nullptr)
        setProfileKey(*other->profileKey_);
    invalid_ = other->invalid_;
    return true;
}
