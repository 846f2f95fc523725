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
/// A row stores no start value. That is the value of the row before it, so two
/// neighbours cannot disagree about the point they share.
///
/// Units: X in the unit of the table's independent variable, the value in the
/// unit of the motor or force. Nothing is converted here.
/// Errors: setters store what they are given, NaN and reversed ends included;
/// mfFunctionSegments_c::checkInvalid is the judge.
/// Copying: copy construction and assignment share the owned pointers, so only
/// one of the two objects may be destroyed. Use copy.
class MFCURVES_API mfSegment_c {
public:
    mfSegment_c();  ///< Spans [0, 1], unnamed, value 0.
    /// With those ends, that value at the end and that name of a profile; the name finds
    /// no record: see setProfileKey.
    mfSegment_c(double startX, double endX, double value, const CString& profileName);
    mfSegment_c(const mfSegment_c& other);             ///< shares what the other one owns
    mfSegment_c& operator=(const mfSegment_c& other);  ///< shares what the other one owns
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
    /// Sets it; the formulas of this row and the next one are stale then.
    void setValue(double value) { value_ = value; }

    /// The name that the table's own lists of profiles and documents know.
    CString getProfileName() const { return profileName_; }
    /// Sets it; key and record stay.
    void setProfileName(const CString& name) { profileName_ = name; }
    /// The formula with numbers in place of the end points: what is compiled.
    CString getProfileExpr() const { return profileExpr_; }
    /// Sets the formula, which is compiled at the next use.
    void setProfileExpr(const CString& expression) { profileExpr_ = expression; }
    /// Name of the variable in the profile's formula; "" before parsing.
    CString getProflieIndepVar() const { return profileIndepVar_; }  // spelling is exported
    /// Sets the name of the variable in the formula.
    void setProfileIndepVar(const CString& name) { profileIndepVar_ = name; }

    /// The record of the profile, null when it is not known. It lives as long as
    /// the profile manager; after a rebuild it is the former one until the key is
    /// set again.
    mfProfile_c* getProfile() const { return profile_; }
    /// Sets the record, which stays its owner's; null forgets it.
    void setProfile(mfProfile_c* profile) { profile_ = profile; }
    /// The key of the profile; null for none. The segment keeps it.
    mfProfileKey_c* getProfileKey() const { return profileKey_; }
    /// Takes a copy of `key` and looks its record up with the host's profile
    /// manager. The record stays unknown when the key has no name, when there is
    /// no manager, and when the manager has no such record.
    void setProfileKey(const mfProfileKey_c& key);
    /// The display name of the key, "" without one. No record is needed for it.
    CString getDisplayName() const;

    /// True when the last check of the row passed: the flag means the opposite of
    /// its name. False before any check.
    bool isInvalid() const { return invalid_; }

    /// How many points the next build gives each plotting array; not what the
    /// present arrays hold.
    int getPlottingDataCount() const { return plottingDataCount_; }
    /// Sets it for the next build.
    void setPlottingDataCount(int count) { plottingDataCount_ = count; }
    /// The value over X and its three derivatives, ascending in x where the row
    /// does, both ends included; null when never built. The segment keeps them.
    ///
    /// The first look computes the samples, from what the row was when it was
    /// sampled. Memory that runs out then is tried for again at the next look.
    /// @{
    mfPoint2D_c* getPlottingData0() const { return getPlottingData(0); }
    mfPoint2D_c* getPlottingData1() const { return getPlottingData(1); }
    mfPoint2D_c* getPlottingData2() const { return getPlottingData(2); }
    mfPoint2D_c* getPlottingData3() const { return getPlottingData(3); }
    /// @}
    /// The same four by order; null outside 0 to 3.
    mfPoint2D_c* getPlottingData(int order) const;
    /// How many points the value array holds, and every derivative array that was
    /// built with it.
    int getPlottingDataLength() const { return arrays_.length(); }
    /// How many derivative arrays were built with the value array. Those of higher
    /// order, if any, are left from an earlier build.
    int getPlottingDataOrders() const { return arrays_.derivatives(); }

    /// Builds the value array and the derivative arrays that the quantity calls
    /// for, all of getPlottingDataCount points (0, 0); a count below 1 leaves them
    /// null. Derivative arrays that it does not call for stay as they are.
    ///
    /// `motionObjectType` 0 is a motor, whose displacement (1) has three
    /// derivatives, velocity (2) two and acceleration (3) one; 1 is a force or
    /// torque, which has one; everything else has none.
    void initializePlottingData(int motionObjectType, mf::MotorDriveType_e kind);

    /// The compiled form of that order, 0 the value; null when it cannot be made.
    /// See mfSegmentCalculator_c.
    ICalculator* getCalculator(int order)
    {
        ICalculator* const ready = calculator_.iReady(order, profileExpr_);
        return ready != nullptr ? ready : calculator_.getCalculator(order);
    }

    /// Deep copy of numbers, texts, key and flag. Compiled forms and plotting data
    /// are not copied; they are rebuilt on first use. A source without a key leaves the
    /// key and the record of this row alone. False, changing nothing, when `other`
    /// is null.
    bool copy(mfSegment_c* other);

private:
    friend class mfFunctionSegments_c;  // judges and samples the row

    using Formula = mfSegmentCalculator_c::CompiledFormula;

    // What samples are computed from: the row and its formula as they were.
    struct Sampling {
        double startX;
        double endX;
        double value;
        CString expression;
        CString variable;
    };

    // The four plotting arrays. Most rows are sampled and never drawn, so the samples may be
    // computed when they are first looked at.
    class PlottingArrays {
    public:
        PlottingArrays() = default;
        PlottingArrays(const PlottingArrays&) = default;
        PlottingArrays& operator=(const PlottingArrays&) = default;
        MFCURVES_LOCAL ~PlottingArrays();

        int length() const { return length_; }
        int derivatives() const { return derivatives_; }
        mfPoint2D_c* points(int order) const { return points_[order]; }

        // Frees the arrays of a build with that many derivatives, and what waits.
        MFCURVES_LOCAL void drop(int derivatives);
        // Builds them with (0, 0).
        MFCURVES_LOCAL void build(int length, int derivatives);
        // Leaves them to be computed.
        MFCURVES_LOCAL void sample(const Sampling& sampling, int length, int derivatives);
        // Computes what waits. `present` is the formula that the row has now.
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
    mfProfile_c* profile_ = nullptr;        // lent by the profile manager for its life
    bool invalid_ = false;                  // true: the last check passed
    int plottingDataCount_ = 1;
    // A look at the samples is what computes them.
    mutable PlottingArrays arrays_;
    mutable mfSegmentCalculator_c calculator_;
};
