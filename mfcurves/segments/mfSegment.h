// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"
#include "mfcurves/segments/mfSegmentCalculator.h"

class mfProfileKey_c;
class mfProfile_c;

/// One row of a segment table: the stretch [startX, endX] of the independent
/// variable and the value that the curve reaches at its end.
///
/// A row does not store a start value, which is the value of the previous row, so two
/// neighbours cannot disagree about the point they share.
///
/// Units: X in the unit of the table's independent variable, the value in the
/// unit of the motor or force. Nothing is converted here.
/// Errors: setters store any number, NaN and reversed ends included;
/// mfFunctionSegments_c::checkInvalid checks them.
/// Copying: copy construction and assignment share the owned pointers, so only
/// one of the two objects may be destroyed. Use copy.
class MFCURVES_API mfSegment_c {
public:
    mfSegment_c();  ///< Spans [0, 1], unnamed, value 0.
    /// A row with these ends, this value at its end and this profile name. The name does
    /// not look up a record: see setProfileKey.
    mfSegment_c(double startX, double endX, double value, const CString& profileName);
    mfSegment_c(const mfSegment_c& other);             ///< shares what `other` owns
    mfSegment_c& operator=(const mfSegment_c& other);  ///< shares what `other` owns
    ~mfSegment_c();

    /// X where the row starts.
    double getStartX() const { return startX_; }
    /// Sets it for this row alone; mfFunctionSegments_c::modifySegment moves neighbours too.
    void setStartX(double x) { startX_ = x; }
    /// X where the row ends.
    double getEndX() const { return endX_; }
    /// Sets it for this row alone.
    void setEndX(double x) { endX_ = x; }
    /// The value at endX, which is also where the next row starts.
    double getValue() const { return value_; }
    /// Sets it. The formulas of this row and the next row are then out of date.
    void setValue(double value) { value_ = value; }

    /// The profile name in documents and in the table's own lists of profiles.
    CString getProfileName() const { return profileName_; }
    /// Sets it; key and record do not change.
    void setProfileName(const CString& name) { profileName_ = name; }
    /// The formula with the parameters replaced by numbers: the text that is compiled.
    CString getProfileExpr() const { return profileExpr_; }
    /// Sets the formula, which is compiled at the next use.
    void setProfileExpr(const CString& expression) { profileExpr_ = expression; }
    /// Name of the variable in the profile's formula; empty before parsing.
    CString getProflieIndepVar() const { return profileIndepVar_; }  // spelling is exported
    /// Sets the name of the variable in the formula.
    void setProfileIndepVar(const CString& name) { profileIndepVar_ = name; }

    /// The record of the profile, null when it is not known. It lives as long as
    /// the profile manager. After a rebuild it is still the former record until the
    /// key is set again.
    mfProfile_c* getProfile() const { return profile_; }
    /// Sets the record, without taking ownership; null removes it.
    void setProfile(mfProfile_c* profile) { profile_ = profile; }
    /// The key of the profile, owned by this row; null if the row has no key.
    mfProfileKey_c* getProfileKey() const { return profileKey_; }
    /// Copies `key` and looks its record up in the host's profile manager. The record
    /// is null when the key has no name, when the host has no manager, and when the
    /// manager does not find it.
    void setProfileKey(const mfProfileKey_c& key);
    /// The display name of the key, empty without a key. It needs no record.
    CString getDisplayName() const;

    /// True when the last check of the row passed: the flag means the opposite of
    /// its name. False before any check.
    bool isInvalid() const { return invalid_; }

    /// The number of points in each plotting array of the next build; the present
    /// arrays may have another length.
    int getPlottingDataCount() const { return plottingDataCount_; }
    /// Sets it for the next build.
    void setPlottingDataCount(int count) { plottingDataCount_ = count; }
    /// The value over X and its three derivatives, from startX to endX, both included;
    /// null when never built. The segment owns them.
    ///
    /// The first call computes the samples, from the row as it was when it was
    /// sampled. If memory runs out, the next call tries again.
    /// @{
    mfPoint2D_c* getPlottingData0() const { return getPlottingData(0); }
    mfPoint2D_c* getPlottingData1() const { return getPlottingData(1); }
    mfPoint2D_c* getPlottingData2() const { return getPlottingData(2); }
    mfPoint2D_c* getPlottingData3() const { return getPlottingData(3); }
    /// @}
    /// The same four by order; null outside 0 to 3.
    mfPoint2D_c* getPlottingData(int order) const;
    /// The number of points in the value array and in each derivative array that was
    /// built with it.
    int getPlottingDataLength() const { return arrays_.length(); }
    /// The number of derivative arrays that were built with the value array. Arrays of
    /// higher order, if any, are from an earlier build.
    int getPlottingDataOrders() const { return arrays_.derivatives(); }

    /// Builds the value array and the derivative arrays of the quantity, each of
    /// getPlottingDataCount points (0, 0); with a count below 1 they are null.
    /// Derivative arrays of higher order do not change.
    ///
    /// `motionObjectType` 0 is a motor: displacement (1) has three derivatives,
    /// velocity (2) two and acceleration (3) one. 1 is a force or torque, which has
    /// one. Everything else has none.
    void initializePlottingData(int motionObjectType, mf::MotorDriveType_e kind);

    /// The compiled form of that order, 0 the value; null when it cannot be made.
    /// See mfSegmentCalculator_c.
    ICalculator* getCalculator(int order)
    {
        ICalculator* const ready = calculator_.iReady(order, profileExpr_);
        return ready != nullptr ? ready : calculator_.getCalculator(order);
    }

    /// Deep copy of numbers, texts, key and flag. Compiled forms and plotting data
    /// are not copied; they are rebuilt on first use. If `other` has no key, the key and
    /// the record of this row do not change. False, changing nothing, when `other` is
    /// null.
    bool copy(mfSegment_c* other);

private:
    friend class mfFunctionSegments_c;  // checks and samples the row

    using Formula = mfSegmentCalculator_c::CompiledFormula;

    // The row and its formula at the time of sampling.
    struct Sampling {
        double startX;
        double endX;
        double value;
        CString expression;
        CString variable;
    };

    // The four plotting arrays. Most rows are sampled but never drawn, so the samples may be
    // computed at their first use.
    class PlottingArrays {
    public:
        PlottingArrays() = default;
        PlottingArrays(const PlottingArrays&) = default;
        PlottingArrays& operator=(const PlottingArrays&) = default;
        MFCURVES_LOCAL ~PlottingArrays();

        int length() const { return length_; }
        int derivatives() const { return derivatives_; }
        mfPoint2D_c* points(int order) const { return points_[order]; }

        // Frees the arrays up to that number of derivatives, and cancels pending samples.
        MFCURVES_LOCAL void drop(int derivatives);
        // Builds the arrays with points (0, 0).
        MFCURVES_LOCAL void build(int length, int derivatives);
        // Stores what the samples are to be computed from.
        MFCURVES_LOCAL void sample(const Sampling& sampling, int length, int derivatives);
        // Computes pending samples. `present` is the formula that the row has now.
        MFCURVES_LOCAL void compute(Formula& present);

    private:
        int length_ = 0;
        int derivatives_ = 0;  // arrays built with the value array
        std::optional<Sampling> sampling_;
        mfPoint2D_c* points_[4] = {nullptr, nullptr, nullptr, nullptr};  // owned
    };

    MFCURVES_LOCAL void iSample(int motionObjectType, mf::MotorDriveType_e kind);
    MFCURVES_LOCAL void iDerive(int motionObjectType, mf::MotorDriveType_e kind);
    MFCURVES_LOCAL void iCompute() const;

    double startX_ = 0.0;
    double endX_ = 1.0;
    double value_ = 0.0;
    CString profileName_;
    CString profileExpr_;
    CString profileIndepVar_;
    mfProfileKey_c* profileKey_ = nullptr;  // owned
    mfProfile_c* profile_ = nullptr;        // owned by the profile manager
    bool invalid_ = false;                  // true: the last check passed
    int plottingDataCount_ = 1;
    mutable PlottingArrays arrays_;  // the getters compute pending samples
    mutable mfSegmentCalculator_c calculator_;
};
