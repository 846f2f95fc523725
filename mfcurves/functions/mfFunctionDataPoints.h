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
/// Rows stand in ascending X: the end of a row's range lies below the start of
/// the next, and equal X count as a clash. A new row is never refused for its X,
/// it is moved to a free one; a change of an X is refused when it would clash and
/// otherwise moves the row to where it belongs. Nearly every row holds one point;
/// rows of several come from older data.
///
/// Each edit rebuilds the spline and lists the rows that it touched. The plotting
/// arrays stay as they are until calculateValue() is called.
///
/// Seams and ends are those of the spline. With mf::host::Spline the piece that starts
/// at a point gives its values, at the last point the last piece; beyond the ends the
/// curve goes on along the tangent.
///
/// Units: X in the unit of the independent variable, Y in that of the motor or
/// force. Nothing is converted here.
/// Errors: false, null or 0.0, and nothing changes. Without a spline values are
/// 0.0 and edits keep the table alone. If memory runs out the exception passes
/// through and the object can still be edited and destroyed; the spline may then
/// lack points until the next edit.
/// Cost: an edit gives the spline all points anew, so a long table is filled by
/// appendDataPoint and one RegenSplineData. A point costs what the spline needs.
/// Threads: one at a time for each object, as the spline may keep its place.
/// Ownership: the function owns its rows and plotting arrays. The spline is lent
/// by the host and goes back to it once, when it is replaced or in the destructor.
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
    /// Holds `spline`, which may be null, from now on. The one held before goes
    /// back to the host unless it is the same or the host has no services.
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
    /// Stores any number and passes the three known types on to the spline as its
    /// kind.
    void setInterpolationType(mf::DataPointInterpolationType_e type) override;
    mf::DataPointInterpolationType_e getInterpolationType() override { return interpolationType_; }
    void setMotionResult(const CString& name) override { motionResult = name; }
    CString getMotionResult() override { return motionResult; }

    /// Always true.
    bool IsDataPoints() const override { return true; }
    /// The rule of the base alone: an empty table does not make a function invalid.
    bool IsValid() override { return mfFunctionBase_c::IsValid(); }
    /// Forgets everything but motionObjectType, the kind that the spline was given
    /// and the plotting arrays, which describe the former curve until the next
    /// calculateValue().
    void ClearFunction() override;

    /// Makes this a deep copy of `source`: table, spline, interpolation and what
    /// the curve drives. motionObjectType, update rows and plotting arrays do not
    /// come along. False for null; a copy of itself changes nothing.
    bool Copy(mfFunctionDataPoints_c* source);

    // Editing the table

    /// Puts `points` at index `row`, 0 to the row count. Where its X clashes with
    /// a neighbour, its first point goes to a free X: 1.0 beyond the last row, 1.0
    /// ahead of the first, or the middle of the gap. False for a row outside the
    /// table or a null list.
    ///
    /// The table owns the list once it holds it. A list that is refused stays the
    /// caller's, as does one of several points that cannot be moved to the free X:
    /// it is left out and the result is true all the same.
    bool insertDataPoint(int row, mfDataPoints_c* points);
    /// insertDataPoint at the end without rebuilding the spline, for readers of
    /// long tables, which call RegenSplineData once when all rows are in.
    bool appendDataPoint(mfDataPoints_c* points);
    /// Changes X (column 0) or Y (column 1) of a row's first point; other columns
    /// change nothing and return true. A new X moves the row to its place, or is
    /// refused with false where it would meet another row's range.
    bool modifyDataPoint(int row, int column, double x, double y);
    /// Removes a row and destroys it; false outside the table.
    bool deleteDataPoint(int row);
    /// Deletes rows by their index at the time of the call, in any order, repeated
    /// or not; indices outside the table are ignored. Always true. The update rows
    /// stay as they were.
    bool deleteDataPoints(std::vector<std::size_t> rows);
    /// Replaces a row of several points by as many rows of one. Spline, update
    /// rows and plotting arrays stay. Nothing happens for a row outside the table.
    void expandDataPoints(int row);

    // Reading the table

    /// Lends the row, or null with false outside the table.
    bool selectDataPoint(int row, mfDataPoints_c*& out);
    /// Tells whether the range of `points` meets that of a row, ends included, and
    /// appends the rows met to `rows`. `position` becomes the first row met or,
    /// with false, the index where the range fits. Entries that `rows` held before
    /// count as rows met.
    bool IsRangeOverlap(mfDataPoints_c* points, int& position, std::vector<std::size_t>& rows);
    /// The row whose range holds x; for an x in the lowest row that the search
    /// still looks at, the row above it. An x in no row gets a row nearby. 0 for an
    /// empty table.
    int findDataPonts(double x);  // spelling is exported
    /// Replaces `out` by the rows that the last insertion, modification or single
    /// deletion touched. May be asked any number of times.
    void getUpdateRows(std::vector<int>& out) const { out = updateRows_; }
    int getTotalPoints() const;                                                      ///< points of all rows
    int getDataPointsCount() const { return static_cast<int>(dataPoints_.size()); }  ///< rows
    /// True without rows.
    bool isEmpty() const { return dataPoints_.empty(); }
    /// The X range of the table; 0.0 and 0.0 when it is empty.
    void getDomian(double& start, double& end) const;  // spelling is exported

    // Values and plotting

    /// Gives the spline the points of the table in place of its own.
    void RegenSplineData();
    /// Value (order 0) or derivative (1 to 3) at any x, as the spline has it, which may
    /// be NaN for a NaN x; 0.0 for another order and without a spline. It follows an
    /// edit at once.
    double evaluate(double x, int order);
    /// Value and first three derivatives at x.
    void calculateValue(double x, double& y0, double& y1, double& y2, double& y3);
    /// Rebuilds the four plotting arrays: getPlottingDataCount evenly spaced
    /// samples from the start of the domain on.
    void calculateValue();
    /// Sets the number of samples that calculateValue() takes: 100, or the number
    /// of points where there are more, or 0 where there are none.
    void setPlottingDataCount();
    /// The number of samples that calculateValue() takes.
    int getPlottingDataCount() const { return plottingCount_; }
    /// The samples of value and derivatives, each getPlottingDataCount long since
    /// the last calculateValue(), null before the first. Lent until the next.
    /// @{
    mfPoint2D_c* getPlottingData0() const { return plottingData_[0]; }
    mfPoint2D_c* getPlottingData1() const { return plottingData_[1]; }
    mfPoint2D_c* getPlottingData2() const { return plottingData_[2]; }
    mfPoint2D_c* getPlottingData3() const { return plottingData_[3]; }
    /// @}
    /// The same by order, 0 to 3; null for another.
    mfPoint2D_c* getPlottingData(int order) const;

    /// Rebuilds table, interpolation and plotting arrays from the points that
    /// older data left in the spline alone: one row a point, or a single row of
    /// all of them. Without a spline the table is emptied and nothing else.
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
