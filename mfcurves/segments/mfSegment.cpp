// SPDX-License-Identifier: MIT

#include "mfcurves/segments/mfSegment.h"

#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"

mfSegment_c::mfSegment_c() : calculator_(this) {}

mfSegment_c::mfSegment_c(double startX, double endX, double value, const CString& profileName)
    : startX_(startX), endX_(endX), value_(value), profileName_(profileName), calculator_(this)
{
}

mfSegment_c::mfSegment_c(const mfSegment_c& other) : mfSegment_c()
{
    *this = other;
}

// The two rows share samples and compiled forms, so pending work of `other` is done first.
mfSegment_c& mfSegment_c::operator=(const mfSegment_c& other)
{
    if (&other == this)
        return *this;
    other.iCompute();
    other.calculator_.formula_.calculator(0);
    startX_ = other.startX_;
    endX_ = other.endX_;
    value_ = other.value_;
    profileName_ = other.profileName_;
    profileExpr_ = other.profileExpr_;
    profileIndepVar_ = other.profileIndepVar_;
    profileKey_ = other.profileKey_;
    profile_ = other.profile_;
    invalid_ = other.invalid_;
    plottingDataCount_ = other.plottingDataCount_;
    arrays_ = other.arrays_;
    calculator_ = other.calculator_;
    return *this;
}

mfSegment_c::~mfSegment_c()
{
    delete profileKey_;
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
