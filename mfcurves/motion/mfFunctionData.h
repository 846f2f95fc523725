// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/IMotionFunctionData.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class mfFunctionDataPoints_c;
class mfFunctionExpression_c;
class mfFunctionSegments_c;

namespace mf::profiles {
struct OlderProfile;
}

/// One motion function: what a host holds for a motor, a force or a torque, and edits.
///
/// It owns one function of each of the three kinds and evaluates the one that the
/// function type selects. It also holds what belongs to the function as a whole: its
/// name, what it drives, the kind of its X-Y data, its document as text, and the lists
/// of start-up profiles.
///
/// A host that does not edit, or that needs several threads, reasons for failures,
/// one-sided values or all orders in one call, should use a mf::Curve instead.
/// mf::Curve::of makes one from the function as it is at that moment.
///
/// Use: construct, initialize, set function type, object type and data type, then the
/// drive type, which applies to the kind that is active at that moment:
///
///     mfFunctionData_c lift;
///     lift.initialize();
///     lift.setFunctionType(mf::FunctionType_DataPoints);
///     lift.setMotionObjectType(mf::MotionObjectType_Motor);
///     lift.setXYDataType(mf::MfXY_Disp_LinMotor);
///     lift.setMotorDriveType(mf::MotorDriveType_Displacment);
///
/// A force or a torque has to be set in the kind too, which otherwise counts as a motor
/// and is stored as a displacement:
///
///     mfFunctionData_c spring;
///     spring.initialize();
///     spring.setFunctionType(mf::FunctionType_DataPoints);
///     spring.setMotionObjectType(mf::MotionObjectType_Force);
///     spring.setXYDataType(mf::MfXY_Force);
///     auto& points = *static_cast<mfFunctionDataPoints_c*>(spring.getFunctionDataPoints());
///     points.motionObjectType = 1;
///     points.setForceTorqueDependentVar(mf::ForceTorqueType_Force);
///
/// Units: those of the host's quantities; only a single point of an expression is
/// converted, see evaluate.
/// Errors: a function type outside its enumeration may be stored; it selects no
/// kind. When no kind is selected, or before initialize, a getter returns 0,
/// false or null and a setter does nothing.
/// Ownership: this object owns the kinds, which live as long as it does. The host's
/// context has to outlive it.
/// Copying: not copyable; copy each kind through its Copy.
/// Threads: one at a time for each function. Distinct functions may be used in distinct
/// threads, except for initialize and for reading and writing documents, which share the
/// profiles and the document version of the process.
class MFCURVES_API mfFunctionData_c : public IMotionFunctionData_c {
public:
    mfFunctionData_c();  ///< function type Segments, no kinds, empty lists
    ~mfFunctionData_c() override;

    /// Creates the three kinds. When the host gives no services, shows one message
    /// to the user, creates nothing and returns false. Call it only once: a second
    /// call creates new kinds and leaks the first ones.
    bool initialize() override;

    /// The name set by a host or a document; empty at first.
    CString getName() override;
    /// Sets the name. createXMLData writes the name passed to it, not this one.
    void setName(CString& name) override;
    /// Selects the active kind; the others keep their data.
    void setFunctionType(mf::FunctionType_e type) override;
    /// The number that was set, even one outside the enumeration.
    mf::FunctionType_e getFunctionType() override;
    /// Sets the quantity of the kind that is active now, so set the function type first.
    void setMotorDriveType(mf::MotorDriveType_e quantity) override;
    /// The quantity of the active kind; None when no kind is active.
    mf::MotorDriveType_e getMotorDriveType() override;
    /// Sets the unit and quantity that documents store; it does not change any value.
    void setXYDataType(mf::MotFuncXYDataType_e type) override;
    /// The number that was set.
    mf::MotFuncXYDataType_e getXYDataType() override;
    /// Always true.
    bool isXValueTimeOrCycleAngle() override;
    /// True when X of the active kind is the cycle angle.
    bool isXValueCycleAngle() override;
    /// The host's flag that the function may be used in several places; false at first.
    bool getCanUseElseWhere() override;
    /// Sets that flag.
    void setCanUseElseWhere(bool usable) override;
    /// Sets what the function drives. It is not passed on to the kinds: see above for a
    /// force or a torque.
    void setMotionObjectType(mf::MotionObjectType_e type) override;
    /// The number that was set.
    mf::MotionObjectType_e getMotionObjectType() override;
    /// True when the object type is a motor.
    bool isMotorData() override;
    /// True when the object type is a force.
    bool isForceData() override;
    /// True when the object type is a torque.
    bool isTorqueData() override;

    /// The three kinds, whichever is active; null before initialize. Owned here.
    /// @{
    IFunctionSegments_c* getFunctionSegments() override;
    IFunctionDataPoints_c* getFunctionDataPoints() override;
    IFunctionExpression_c* getFunctionExpression() override;
    /// @}

    /// The document text, null when it is empty. The pointer is valid until it changes.
    const char* getXMLData() override;
    /// Copies a zero-terminated text; null clears it.
    void setXMLData(char* text) override;

    /// The value (order 0) or derivative by x (1 to 3) of the active kind at x.
    ///
    /// Unit: that of the kind. An expression's value is divided by the host's unit factor
    /// of its quantity, and so are its derivatives; nothing else is converted.
    /// No value: 0.0, which looks like a value of 0. That is so when no kind is active, in
    /// row 0, for a text that does not compile, when a formula is not finite at x, and for
    /// another order (segments take every other order as 3). At a NaN, a formula that depends
    /// on x gives 0.0; a table of points returns what the spline does.
    /// Derivatives: 0.0 until the curve is sampled. For a row this is calculateValue
    /// after parseExpression; for an expression calculateValue after both
    /// setMathExpression and setParseExpression. A copy made by Copy is not sampled.
    /// Once sampled, all three are available, whatever the quantity.
    /// After an edit: rows that getUpdateRow lists keep their old formula until
    /// parseExpression. Edits of points and expressions take effect at once.
    /// Seams: where two rows meet, the value comes from whichever row a bisection of the
    /// table reaches first.
    /// Ends: before its first row a table of segments is 0.0; after its last row that
    /// row's formula continues. Points continue along the tangents at their ends, with
    /// mf::host::Spline. An expression has no ends.
    /// Cost: a bisection and one run of a compiled formula, some ten nanoseconds; the
    /// first call after a change compiles. Each order needs its own call. An expression
    /// leaves the process at the locale "C".
    /// Threads: one at a time for each function. mf::Curve::of makes a constant copy for
    /// several threads, with simple rules for seams and ends, NaN for no value, and all
    /// orders in one call.
    double evaluate(double x, int order) override;

    /// Updates the data-point kind from data of older versions, whichever kind is
    /// active. If that kind is missing, updates the expression kind. `pointPerRow` is
    /// that of mfFunctionDataPoints_c::updateForLegacyData.
    void updateForLegacyData(bool pointPerRow) override;

    /// Stores for the host that X is time; the library does not read it.
    void setXTime(bool selected) { xTime_ = selected; }
    /// Stores for the host that X is the cycle angle; the library does not read it.
    void setXCycleAngle(bool selected) { xCycleAngle_ = selected; }

    /// The start-up profiles, one list for each part: element i of each list belongs to
    /// profile i. Each getter appends to the caller's vector. The lists stay empty when
    /// profiles come from the profile manager.
    /// @{
    void getProfileName(std::vector<CString>& names) const;
    void getProfileExpr(std::vector<CString>& expressions) const;
    void getProfileIndependentVar(std::vector<CString>& names) const;
    void getStartX(std::vector<CString>& names) const;
    void getStartY(std::vector<CString>& names) const;
    void getEndX(std::vector<CString>& names) const;
    void getEndY(std::vector<CString>& names) const;
    void getProfileEleExpr(std::vector<std::vector<CString>>& tokens) const;
    /// @}

    /// Appends the folders of the design library, in the order of the host's
    /// text, including empty ones. False when the host names no folder.
    bool getDesignLibraryPath();
    /// Appends the profiles of the first folder whose profile file can be read.
    /// False when no such file can be read.
    bool setProfile();
    /// Appends the built-in linear profile. Always true.
    bool setDefaultProfile();

    /// Writes the active function as a curve document, to the file `path` or, with
    /// `toFile` false, into the text that getXMLData returns. `name` is the function's
    /// name in the document. Numbers of segments have six decimals, others six digits.
    ///
    /// Failures are silent: the file stays as it was. The document gets the version that
    /// this process read last (see readXMLData), and only version 1 can be read back.
    /// mf::Curve::of(function).write(path) writes version 1 whatever was read, says what
    /// six digits change, and throws when it cannot write.
    void createXMLData(const CString& name, bool toFile, const CString& path);

    /// Rebuilds this function from a curve document: the file `path`, which must
    /// match the motion object type, or with `fromBuffer` the text `buffer`, which
    /// sets it. False when it cannot be loaded or does not match. After a failure, what
    /// was set before it stays set, and one start of the XML engine may be left
    /// (mf::platform::xmlStartCount). Numbers, names and rows that are read differently
    /// from what the document says, and an expression that does not compile, are
    /// accepted without a report.
    ///
    /// A document of another version than 1 changes nothing in this function, but the
    /// result is true, and documents written later get that version. To avoid this, read
    /// with mf::Curve::read or parse first. They throw for such a document, say why a
    /// document is refused, report what is odd in an accepted one, and do not change the
    /// version.
    ///
    /// The process is left at the locale "C". Time: see docs/performance.md. Call it in
    /// one thread at a time.
    bool readXMLData(const CString& path, bool fromBuffer, std::string buffer);

private:
    template <class Use>
    MFCURVES_LOCAL void iUseActiveKind(Use use);
    MFCURVES_LOCAL void iHandInStartUpProfiles();

    mf::FunctionType_e functionType_ = mf::FunctionType_Segments;
    CString functionName_;
    std::string xmlData_;
    mfFunctionSegments_c* functionSegments_ = nullptr;      // owned
    mfFunctionDataPoints_c* functionDataPoints_ = nullptr;  // owned
    mfFunctionExpression_c* functionExpression_ = nullptr;  // owned
    mf::MotionObjectType_e functionObjectType_ = mf::MotionObjectType_None;
    mf::MotFuncXYDataType_e xyDataType_ = mf::MfXY_None;
    bool canUseElseWhere_ = false;
    bool xTime_ = false;        // stored for the host, never read
    bool xCycleAngle_ = false;  // stored for the host, never read
    std::vector<mf::profiles::OlderProfile> startUpProfiles_;
    std::vector<CString> designLibraryPaths_;
};
