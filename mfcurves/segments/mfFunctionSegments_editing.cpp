// SPDX-License-Identifier: MIT

#include <algorithm>
#include <memory>

#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace {

enum Column { kStartXColumn, kEndXColumn, kValueColumn, kNameColumn };

// The length of a row that a neighbour would have squeezed to nothing.
constexpr double kSqueezedLength = 1.0;

// The name of a row 0, which only states where the curve begins. New rows do not inherit
// this name.
constexpr const wchar_t* kInitialRowName = L"Initial";

}  // namespace

mfFunctionSegments_c::~mfFunctionSegments_c()
{
    iDeleteSegments();
}

void mfFunctionSegments_c::iDeleteSegments()
{
    for (mfSegment_c* segment : segments_)
        delete segment;
    segments_.clear();
}

void mfFunctionSegments_c::clearSegments()
{
    ClearFunction();
}

void mfFunctionSegments_c::ClearFunction()
{
    mfFunctionBase_c::ClearFunction();
    iDeleteSegments();
    updateRows_.clear();
}

bool mfFunctionSegments_c::IsValid()
{
    return mfFunctionBase_c::IsValid() && !isEmpty();
}

void mfFunctionSegments_c::getSegmentsData(std::vector<CString>&) {}

void mfFunctionSegments_c::setSegmentsData(const std::vector<CString>&) {}

// Does not use addSegment, which would fit the rows to one another.
bool mfFunctionSegments_c::Copy(mfFunctionSegments_c* other)
{
    if (other == nullptr)
        return false;
    if (other == this)
        return true;
    clearSegments();
    setMotorDependentVar(other->getMotorDependentVar());
    setForceTorqueDependentVar(other->getForceTorqueDependentVar());
    setIndependentVar(other->getIndependentVar());
    setMotionResult(other->getMotionResult());
    segments_.reserve(other->segments_.size());
    for (mfSegment_c* source : other->segments_) {
        auto copied = std::make_unique<mfSegment_c>();
        copied->copy(source);
        segments_.push_back(copied.release());
    }
    return true;
}

void mfFunctionSegments_c::selectSegment(int row, mfSegment_c*& segment) const
{
    segment = iHolds(row) ? &iAt(row) : nullptr;
}

void mfFunctionSegments_c::addSegment(mfSegment_c* segment)
{
    updateRows_.clear();
    if (segment == nullptr)
        return;
    if (isEmpty()) {
        segment->setStartX(0.0);
        segment->setEndX(0.0);
    } else if (getSegmentCount() >= 2) {
        const mfSegment_c& last = *segments_.back();
        if (last.getEndX() != segment->getStartX()) {
            segment->setStartX(last.getEndX());
            segment->setEndX(last.getEndX() + 1.0);
            segment->setValue(0.0);
            segment->setProfileName(last.getProfileName());
        }
    }
    segments_.push_back(segment);
}

void mfFunctionSegments_c::insertSegment(int row, mfSegment_c* segment)
{
    updateRows_.clear();
    if (segment == nullptr || row < 0 || row > getSegmentCount())
        return;
    updateRows_.reserve(1);  // so that the report cannot fail after the insertion
    if (row == getSegmentCount()) {
        addSegment(segment);
    } else {
        iFitBefore(row, *segment);
        segments_.insert(segments_.begin() + row, segment);
    }
    iReport(row);
}

// Sets the numbers of a segment that is going to be inserted before `row`.
void mfFunctionSegments_c::iFitBefore(int row, mfSegment_c& segment) const
{
    const mfSegment_c& next = iAt(row);
    if (row < 2) {
        segment.setStartX(next.getStartX());
        segment.setEndX(next.getStartX());
        segment.setValue(iAt(0).getValue());
        return;
    }
    const mfSegment_c& previous = iAt(row - 1);
    if (previous.getEndX() == segment.getStartX() && segment.getEndX() == next.getStartX())
        return;
    segment.setStartX(previous.getEndX());
    segment.setEndX(next.getStartX());
    segment.setValue(previous.getValue());
    if (!(previous.getProfileName() == kInitialRowName))
        segment.setProfileName(previous.getProfileName());
}

bool mfFunctionSegments_c::modifySegment(int row, int column, double startX, double endX, double value,
                                         const CString& name)
{
    updateRows_.clear();
    if (!iHolds(row))
        return true;
    updateRows_.reserve(2 * segments_.size());  // no walk reports more, so no walk throws half-way
    switch (column) {
        case kStartXColumn:
            iMoveStart(row, startX);
            break;
        case kEndXColumn:
            iMoveEnd(row, endX);
            break;
        case kValueColumn:
            iAt(row).setValue(value);
            // The next row starts at this value.
            if (row + 1 < getSegmentCount())
                iReport(row + 1);
            break;
        case kNameColumn:
            iAt(row).setProfileName(name);
            break;
        default:
            break;
    }
    return true;
}

// Time and cycle angle have no negative range; a motion result may have one.
double mfFunctionSegments_c::iNotBelowZero(double x) const
{
    const bool startsAtZero = independentVar == mf::IndependentVariableType_Time ||
                              independentVar == mf::IndependentVariableType_CycleAngle;
    return startsAtZero && x < 0.0 ? 0.0 : x;
}

// Moves the start of `row` and the end of the previous row to x. A row squeezed to
// nothing pushes its neighbour; the walk stops at the first row with enough room.
//
// Both walks share x: the walk forward starts where the walk back left it. The walk
// back reports the row at which it stops, the walk forward does not. Comparisons are
// exact, because neighbours hold the same double, and negated, so that a NaN stops the
// walk.
void mfFunctionSegments_c::iMoveStart(int row, double x)
{
    iAt(row).setStartX(x);

    // Row 0 only states where the curve begins, so the walk ends before it.
    for (int i = row - 1; i > 0; --i) {
        mfSegment_c& pushed = iAt(i);
        pushed.setEndX(x);
        iReport(i);
        if (!(x < pushed.getStartX()))
            break;
        x = iNotBelowZero(x - kSqueezedLength);
        pushed.setStartX(x);
    }

    for (int i = row; i < getSegmentCount(); ++i) {
        if (!(x > iAt(i).getEndX()))
            break;
        x += kSqueezedLength;
        iAt(i).setEndX(x);
        iReport(i);
        if (i + 1 < getSegmentCount()) {
            iAt(i + 1).setStartX(x);
            iReport(i + 1);
        }
    }
}

// Moves the end of `row` and the start of the next row to x: the mirror image of
// iMoveStart, except that both walks report the row at which they stop.
void mfFunctionSegments_c::iMoveEnd(int row, double x)
{
    iAt(row).setEndX(x);

    for (int i = row + 1; i < getSegmentCount(); ++i) {
        mfSegment_c& pushed = iAt(i);
        pushed.setStartX(x);
        iReport(i);
        if (!(x > pushed.getEndX()))
            break;
        x += kSqueezedLength;
        pushed.setEndX(x);
    }

    for (int i = row; i > 0; --i) {
        mfSegment_c& pushed = iAt(i);
        iReport(i);
        if (!(x < pushed.getStartX()))
            break;
        x = iNotBelowZero(x - kSqueezedLength);
        pushed.setStartX(x);
        if (i > 1) {
            iAt(i - 1).setEndX(x);
            iReport(i - 1);
        }
    }
}

void mfFunctionSegments_c::deleteSegment(int row)
{
    updateRows_.clear();
    if (!iHolds(row))
        return;
    const bool isLast = row == getSegmentCount() - 1;
    if (row == 1 && !isLast) {
        iReport(1);
    } else if (row >= 2 && !isLast) {
        const mfSegment_c& previous = iAt(row - 1);
        mfSegment_c& next = iAt(row + 1);
        if (previous.getEndX() != next.getStartX()) {
            iReport(row);  // the index of the next row after the deletion
            next.setStartX(previous.getEndX());
        }
    }
    delete &iAt(row);
    segments_.erase(segments_.begin() + row);
}

// The flag means the opposite of its name: true is a row that passed.
void mfFunctionSegments_c::checkInvalid(int row)
{
    if (iHolds(row))
        iAt(row).invalid_ = iPasses(row);
}

bool mfFunctionSegments_c::iPasses(int row) const
{
    if (row < 2)
        return true;
    const mfSegment_c& segment = iAt(row);
    if (segment.getProfileName().IsEmpty() || segment.getStartX() > segment.getEndX() ||
        segment.getStartX() != iAt(row - 1).getEndX())
        return false;
    return row == getSegmentCount() - 1 || segment.getEndX() == iAt(row + 1).getStartX();
}

void mfFunctionSegments_c::checkUpdate(int& row) const
{
    for (int i = 1; i < getSegmentCount(); ++i) {
        if (iAt(i - 1).getEndX() != iAt(i).getStartX()) {
            row = i;
            return;
        }
    }
}

bool mfFunctionSegments_c::getProfilesToSave(std::vector<CString>& names,
                                             std::vector<mfProfile_c*>& profiles) const
{
    names.clear();
    profiles.clear();
    for (const mfSegment_c* segment : segments_) {
        const CString name = segment->getDisplayName();
        if (std::find(names.begin(), names.end(), name) != names.end())
            continue;
        names.push_back(name);
        if (segment->getProfile() != nullptr)
            profiles.push_back(segment->getProfile());
    }
    return names.size() == profiles.size();
}
