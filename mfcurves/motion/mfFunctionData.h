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

/// One motion function: what a host holds for a motor, a force or a torque.
///
/// It owns one function of each of the three kinds and forwards the queries for
/// values to the one that the function type selects. Around them it keeps what
/// belongs to the function as a whole: its name, what it drives, the kind of its
/// X-Y data, its document as text, and the lists of start-up profiles.
///
/// Use: construct, initialize, set function type, object type and data type,
/// then the drive type, which goes to the kind that is active at that moment.
///
/// Errors: a function type outside its enumeration may be stored; it selects no
/// kind. Where no kind is selected, or before initialize, a getter answers 0,
/// false or null and a setter does nothing.
/// Ownership: the kinds belong to this object and live as long as it does.
/// Copying: none; a function is copied kind by kind through their Copy.
class MFCURVES_API mfFunctionData_c : public IMotionFunctionData_c {
public:
    mfFunctionData_c();  ///< function type Segments, no kinds, empty lists
    ~mfFunctionData_c() override;

    /// Creates the three kinds. False, after one message to the user and with
    /// nothing created, when the host gives no services. It is for one call: a
    /// second one creates new kinds and loses sight of the first ones.
    bool initialize() override;

    CString getName() override;
    void setName(CString& name) override;
    void setFunctionType(mf::FunctionType_e type) override;
    mf::FunctionType_e getFunctionType() override;
    void setMotorDriveType(mf::MotorDriveType_e quantity) override;
    mf::MotorDriveType_e getMotorDriveType() override;
    void setXYDataType(mf::MotFuncXYDataType_e type) override;
    mf::MotFuncXYDataType_e getXYDataType() override;
    /// Always true.
    bool isXValueTimeOrCycleAngle() override;
    /// True when the active kind runs over the cycle angle.
    bool isXValueCycleAngle() override;
    bool getCanUseElseWhere() override;
    void setCanUseElseWhere(bool usable) override;
    void setMotionObjectType(mf::MotionObjectType_e type) override;
    mf::MotionObjectType_e getMotionObjectType() override;
    bool isMotorData() override;
    bool isForceData() override;
    bool isTorqueData() override;

    /// The three kinds, whichever is active; null before initialize.
    IFunctionSegments_c* getFunctionSegments() override;
    IFunctionDataPoints_c* getFunctionDataPoints() override;
    IFunctionExpression_c* getFunctionExpression() override;

    /// The document text, null when it is empty. It lives until the text changes.
    const char* getXMLData() override;
    /// Copies a zero-terminated text; null empties it.
    void setXMLData(char* text) override;

    /// Value (order 0) or derivative (1 to 3) of the active kind at x, in the
    /// units of that kind; 0.0 where there is none.
    double evaluate(double x, int order) override;

    /// Brings the data-point kind, or where that is missing the expression kind,
    /// up to date with data of older versions, whichever kind is active.
    void updateForLegacyData(bool pointPerRow) override;

    void setXTime(bool selected) { xTime_ = selected; }
    void setXCycleAngle(bool selected) { xCycleAngle_ = selected; }

    /// The lists of start-up profiles, which run parallel: element i of each tells
    /// of profile i. Each getter appends to what the caller's vector holds.
    void getProfileName(std::vector<CString>& names) const;
    void getProfileExpr(std::vector<CString>& expressions) const;
    void getProfileIndependentVar(std::vector<CString>& names) const;
    void getStartX(std::vector<CString>& names) const;
    void getStartY(std::vector<CString>& names) const;
    void getEndX(std::vector<CString>& names) const;
    void getEndY(std::vector<CString>& names) const;
    void getProfileEleExpr(std::vector<std::vector<CString>>& tokens) const;

    /// Appends the folders of the design library, in the order of the host's
    /// text, empty ones included. False when the host names none.
    bool getDesignLibraryPath();
    /// Appends the profiles of the first folder whose profile file can be read.
    /// False when there is none.
    bool setProfile();
    /// Appends the built-in linear profile. Always true.
    bool setDefaultProfile();

    /// Writes the active function as a curve document, to the file `path` or,
    /// with `toFile` false, into the text that getXMLData answers. `name` is the
    /// function's name in the document. A failure shows nowhere but in the file.
    void createXMLData(const CString& name, bool toFile, const CString& path);

    /// Rebuilds this function from a curve document: the file `path`, which must
    /// fit the motion object type, or with `fromBuffer` the text `buffer`, which
    /// sets it. True also, changing nothing here, for a document of another
    /// version; false when it cannot be loaded or does not fit. What was set
    /// before a failure stays set.
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
