// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "mfcurves/functions/mfFunctionBase.h"
#include "mfcurves/interfaces/IFunctionDataPoints.h"

class ISimSplineData_c;
class mfDataPoints_c;
class mfPoint2D_c;

MFCURVES_FIXED_BASE_BEGIN

/// A curve through a table of points, joined by the spline that the host lends.
///
/// Rows are in ascending X: each row's range ends below the start of the next row,
/// and equal X clash. A new row whose X clashes is not refused but moved to a free X.
/// A change of X that would clash is refused; any other moves the row to its place in
/// the order. Nearly every row holds one point; rows of several come from older data.
///
/// Each edit rebuilds the spline and lists the rows that it touched. The plotting
/// arrays do not change until calculateValue() is called.
///
/// The spline decides the values at seams and beyond the ends. With mf::host::Spline,
/// the piece that starts at a point gives the values there, at the last point the last
/// piece; beyond the ends the curve continues along the tangent.
///
/// Units: X in the unit of the independent variable, Y in that of the motor or
/// force. Nothing is converted here.
/// Errors: operations return false, null or 0.0 and change nothing. Without a spline,
/// values are 0.0 and edits change only the table. If memory runs out, the exception
/// passes through and the object can still be edited and destroyed; the spline may
/// then lack points until the next edit.
/// Cost: each edit passes all points to the spline again, so fill a long table with
/// appendDataPoint and one RegenSplineData. Evaluating a point costs what the spline
/// needs.
/// Threads: one at a time for each object, because the spline may cache its position.
/// Ownership: the function owns its rows and plotting arrays. The spline is lent by
/// the host and returned to it once, when it is replaced or in the destructor.
/// Copying: copy construction and assignment share spline, rows and arrays, so
/// only one of the two objects may be destroyed. Use Copy.
class MFCURVES_API mfFunctionDataPoints_c : public IFunctionDataPoints_c, public mfFunctionBase_c {
public:
    /// An empty function. Asks the host's services, if there are any, for a spline.
    mfFunctionDataPoints_c();
    mfFunctionDataPoints_c(const mfFunctionDataPoints_c&) = default;
    mfFunctionDataPoints_c& operator=(const mfFunctionDataPoints_c&) = default;
    /// Gives the spline back, if the host has services at that time.
    ~mfFunctionDataPoints_c() override;

    ISimSplineData_c* getSplineData() override { return splineData_; }
    /// Uses `spline`, which may be null, from now on. The previous one is returned to
    /// the host unless it is the same or the host has no services.
    void setSplineData(ISimSplineData_c* spline) override;
    void clearDataPoints() override { ClearFunction(); }
    void setMotorDependentVar(mf::MotorDriveType_e quantity) override { motorDependentVar = quantity; }
    mf::MotorDriveType_e getMotorDependentVar() override { return motorDependentVar; }
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override
    {
        forceTorqueDependentVar = quantity;
    }
    mf::ForceTorqueType_e getForceTorqueDependentVar() override { return forceTorqueDependentVar; }
    mf::IndependentVariableType_e getIndependentVar() override { return independentVar; }
    void setIndependentVar(mf::IndependentVariableType_e variable) override { independentVar = variable; }
    /// Stores any number. Only the three known types are passed to the spline, as its
    /// kind.
    void setInterpolationType(mf::DataPointInterpolationType_e type) override;
    mf::DataPointInterpolationType_e getInterpolationType() override { return interpolationType_; }
    void setMotionResult(const CString& name) override { motionResult = name; }
    CString getMotionResult() override { return motionResult; }

    /// Always true.
    bool IsDataPoints() const override { return true; }
    /// The rule of the base; an empty table can be valid.
    bool IsValid() override { return mfFunctionBase_c::IsValid(); }
    /// Clears everything except motionObjectType, the kind of the spline and the
    /// plotting arrays, which describe the former curve until the next
    /// calculateValue().
    void ClearFunction() override;

    /// Makes this a deep copy of `source`: table, spline, interpolation, quantities
    /// and variable. motionObjectType, update rows and plotting arrays are not copied.
    /// False for null; copying an object to itself changes nothing.
    bool Copy(mfFunctionDataPoints_c* source);

    // Editing the table

    /// Inserts `points` at index `row`, 0 to the row count. If its X clashes with a
    /// neighbour, its first point moves to a free X: 1.0 above the last row, 1.0 below
    /// the first, or the middle of the gap. False for a row outside the table or a
    /// null list.
    ///
    /// The table owns a list that it inserts. A refused list stays the caller's. So
    /// does a list of several points that cannot be moved to the free X: it is not
    /// inserted, although the result is true.
    bool insertDataPoint(int row, mfDataPoints_c* points);
    /// insertDataPoint at the end without rebuilding the spline, for long tables.
    /// Call RegenSplineData once after the last row.
    bool appendDataPoint(mfDataPoints_c* points);
    /// Changes X (column 0) or Y (column 1) of a row's first point; another column
    /// changes nothing and returns true. A new X moves the row to its place in the
    /// order. False for a row outside the table or an X in another row's range.
    bool modifyDataPoint(int row, int column, double x, double y);
    /// Removes and destroys a row; false outside the table.
    bool deleteDataPoint(int row);
    /// Deletes rows by their index at the time of the call, in any order. Repeated
    /// indices and indices outside the table are ignored. Always true. The update
    /// rows do not change.
    bool deleteDataPoints(std::vector<std::size_t> rows);
    /// Replaces a row of several points by as many rows of one. Spline, update rows
    /// and plotting arrays do not change. A row outside the table is ignored.
    void expandDataPoints(int row);

    // Reading the table

    /// Sets `out` to the row, which the table keeps; null and false outside the table.
    bool selectDataPoint(int row, mfDataPoints_c*& out);
    /// Whether the range of `points` overlaps that of a row, ends included. Appends the
    /// overlapping rows to `rows`. `position` becomes the first of them or, when the
    /// result is false, the index where the range fits. Entries that are already in
    /// `rows` count as overlapping rows.
    bool IsRangeOverlap(mfDataPoints_c* points, int& position, std::vector<std::size_t>& rows);
    /// The row whose range contains x. The exception: when the bisection ends on two
    /// rows, an x in the lower one returns the upper one. For an x in no row, a row
    /// nearby; 0 for an empty table.
    int findDataPonts(double x);  // spelling is exported
    /// Replaces `out` by the rows that the last insertion, modification or single
    /// deletion touched. Reading the list does not clear it.
    void getUpdateRows(std::vector<int>& out) const { out = updateRows_; }
    int getTotalPoints() const;                                                      ///< points of all rows
    int getDataPointsCount() const { return static_cast<int>(dataPoints_.size()); }  ///< rows
    /// True when the table has no rows.
    bool isEmpty() const { return dataPoints_.empty(); }
    /// The X range of the table; 0.0 and 0.0 when it is empty.
    void getDomian(double& start, double& end) const;  // spelling is exported

    // Values and plotting

    /// Replaces the points of the spline by those of the table.
    void RegenSplineData();
    /// The spline's value (order 0) or derivative (1 to 3) at any x, which may be NaN
    /// for a NaN x; 0.0 for another order and without a spline. Edits take effect at
    /// once.
    double evaluate(double x, int order);
    /// Value and first three derivatives at x.
    void calculateValue(double x, double& y0, double& y1, double& y2, double& y3);
    /// Rebuilds the four plotting arrays: getPlottingDataCount evenly spaced samples
    /// over the X range of the table.
    void calculateValue();
    /// Sets the number of samples that calculateValue() takes: 100, the number of
    /// points if that is higher, or 0 for an empty table.
    void setPlottingDataCount();
    /// The number of samples that calculateValue() takes.
    int getPlottingDataCount() const { return plottingCount_; }
    /// The samples of value and derivatives: getPlottingDataCount points each, null
    /// before the first calculateValue(). Valid until the next one.
    /// @{
    mfPoint2D_c* getPlottingData0() const { return plottingData_[0]; }
    mfPoint2D_c* getPlottingData1() const { return plottingData_[1]; }
    mfPoint2D_c* getPlottingData2() const { return plottingData_[2]; }
    mfPoint2D_c* getPlottingData3() const { return plottingData_[3]; }
    /// @}
    /// The same by order, 0 to 3; null for another.
    mfPoint2D_c* getPlottingData(int order) const;

    /// Rebuilds table, interpolation and plotting arrays from the points of the
    /// spline, where older data keeps them: one row per point with `pointPerRow`, else
    /// a single row of all points. Without a spline, only clears the table.
    void updateForLegacyData(bool pointPerRow);

private:
    bool iHolds(int row) const { return row >= 0 && row < getDataPointsCount(); }
    mfDataPoints_c& iRow(int row) const { return *dataPoints_[static_cast<std::size_t>(row)]; }
    MFCURVES_LOCAL bool iClashes(int row, const mfDataPoints_c& points) const;
    MFCURVES_LOCAL double iFreeX(int row) const;
    MFCURVES_LOCAL bool iStore(int row, mfDataPoints_c* points);
    MFCURVES_LOCAL bool iModifyX(int row, double x);
    MFCURVES_LOCAL void iDeleteRows();
    MFCURVES_LOCAL void iDeletePlottingData();

    ISimSplineData_c* splineData_ = nullptr;  // lent by the host's services
    int plottingCount_ = 0;
    double plottingStep_ = 0.0;
    std::vector<mfDataPoints_c*> dataPoints_;  // owned
    mf::DataPointInterpolationType_e interpolationType_ = mf::DataPointInterpolationType_Linear;
    mfPoint2D_c* plottingData_[4] = {};  // owned arrays, by order
    std::vector<int> updateRows_;
};

MFCURVES_FIXED_BASE_END
