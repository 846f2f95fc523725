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
/// It owns one function of each of the three kinds and forwards the queries for
/// values to the one that the function type selects. Around them it keeps what
/// belongs to the function as a whole: its name, what it drives, the kind of its
/// X-Y data, its document as text, and the lists of start-up profiles.
///
/// A host that does not edit, or that needs several threads, reasons for failures,
/// one-sided values or all orders in one call, takes a mf::Curve, made by mf::Curve::of
/// from a function as it is at that moment.
///
/// Use: construct, initialize, set function type, object type and data type, then the
/// drive type, which goes to the kind that is active at that moment:
///
///     mfFunctionData_c lift;
///     lift.initialize();
///     lift.setFunctionType(mf::FunctionType_DataPoints);
///     lift.setMotionObjectType(mf::MotionObjectType_Motor);
///     lift.setXYDataType(mf::MfXY_Disp_LinMotor);
///     lift.setMotorDriveType(mf::MotorDriveType_Displacment);
///
/// A force or a torque says so in the kind too, which otherwise counts as a motor and is
/// stored as a displacement:
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
/// kind. Where no kind is selected, or before initialize, a getter returns 0,
/// false or null and a setter does nothing.
/// Ownership: the kinds belong to this object and live as long as it does. The host's
/// context has to outlive it.
/// Copying: none; a function is copied kind by kind through their Copy.
/// Threads: one at a time for each function. Distinct functions may be used in distinct
/// threads, apart from reading and writing documents and from initialize, which share
/// the profiles and the version of the process.
class MFCURVES_API mfFunctionData_c : public IMotionFunctionData_c {
public:
    mfFunctionData_c();  ///< function type Segments, no kinds, empty lists
    ~mfFunctionData_c() override;

    /// Creates the three kinds. False, after one message to the user and with
    /// nothing created, when the host gives no services. It is for one call: a
    /// second one creates new kinds and loses sight of the first ones.
    bool initialize() override;

    /// The name that a host or a document gave; empty at first.
    CString getName() override;
    /// Sets the name. createXMLData writes the name that it is given, not this one.
    void setName(CString& name) override;
    /// Chooses the active kind; the others keep their data.
    void setFunctionType(mf::FunctionType_e type) override;
    /// The number that was set, also one outside the enumeration.
    mf::FunctionType_e getFunctionType() override;
    /// Sets the quantity of the kind that is active now, so set the function type first.
    void setMotorDriveType(mf::MotorDriveType_e quantity) override;
    /// The quantity of the active kind; None where no kind is active.
    mf::MotorDriveType_e getMotorDriveType() override;
    /// Sets what a document says of unit and quantity; it changes no value.
    void setXYDataType(mf::MotFuncXYDataType_e type) override;
    /// The number that was set.
    mf::MotFuncXYDataType_e getXYDataType() override;
    /// Always true.
    bool isXValueTimeOrCycleAngle() override;
    /// True when the active kind runs over the cycle angle.
    bool isXValueCycleAngle() override;
    /// A mark for the host, false at first.
    bool getCanUseElseWhere() override;
    /// Sets that mark.
    void setCanUseElseWhere(bool usable) override;
    /// Sets what the function is for. It does not reach the kinds: see above for a force
    /// or a torque.
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

    /// The document text, null when it is empty. It lives until the text changes.
    const char* getXMLData() override;
    /// Copies a zero-terminated text; null empties it.
    void setXMLData(char* text) override;

    /// The value (order 0) or derivative by x (1 to 3) of the active kind at x.
    ///
    /// Unit: that of the kind. An expression's value is divided by the host's unit factor
    /// of its quantity, and so are its derivatives; nothing else is converted.
    /// No value: 0.0, without a sign of it: where no kind is active, in row 0, for a text
    /// that does not compile, where a formula is not finite at x, and for another order
    /// (of segments every other order counts as 3). At a NaN a formula that depends on x
    /// gives 0.0; a table of points asks the spline.
    /// Derivatives: 0.0 until the curve was sampled. For a row this is calculateValue
    /// after parseExpression; for an expression calculateValue after both
    /// setMathExpression and setParseExpression. A copy made by Copy is not sampled.
    /// All three are there then, whatever the quantity.
    /// After an edit: rows that getUpdateRow lists keep their old formula until
    /// parseExpression. Points and expressions follow at once.
    /// Seams: where two rows meet, the row that a bisection of the table meets first gives
    /// the value, which may be either.
    /// Ends: before its first row a table of segments is 0.0, after its last row that
    /// row's formula goes on. Points go on along the tangents at their ends, with
    /// mf::host::Spline. An expression has no ends.
    /// Cost: a bisection and one run of a compiled formula, some ten nanoseconds; the
    /// first call after a change compiles. Each order is a call. An expression leaves the
    /// process at the locale "C".
    /// Threads: one at a time for each function. mf::Curve::of gives a constant copy for
    /// several threads, with plain rules for seams and ends, NaN for no value, and all
    /// orders in one call.
    double evaluate(double x, int order) override;

    /// Brings the data-point kind, or where that is missing the expression kind,
    /// up to date with data of older versions, whichever kind is active.
    void updateForLegacyData(bool pointPerRow) override;

    /// Keeps for the host that X is time; the library does not read it.
    void setXTime(bool selected) { xTime_ = selected; }
    /// Keeps for the host that X is the cycle angle; the library does not read it.
    void setXCycleAngle(bool selected) { xCycleAngle_ = selected; }

    /// The start-up profiles, one list for each part: element i of each list belongs to
    /// profile i. Each getter appends to what the caller's vector holds. The lists stay
    /// empty where profiles come from the profile manager.
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
    /// text, empty ones included. False when the host names none.
    bool getDesignLibraryPath();
    /// Appends the profiles of the first folder whose profile file can be read.
    /// False when there is none.
    bool setProfile();
    /// Appends the built-in linear profile. Always true.
    bool setDefaultProfile();

    /// Writes the active function as a curve document, to the file `path` or, with
    /// `toFile` false, into the text that getXMLData returns. `name` is the function's
    /// name in the document. Numbers of segments have six decimals, others six digits.
    ///
    /// Failures are silent: the file stays as it was. The document carries the version
    /// that this process read last (see readXMLData), and one of another version than 1
    /// is not read again. mf::Curve::of(function).write(path) writes version 1 whatever
    /// was read, says what six digits change, and throws where it cannot write.
    void createXMLData(const CString& name, bool toFile, const CString& path);

    /// Rebuilds this function from a curve document: the file `path`, which must
    /// fit the motion object type, or with `fromBuffer` the text `buffer`, which
    /// sets it. False when it cannot be loaded or does not fit; what was set before a
    /// failure stays set, and one start of the XML engine may be left
    /// (mf::platform::xmlStartCount). Numbers, names and rows that are not what the
    /// document says, and an expression that does not compile, are taken in silence.
    ///
    /// A document of another version than 1 changes nothing here and still returns true,
    /// and documents written later carry that version. A host guards itself by reading
    /// with mf::Curve::read or parse first: that throws for such a document, says why a
    /// document is refused and what is odd in one that is not, and leaves the version as
    /// it was.
    ///
    /// The process is left at the locale "C". Time: see docs/performance.md. For one
    /// thread at a time.
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
    bool xTime_ = false;        // kept for the host, read by nothing
    bool xCycleAngle_ = false;  // likewise
    std::vector<mf::profiles::OlderProfile> startUpProfiles_;
    std::vector<CString> designLibraryPaths_;
};
