// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/functions/mfFunctionBase.h"
#include "mfcurves/functions/mfPoint2D.h"
#include "mfcurves/interfaces/CString.h"
#include "mfcurves/interfaces/IFunctionExpression.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;

MFCURVES_FIXED_BASE_BEGIN

/// A curve given by one mathematical expression of one independent variable.
///
/// It holds two separate texts. The math expression is the one that the host sees and
/// that gives the value of a single point. The parse expression is the one that is
/// sampled into the plotting arrays. Setting one does not set the other. A host that
/// wants derivatives sets both and samples:
///
///     curve.setMathExpression(text);
///     curve.setParseExpression(text);
///     curve.setMotorDependentVar(mf::MotorDriveType_Displacment);
///     curve.setDomain(0.0, 1.0);
///     const bool isSampled = curve.calculateValue() && curve.isValidForPlotting();
///
/// Ends and seams: the text is evaluated at any x, outside the domain too. At a jump or
/// a kink, the functions of the expression language decide which side the value belongs
/// to; the place is not reported.
/// Units: evaluate divides by the host's unit factor of the curve's quantity;
/// calculateValue and the plotting arrays do not.
/// Errors: operations return false or 0.0 and report nothing else. A text with an error
/// in it is stored like any other; mf::Curve says what is wrong with it.
/// Cost: the first point after setMathExpression or after sampling compiles the text.
/// Later points run the compiled form, as long as the text is ASCII, the process is at
/// the locale "C" and the host has set no encoder; otherwise each point compiles again.
/// Locale: evaluating a point leaves the process at the locale "C", because converting
/// the text does. A host with another locale has to restore it, or use a mf::Curve,
/// which does not change the locale.
/// Threads: one at a time for each object, because evaluating a point changes it.
/// Ownership: plotting arrays and calculator belong to this object; callers may use the
/// arrays until the next sampling, clearing or the object's end.
/// Copying: through Copy only; two objects that shared the arrays would free them twice.
class MFCURVES_API mfFunctionExpression_c : public IFunctionExpression_c, public mfFunctionBase_c {
public:
    mfFunctionExpression_c();  ///< empty texts, the time variable, a count of 1
    ~mfFunctionExpression_c() override;
    mfFunctionExpression_c(const mfFunctionExpression_c&) = delete;
    mfFunctionExpression_c& operator=(const mfFunctionExpression_c&) = delete;

    void clearExpression() override;  ///< does what ClearFunction does
    /// Sets the text that gives the value of a single point. Nothing is checked or
    /// compiled, and the samples stay those of the former text until calculateValue().
    void setMathExpression(const CString& expression) override;
    CString getMathExpression() override;  ///< the text that gives the value of a single point
    CString getIndepVar() override;        ///< the text last given to setIndepVar, or found by sampling
    /// Sets by name what X means: the empty text and the host's name for time mean
    /// time, its name for the cycle angle means the cycle angle, and any other text
    /// means the motion result of that name. Case does not matter.
    void setIndepVar(const CString& text) override;
    mf::MotorDriveType_e getMotorDependentVar() override;  ///< what the curve gives for a motor
    /// Sets what the curve gives for a motor, which decides the unit of a point and how
    /// many derivatives are sampled.
    void setMotorDependentVar(mf::MotorDriveType_e quantity) override;
    /// What the curve gives for a force or torque.
    mf::ForceTorqueType_e getForceTorqueDependentVar() override;
    /// Sets what the curve gives for a force or torque, which decides the unit of a point.
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override;
    /// Sets the sampled range. minX may be above maxX; the samples then run downward.
    /// Single points may lie outside the range.
    void setDomain(double minX, double maxX) override;
    double getMinX() override;  ///< start of the sampled range
    double getMaxX() override;  ///< end of the sampled range

    /// True unless independentVar is None.
    bool HasEnumForIndependentVariable() const override;
    CString GetIndependentVarName() const override;  ///< what getIndepVar returns
    /// Always true.
    bool IsExpression() const override;
    /// Clears the math expression, the variable, the domain and the arrays; the parse
    /// expression, the calculator and the plotting flag stay.
    void ClearFunction() override;

    /// Sets the text that calculateValue() samples; set it to the math expression.
    /// evaluate gives derivatives only after that sampling.
    void setParseExpression(const CString& expression) { parseExpression_ = expression; }
    /// True when X is time.
    bool isXValueTime() const { return independentVar == mf::IndependentVariableType_Time; }
    /// True when X is the cycle angle.
    bool isXValueCycleAngle() const { return independentVar == mf::IndependentVariableType_CycleAngle; }
    bool isAValidADAMSExpression(const CString& expression) const;  ///< true for every text

    /// Copies math expression, variable, quantities and domain; false for null.
    ///
    /// The parse expression, motionObjectType and the samples are not copied, so that the
    /// derivatives of a copy are 0.0 until setParseExpression and calculateValue().
    bool Copy(mfFunctionExpression_c* other);

    /// Compiles the parse expression, takes the meaning of X from the name in it, and
    /// samples 100 points over the domain with as many derivatives as the quantity
    /// has.
    ///
    /// False when the text is empty, a name is neither time nor an available cycle
    /// angle nor a motion result, the quantity is None, or a sample cannot be
    /// evaluated. True without samples when the text does not compile or has several
    /// names; isValidForPlotting is then false.
    bool calculateValue();

    /// Sets y to the value of the math expression at any x, in the unit of the text.
    /// False, leaving y unchanged, when the text does not compile, has several
    /// variables or has no finite value there.
    bool calculateValue(double x, double& y);

    /// The same with derivatives by x. How many are computed depends on the plotting
    /// count: none for 1, one for 2, otherwise three; the others are set to 0. The
    /// count is 1 until calculateValue() samples the curve or setPlottingPointCount
    /// sets another. A derivative that is not finite leaves its own and the later
    /// outputs unchanged; the result is true.
    bool calculateValue(double x, double& y, double& d1, double& d2, double& d3);

    /// Fills the derivative arrays that sampling made, at the x of the values. Uses the
    /// text that was compiled last, by the sampling or by a later point. The last element
    /// repeats the y of the previous one. False when a derivative cannot be evaluated,
    /// when the last point failed, or when nothing is sampled.
    bool calculateDerivatives();

    /// Makes the value array, with `count` points at (0, 0), and the derivative arrays,
    /// whose number depends on `objectType` (0 for a motor, 1 for a force or torque)
    /// and on the motor quantity. False for a motor without a quantity. A count below 1
    /// makes no arrays.
    bool initializePlottingData(int count, int objectType);

    /// Value (order 0) or derivative (1 to 3) at any x, divided by the host's unit
    /// factor of the quantity. Without a value returns 0.0, like a value of 0: for a text
    /// that does not compile or has several variables, when this or a lower order is not
    /// finite, for an order outside 0 to 3, and for derivatives while the plotting count
    /// is 1, which it is until the curve is sampled. At a NaN, a text that depends on x
    /// gives 0.0.
    double evaluate(double x, int order);

    /// Samples the curve. The argument is not used.
    void updateForLegacyData(bool pointPerRow);

    /// True when the last sampling found that the text can be plotted; false before.
    bool isValidForPlotting() const { return validForPlotting_; }
    /// The number of points in each array, unless setPlottingPointCount changed it.
    int getPlottingPointCount() const { return plottingPointCount_; }
    /// Sets that number without changing the arrays.
    void setPlottingPointCount(int count) { plottingPointCount_ = count; }
    /// The sampled (x, value) or (x, derivative): getPlottingPointCount points in the
    /// order of sampling; null when that order is not sampled.
    /// @{
    mfPoint2D_c* getPlottingData0() const { return plottingData_[0]; }
    mfPoint2D_c* getPlottingData1() const { return plottingData_[1]; }
    mfPoint2D_c* getPlottingData2() const { return plottingData_[2]; }
    mfPoint2D_c* getPlottingData3() const { return plottingData_[3]; }
    /// @}
    /// The same by order; null outside 0 to 3.
    mfPoint2D_c* getPlottingData(int order) const;

private:
    static constexpr int kOrderCount = 4;

    // The orders at one x. Solvers request them one by one at each x, so they are computed together.
    struct Point {
        double x = 0.0;
        int computed = 0;  // number of orders, the value included; 0: nothing to use again
        int finite = 0;    // how many of them precede the first that is not finite
        int asked = 0;     // the highest order that was requested at x
        double values[kOrderCount] = {};
    };

    MFCURVES_LOCAL bool iSample();
    MFCURVES_LOCAL int iEvaluate(double x, int order);
    MFCURVES_LOCAL void iMoveTo(double x, int order);
    MFCURVES_LOCAL int iEvaluateAfresh(double x, int highest);
    MFCURVES_LOCAL int iDerivativesOfAPoint() const;
    MFCURVES_LOCAL double iUnitFactor() const;
    MFCURVES_LOCAL void iFreePlottingData();
    MFCURVES_LOCAL void iReleaseCalculator();

    mfPoint2D_c* plottingData_[kOrderCount] = {};  // owned
    int plottingDataLength_ = 0;                   // of the arrays, whatever plottingPointCount_ is
    CString mathExpression_;
    CString parseExpression_;
    double minX_ = 0.0;
    double maxX_ = 0.0;
    CString independentVariable_;
    int plottingPointCount_ = 1;
    ICalculator* calculator_ = nullptr;  // of the text compiled last; owned, freed by Release
    Point point_;                        // the last one
    bool isReusable_ = false;            // calculator_ can evaluate the next point, see iEvaluate
    bool lastPointFailed_ = false;       // calculateDerivatives then fails
    bool validForPlotting_ = false;
};

MFCURVES_FIXED_BASE_END
