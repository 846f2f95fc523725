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

/// A curve made of rows: each row is a stretch of X in which a profile leads from the
/// value of the previous row to its own.
///
/// Row 0 only states where the curve begins and evaluates to 0.0. From row 2 on, each
/// row should start where the previous row ends: edits move the neighbours to keep it
/// so, and checkUpdate finds the first seam that is open.
///
/// An edit changes numbers and lists, in getUpdateRow, the rows whose formula is
/// out of date. The caller then calls parseExpression and calculateValue for the edited
/// row and for each listed row. Until then these rows give the values of their former
/// numbers. After parseExpression alone, the derivatives of a row that was never sampled
/// are 0.0.
///
/// Seams: where two rows meet, the row that a bisection of the table reaches first gives
/// the value; it depends on the number of rows. Values agree there, derivatives may not.
/// calculateValue of a row gives the value of one side.
/// Ends: the curve is 0.0 before its first row; after its last row that row's formula
/// continues. getStartX of row 1 and getEndX of the last row are the ends.
/// Units: X in the unit of the independent variable, values in the unit of the
/// motor or force. Nothing is converted here.
/// Errors: silent. A row outside the table and a null segment change nothing but
/// the list of update rows, and the result is null, false or 0.0.
/// Cost: evaluate is a bisection and one run of a compiled formula. parseExpression
/// writes a text, which the first evaluation or use of the samples compiles. A row that
/// is parsed, sampled and evaluated in all orders uses about 2.5 kB.
/// Threads: one at a time for each table, because evaluating compiles.
/// Ownership: the table owns its rows. If memory runs out while a row is added, the row
/// stays the caller's and the rows of the table are unchanged.
/// Copying: copy construction and assignment share the rows, so only one of the
/// two tables may be destroyed. Use Copy.
class MFCURVES_API mfFunctionSegments_c : public IFunctionSegments_c, public mfFunctionBase_c {
public:
    mfFunctionSegments_c() = default;  ///< an empty table
    mfFunctionSegments_c(const mfFunctionSegments_c&) = default;
    mfFunctionSegments_c& operator=(const mfFunctionSegments_c&) = default;
    ~mfFunctionSegments_c() override;

    void clearSegments() override;  ///< does what ClearFunction does

    /// The value (order 0) or derivative (1 to 3) of the curve at x; every other order
    /// counts as 3. For seams and ends see the class.
    ///
    /// Without a value returns 0.0, like a value of 0: in row 0 and so before the table, in a
    /// row without a compiled formula, when the formula is not finite at x, for an empty
    /// table, and for a derivative in a row that calculateValue has not sampled. At a NaN,
    /// a formula that depends on x gives 0.0. The plotting count decides how many
    /// derivatives a row gives, whatever the quantity: none for a count of 1, the first for
    /// 2, three above.
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
    /// The rule of the base, and at least one row.
    bool IsValid() override;
    /// Resets the fields of the base, deletes all rows and clears the update rows.
    /// The lists of initializeSegment stay.
    void ClearFunction() override;

    /// Deep copy of rows, quantities, independent variable and motion result; deletes
    /// the former rows. Update rows, motionObjectType and the lists of
    /// initializeSegment are not copied. False, changing nothing, for null; true,
    /// changing nothing, for the table itself. When memory runs out, the rows
    /// copied so far stay.
    bool Copy(mfFunctionSegments_c* other);

    /// True when the table has no rows.
    bool isEmpty() const { return segments_.empty(); }
    /// The number of rows, row 0 included.
    int getSegmentCount() const { return static_cast<int>(segments_.size()); }
    /// Sets `segment` to the row, which the table keeps; null outside the table.
    void selectSegment(int row, mfSegment_c*& segment) const;

    /// Appends a row and takes ownership of it. The first row is moved to [0, 0]; the
    /// second keeps its numbers. A later row that does not start at the end of the last
    /// row is moved there and gets length 1, value 0 and the last row's profile name.
    /// Null is ignored.
    void addSegment(mfSegment_c* segment);
    /// Inserts a row before `row` and takes ownership of it; at the row count it
    /// appends. The neighbours do not change. At 0 and 1 the new row gets no length.
    /// From 2 on, a row that does not fill the gap exactly is fitted into it and gets
    /// the value of the previous row and, unless that is named "Initial", its name.
    /// Outside the table nothing is inserted and the row stays the caller's. Null is
    /// ignored.
    void insertSegment(int row, mfSegment_c* segment);
    /// Sets one column of a row: 0 its start X, 1 its end X, 2 its value, 3 its
    /// profile name. Only the argument of that column is used. A new X also moves the
    /// neighbours; a row that would lose its whole length keeps a length of 1 and
    /// pushes the next one. Time and cycle angle are not pushed below 0.0. Always true.
    bool modifySegment(int row, int column, double startX, double endX, double value, const CString& name);
    /// Removes and destroys a row. From row 2 on, the next row then starts where the
    /// previous row ends.
    void deleteSegment(int row);

    /// Checks a row and stores the result in its flag, where true means passed.
    /// Rows 0 and 1 always pass. Any other row needs a profile name, a start that is not
    /// above its end, and neighbours that meet it exactly.
    void checkInvalid(int row);
    /// Sets `row` to the first row, from row 1 on, that does not start where the
    /// previous row ends; leaves it unchanged when all seams are closed.
    void checkUpdate(int& row) const;
    /// Sets `rows` to the rows that the latest edit reported, in the order found. A row
    /// may occur twice.
    void getUpdateRow(std::vector<int>& rows) const { rows = updateRows_; }

    /// Lists each display name in use once, in the order of the rows, with the record
    /// of the first row of that name. False when a name has no record.
    bool getProfilesToSave(std::vector<CString>& names, std::vector<mfProfile_c*>& profiles) const;

    /// Updates the formula of a row and the name of its variable from its numbers and
    /// the value of the previous row. Numbers are written with six decimals, so one
    /// below half a millionth becomes zero.
    ///
    /// A row without a profile gets the key of the default one. Apart from that nothing
    /// changes when the profile does not exist or the formula would become longer than
    /// the expression engine allows.
    void parseExpression(int row);
    /// Sets the profiles of the older reader. Index i of each list belongs to the same
    /// profile; entries after the end of the shortest list are ignored.
    void initializeSegment(const std::vector<CString>& names,
                           const std::vector<std::vector<CString>>& tokenLists,
                           const std::vector<CString>& independentVariables, const std::vector<CString>& x1s,
                           const std::vector<CString>& y1s, const std::vector<CString>& x2s,
                           const std::vector<CString>& y2s);
    /// Replaces each token that equals `from` by "(`to`)". An empty `from` changes
    /// nothing.
    void replace(std::vector<CString>& tokens, CString from, CString to);
    /// The tokens of that profile of the older reader; adds an empty entry if missing.
    std::vector<CString>& getProfileExpr(const CString& name);

    /// The row that gives the value at x. Where two rows meet, it is the one that the
    /// bisection reaches first. After the end of the table it is the last row, before
    /// its start the first one; 0 for an empty table.
    int findSegment(double x) const;
    /// Sets y to the row's value at x, inside or outside the row. False, leaving y
    /// unchanged, for a row outside the table, when the row has no compiled formula, and
    /// for an x between the ends of a reversed row.
    bool calculateValue(int row, double x, double& y);
    /// The same with derivatives up to `order`; a negative order means 3. Outputs that
    /// are not computed are 0.0. The number of plotting points decides which derivatives
    /// exist: none with 1, which is also the number before the row is sampled; the first
    /// with 2; three with more. False when the row has no value or a derivative cannot be
    /// made; the lower orders are then set.
    bool calculateValue(int row, double x, double& y, double& d1, double& d2, double& d3, int order);
    /// Samples a row into its plotting arrays: 100 points, or one for a row of no
    /// length, with the derivatives of its quantity. A row without a compiled formula
    /// gets arrays of zeros. The samples are computed when they are first read, but from
    /// the row as it is now. After this call evaluate also gives derivatives of the row.
    void calculateValue(int row);
    /// Samples all rows but row 0.
    void calculateValue();
    /// Fills the derivative arrays of a row at the X of its value array. Writes only the
    /// arrays that were built together with the value array.
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

    std::vector<mfSegment_c*> segments_;             // owned, never null
    std::map<CString, OlderProfile> olderProfiles_;  // by name; a look-up adds a missing one
    std::vector<int> updateRows_;
};

MFCURVES_FIXED_BASE_END
