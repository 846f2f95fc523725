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
/// It holds two texts, which nobody copies from one to the other: the math
/// expression is what the host sees and what a single point evaluates; the parse
/// expression is what the sampling of the plotting arrays compiles. A host that wants
/// derivatives sets both and samples:
///
///     curve.setMathExpression(text);
///     curve.setParseExpression(text);
///     curve.setMotorDependentVar(mf::MotorDriveType_Displacment);
///     curve.setDomain(0.0, 1.0);
///     const bool isSampled = curve.calculateValue() && curve.isValidForPlotting();
///
/// Ends and seams: an expression has a value wherever its text has one, outside the
/// domain as well. At a jump or a kink inside the text the functions of the expression
/// language decide which side the value belongs to, and nothing reports the place.
/// Units: a single point of evaluate is divided by the host's unit factor of the
/// quantity that the curve gives; calculateValue and the plotting arrays are not.
/// Errors: operations return false, or 0.0, and report nothing else; a text with a
/// slip in it is stored like any other. mf::Curve says what is wrong with a text.
/// Cost: the first point after setMathExpression or after sampling compiles the text.
/// Later points run what is compiled, as long as the text is ASCII, the process is at
/// the locale "C" and no encoder of the host's is set; otherwise each point compiles
/// again.
/// Locale: a point leaves the process at the locale "C", as the conversion of its text
/// does. A host with another locale sets it again, or uses a mf::Curve, which leaves
/// the locale alone.
/// Threads: one at a time for each object, as points change it too.
/// Ownership: plotting arrays and calculator belong to this object; the arrays
/// are lent to callers until the next sampling, clearing or the object's end.
/// Copying: none but Copy, as a copy that shared the arrays could not be freed.
class MFCURVES_API mfFunctionExpression_c : public IFunctionExpression_c, public mfFunctionBase_c {
public:
    mfFunctionExpression_c();  ///< empty texts, the time variable, a count of 1
    ~mfFunctionExpression_c() override;
    mfFunctionExpression_c(const mfFunctionExpression_c&) = delete;
    mfFunctionExpression_c& operator=(const mfFunctionExpression_c&) = delete;

    void clearExpression() override;  ///< does what ClearFunction does
    /// Sets the text that a single point evaluates. Nothing is checked or compiled, and
    /// the samples stay those of the former text until calculateValue().
    void setMathExpression(const CString& expression) override;
    CString getMathExpression() override;  ///< the text that a single point evaluates
    CString getIndepVar() override;        ///< the text last given to setIndepVar, or found by sampling
    /// Says by name what X stands for: the empty text and the host's name for
    /// time mean time, its name for the cycle angle the cycle angle, any other
    /// text the motion result of that name. Case does not count.
    void setIndepVar(const CString& text) override;
    mf::MotorDriveType_e getMotorDependentVar() override;  ///< what the curve gives for a motor
    /// Sets what the curve gives for a motor. It decides the unit of a point and which
    /// derivatives are sampled.
    void setMotorDependentVar(mf::MotorDriveType_e quantity) override;
    /// What the curve gives for a force or torque.
    mf::ForceTorqueType_e getForceTorqueDependentVar() override;
    /// Sets what the curve gives for a force or torque. It decides the unit of a point.
    void setForceTorqueDependentVar(mf::ForceTorqueType_e quantity) override;
    /// The stretch that is sampled; minX may lie above maxX, the samples then run
    /// downward. A point may be outside of it.
    void setDomain(double minX, double maxX) override;
    double getMinX() override;  ///< start of the stretch that is sampled
    double getMaxX() override;  ///< end of the stretch that is sampled

    /// True unless independentVar is None.
    bool HasEnumForIndependentVariable() const override;
    CString GetIndependentVarName() const override;  ///< what getIndepVar returns
    /// Always true.
    bool IsExpression() const override;
    /// Forgets the math expression, the variable, the domain and the arrays; the
    /// parse expression, the calculator and the plotting flag stay.
    void ClearFunction() override;

    /// Sets the text that sampling compiles. evaluate gives derivatives only after
    /// calculateValue() has sampled it: set it to the math expression.
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

    /// Compiles the parse expression, works out what X stands for from the names
    /// in it, and samples 100 points over the domain with as many derivatives as
    /// the quantity has.
    ///
    /// False when there is nothing to compile, a name is neither time, an
    /// available cycle angle nor a motion result, the quantity is None, or a
    /// sample cannot be evaluated. True without samples when the text does not
    /// compile or has several names: isValidForPlotting then says no.
    bool calculateValue();

    /// The value of the math expression at any x, in the unit of the text. False,
    /// leaving y alone, when it does not compile, has several variables or has no
    /// finite value there.
    bool calculateValue(double x, double& y);

    /// The same with derivatives by x: none with a plotting count of 1, where they are
    /// 0; one with a count of 2, the others 0; else three. The count is 1 until
    /// calculateValue() samples the curve, or setPlottingPointCount sets another one.
    /// A derivative that has no finite value leaves its own and later outputs alone,
    /// with true.
    bool calculateValue(double x, double& y, double& d1, double& d2, double& d3);

    /// Fills the derivative arrays that sampling made, at the x of the values, by the
    /// text that was compiled last: that of the sampling or that of a later point. The
    /// last element repeats the y of the previous one. False when a derivative cannot be
    /// evaluated, when the last point failed, or when nothing is sampled.
    bool calculateDerivatives();

    /// Makes the value array with `count` points at (0, 0) and the derivative
    /// arrays by `objectType`, 0 for a motor, 1 for a force or torque, and by the
    /// motor quantity. False for a motor without a quantity. A count below 1 makes
    /// no arrays.
    bool initializePlottingData(int count, int objectType);

    /// Value (order 0) or derivative (1 to 3) at any x, divided by the host's unit
    /// factor of the quantity. 0.0 where there is none, without a sign of it: for a text
    /// that does not compile or has several variables, where it is not finite, where a
    /// lower order is not finite, for a NaN x, for an order outside 0 to 3, and for
    /// derivatives while the plotting count is 1, which it is until the curve is sampled.
    double evaluate(double x, int order);

    /// Samples the curve. The argument is not used.
    void updateForLegacyData(bool pointPerRow);

    /// False until sampling has found the text to be one that can be plotted.
    bool isValidForPlotting() const { return validForPlotting_; }
    /// The number of points in each array, as far as nobody has set another one.
    int getPlottingPointCount() const { return plottingPointCount_; }
    /// Sets that number without touching the arrays.
    void setPlottingPointCount(int count) { plottingPointCount_ = count; }
    /// The sampled (x, value) or (x, derivative), getPlottingPointCount points in
    /// the order of sampling; null where there are none.
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

    MFCURVES_LOCAL bool iSample();
    MFCURVES_LOCAL int iEvaluate(double x, int order, double* values);
    MFCURVES_LOCAL int iEvaluateAfresh(double x, int highest, double* values);
    MFCURVES_LOCAL int iDerivativesOfAPoint() const;
    MFCURVES_LOCAL double iUnitFactor() const;
    MFCURVES_LOCAL void iFreePlottingData();
    MFCURVES_LOCAL void iReleaseCalculator();

    mfPoint2D_c* plottingData_[kOrderCount] = {};  // owned
    int plottingDataLength_ = 0;                   // of the arrays, whatever the count says
    CString mathExpression_;
    CString parseExpression_;
    double minX_ = 0.0;
    double maxX_ = 0.0;
    CString independentVariable_;
    int plottingPointCount_ = 1;
    ICalculator* calculator_ = nullptr;  // of the text compiled last; owned, ends by Release
    bool isReusable_ = false;            // that text is the math expression, and it may serve again
    bool lastPointFailed_ = false;       // so that there is nothing to derive the samples from
    bool validForPlotting_ = false;
};

MFCURVES_FIXED_BASE_END
