// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "mfcurves/functions/mfFunctionBase.h"
#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/IFunctionSegments.h"
#include "mfcurves/motion/mfEnumerations.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;
class mfProfile_c;
class mfSegment_c;

MFCURVES_FIXED_BASE_BEGIN

/// A curve made of rows: each row is a stretch of X, shaped by a profile between
/// the value of the row before it and its own.
///
/// Row 0 only states where the curve begins and evaluates to 0.0. From row 2 on,
/// each row is meant to start where the one before it ends: edits move the
/// neighbours for that, and checkUpdate finds the first seam that is open.
///
/// An edit changes numbers and lists, in getUpdateRow, the rows whose formula has
/// gone stale. The caller then calls parseExpression and calculateValue for the
/// edited row and for each listed one; until then these rows give the values of their
/// former numbers, and after parseExpression alone derivatives of 0.0 where the row was
/// never sampled.
///
/// Seams: where two rows meet, the row that a bisection of the table meets first gives
/// the value; it depends on how many rows there are. Values agree there, derivatives may
/// not. calculateValue of a row gives the value of one side.
/// Ends: the curve is 0.0 before its first row, and after its last row that row's
/// formula goes on. getStartX of row 1 and getEndX of the last row are the ends.
/// Units: X in the unit of the independent variable, values in the unit of the
/// motor or force. Nothing is converted here.
/// Errors: silent. A row outside the table and a null segment change nothing but
/// the list of update rows, and the result is null, false or 0.0.
/// Cost: evaluate is a bisection and one run of a compiled formula, parseExpression
/// writes a text, and the first evaluation or look at the samples compiles it. A row
/// that is parsed, sampled and evaluated in all orders holds some 2.5 kB.
/// Threads: one at a time for each table, as evaluating compiles.
/// Ownership: the table owns its rows. When memory runs out while a row is handed
/// over, it stays the caller's; the rows of the table are as they were.
/// Copying: copy construction and assignment share the rows, so only one of the
/// two tables may be destroyed. Use Copy.
class MFCURVES_API mfFunctionSegments_c : public IFunctionSegments_c, public mfFunctionBase_c {
public:
    mfFunctionSegments_c() = default;  ///< an empty table
    mfFunctionSegments_c(const mfFunctionSegments_c&) = default;
    mfFunctionSegments_c& operator=(const mfFunctionSegments_c&) = default;
    ~mfFunctionSegments_c() override;

    void clearSegments() override;  ///< does what ClearFunction does

    /// The value (order 0) or that derivative of the curve at x; every order but
    /// 0, 1 and 2 counts as 3. Seams and ends are those of the class.
    ///
    /// 0.0 where there is no number, without a sign of it: the value on row 0, and so
    /// before the table, a row without a compiled formula, a formula that is not finite
    /// at x, a NaN x, an empty table, and a derivative of a row that calculateValue has
    /// not sampled. The plotting count decides that: a row gives three derivatives with a
    /// count above 2, whatever the quantity, and none with a count of 1.
    double evaluate(double x, int order) override;

    void setMotorDependentVar(mf::MotorDriveType_e quantity) override { motorDependentVar = quantity; }
    mf::MotorDriveType_e getMotorDependentVar() override { return motorDependentVar; }
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override
    {
        forceTorqueDependentVar = quantity;
    }
    mf::ForceTorqueType_e getForceTorqueDependentVar() override { return forceTorqueDependentVar; }
    void setIndependentVar(mf::IndependentVariableType_e variable) override { independentVar = variable; }
    mf::IndependentVariableType_e getIndependentVar() override { return independentVar; }
    void setMotionResult(const CString& name) override { motionResult = name; }
    CString getMotionResult() override { return motionResult; }
    void getSegmentsData(std::vector<CString>& data) override;        ///< does nothing
    void setSegmentsData(const std::vector<CString>& data) override;  ///< does nothing

    /// Always true.
    bool IsSegements() const override { return true; }  // spelling is exported
    /// What the base asks for, and at least one row.
    bool IsValid() override;
    /// Forgets what the base forgets, deletes all rows and empties the update
    /// rows. The lists of initializeSegment stay.
    void ClearFunction() override;

    /// Deep copy of rows, quantities, independent variable and motion result; what
    /// this table held is deleted. Update rows, motionObjectType and the lists of
    /// initializeSegment are not copied. False, changing nothing, for null; true,
    /// changing nothing, for the table itself. When memory runs out, the rows
    /// copied so far stay.
    bool Copy(mfFunctionSegments_c* other);

    /// True without rows.
    bool isEmpty() const { return segments_.empty(); }
    /// The number of rows, row 0 included.
    int getSegmentCount() const { return static_cast<int>(segments_.size()); }
    /// Lends the row; null outside the table.
    void selectSegment(int row, mfSegment_c*& segment) const;

    /// Appends a row and takes it over. The first row is moved to [0, 0], the
    /// second keeps its numbers. A later one that does not start at the end of the
    /// last row is put there: length 1, value 0, the last row's profile name.
    /// Null is ignored.
    void addSegment(mfSegment_c* segment);
    /// Inserts a row before `row` and takes it over; at the row count it appends.
    /// Neighbours stay. At 0 and 1 the new row gets no length. From 2 on, a row
    /// that does not fill the gap exactly is fitted into it, with the value of the
    /// row before it and, unless that is named "Initial", its name. Outside the
    /// table the row stays the caller's. Null is ignored.
    void insertSegment(int row, mfSegment_c* segment);
    /// Sets one column of a row: 0 its start X, 1 its end X, 2 its value, 3 its
    /// profile name; the other arguments are not looked at. An X moves neighbours
    /// along, and rows that would be squeezed away are pushed on with a length of
    /// 1; time and cycle angle are not pushed below 0.0. Always true.
    bool modifySegment(int row, int column, double startX, double endX, double value, const CString& name);
    /// Removes a row and destroys it. From row 2 on, the next row is made to
    /// start where the row before it ends.
    void deleteSegment(int row);

    /// Judges a row and stores the outcome in its flag, where true means passed.
    /// Rows 0 and 1 always pass. Any other needs a profile name, ends in order and
    /// neighbours that meet it exactly.
    void checkInvalid(int row);
    /// Sets `row` to the first row that does not start where the row before it
    /// ends, row 1 included; leaves it alone when all seams are closed.
    void checkUpdate(int& row) const;
    /// Sets `rows` to the rows that the latest edit reported, in the order found,
    /// some of them perhaps twice.
    void getUpdateRow(std::vector<int>& rows) const { rows = updateRows_; }

    /// Lists each display name in use once, in order of the rows, and the records
    /// that these first rows have. False when a name has no record.
    bool getProfilesToSave(std::vector<CString>& names, std::vector<mfProfile_c*>& profiles) const;

    /// Brings the formula of a row and the name of its variable up to date with
    /// its numbers and with the value of the row before it. Numbers enter with six
    /// decimals, so one below half a millionth becomes zero.
    ///
    /// A row without a profile gets the default one. Nothing changes but the key
    /// when there is no such profile, nor when the formula would grow beyond the
    /// longest text that the expression engine takes.
    void parseExpression(int row);
    /// Hands in the profiles of the older reader, list by list: index i of each
    /// list tells of the same profile. Names beyond the end of the shortest list
    /// are left out.
    void initializeSegment(const std::vector<CString>& names,
                           const std::vector<std::vector<CString>>& tokenLists,
                           const std::vector<CString>& independentVariables, const std::vector<CString>& x1s,
                           const std::vector<CString>& y1s, const std::vector<CString>& x2s,
                           const std::vector<CString>& y2s);
    /// Puts "(`to`)" for each token that equals `from`. A token is replaced once,
    /// and an empty `from` is nowhere.
    void replace(std::vector<CString>& tokens, CString from, CString to);
    /// The tokens of that profile of the older reader; a missing entry is made.
    std::vector<CString>& getProfileExpr(const CString& name);

    /// The row that gives the value at x. Where two rows meet it is the one that the
    /// bisection looks at first. After the end of the table it is the last row, before
    /// its start the first one; 0 for an empty table.
    int findSegment(double x) const;
    /// The row's value at x, also outside the row: only an x between the ends of a
    /// reversed row is refused. False, leaving `y` alone, when it is refused, when
    /// the row has no compiled formula and outside the table.
    bool calculateValue(int row, double x, double& y);
    /// The same with derivatives up to `order`, a negative one standing for 3.
    /// What there is not is 0.0. The number of plotting points decides which derivatives
    /// there are: none with 1, which is also the number before the row was sampled, the
    /// first alone with 2, three with more. False, with the orders so far, where the row
    /// has no value or one of them cannot be made.
    bool calculateValue(int row, double x, double& y, double& d1, double& d2, double& d3, int order);
    /// Samples a row into its plotting arrays: 100 points, or one for a row of no
    /// length, and the derivatives that the quantity calls for. A row without a
    /// compiled formula gets arrays of zeros. The samples are computed when the row
    /// is first asked for them, as they would be now. From then on evaluate gives
    /// derivatives of this row, too.
    void calculateValue(int row);
    /// Samples all rows but row 0.
    void calculateValue();
    /// Fills the derivative arrays of a row at the X of its value array. Only
    /// arrays that were built together with the value array are written.
    void calculateDerivatives(int row);

private:
    // A profile of the older reader.
    struct OlderProfile {
        std::vector<CString> tokens;  // of its formula
        CString independentVariable;
        CString x1;
        CString y1;
        CString x2;
        CString y2;
    };

    mfSegment_c& iAt(int row) const { return *segments_[static_cast<std::size_t>(row)]; }
    bool iHolds(int row) const { return row >= 0 && row < getSegmentCount(); }
    void iReport(int row) { updateRows_.push_back(row); }
    MFCURVES_LOCAL void iDeleteSegments();
    MFCURVES_LOCAL void iFitBefore(int row, mfSegment_c& segment) const;
    MFCURVES_LOCAL double iNotBelowZero(double x) const;
    MFCURVES_LOCAL void iMoveStart(int row, double x);
    MFCURVES_LOCAL void iMoveEnd(int row, double x);
    MFCURVES_LOCAL bool iPasses(int row) const;

    std::vector<mfSegment_c*> segments_;             // owned, none of them null
    std::map<CString, OlderProfile> olderProfiles_;  // by name; one that is asked for is made
    std::vector<int> updateRows_;
};

MFCURVES_FIXED_BASE_END
