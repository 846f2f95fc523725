// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;
class mfSegment_c;

/// The compiled forms of one segment's expression: order 0 gives the value at an
/// X, orders 1 to 3 its derivatives, each made from the order below by the
/// engine's symbolic differentiation.
///
/// Each order is built when it is first asked for, once for each text. Nobody
/// announces a new text: it is noticed at the next request, which gives all
/// orders back to the engine. Calculators handed out before dangle from then on.
///
/// Errors: null for a text that does not compile, an order that cannot be made and an
/// order outside 0 to 3. A text that does not compile is tried once
/// more at each request.
/// Copying: copy construction and assignment share the compiled forms and keep
/// the segment of the source, so only one of the two objects may be destroyed.
class MFCURVES_API mfSegmentCalculator_c {
public:
    /// For the text of `segment`, which embeds this object. With null nothing is
    /// ever up to date, and there is no calculator.
    explicit mfSegmentCalculator_c(mfSegment_c* segment) : segment_(segment) {}
    mfSegmentCalculator_c(const mfSegmentCalculator_c&) = default;
    mfSegmentCalculator_c& operator=(const mfSegmentCalculator_c&) = default;
    ~mfSegmentCalculator_c();

    /// True when the segment's expression is the one last compiled. Case does not
    /// count, and the name of the independent variable does not matter.
    bool isUpToDate() const;

    /// The calculator of that order, 0 the value and 1 to 3 the derivatives; null when
    /// it cannot be made. It belongs to this object.
    ICalculator* getCalculator(int order);

protected:
    ICalculator* iGetCalculator(int order);  ///< builds what is missing, lower orders first
    void iReleaseCalculators();              ///< gives all orders back

private:
    friend class mfSegment_c;  // embeds this object, and samples by the formula of its time

    // The two texts of a formula and what the engine makes of them, each order when it is
    // first asked for.
    class CompiledFormula {
    public:
        CompiledFormula() = default;
        // Notes the texts, to be compiled at the first request.
        MFCURVES_LOCAL CompiledFormula(const CString& expression, const CString& variable);
        CompiledFormula(const CompiledFormula&) = default;
        CompiledFormula& operator=(const CompiledFormula&) = default;
        MFCURVES_LOCAL ~CompiledFormula() { release(); }

        const CString& expression() const { return expression_; }
        const CString& variable() const { return variable_; }
        MFCURVES_LOCAL bool hasTexts(const CString& expression, const CString& variable) const;
        // Compiled, or noted to be.
        bool isKnown() const { return calculators_[0] != nullptr || isNoted_; }
        bool isNoted() const { return isNoted_; }
        // True for texts that reach the engine as they are, whatever the encoder and the locale.
        MFCURVES_LOCAL bool isAscii() const;

        MFCURVES_LOCAL void note(const CString& expression, const CString& variable);
        // Compiles the texts now, on the way through the narrow encoding.
        MFCURVES_LOCAL void compile(const CString& expression, const CString& variable);
        MFCURVES_LOCAL ICalculator* calculator(int order);
        // What there is of that order, 0 to 3; null when nobody asked for it yet.
        ICalculator* made(int order) const { return calculators_[order]; }
        MFCURVES_LOCAL void release();

    private:
        CString expression_;
        CString variable_;
        bool isNoted_ = false;
        ICalculator* calculators_[4] = {nullptr, nullptr, nullptr, nullptr};  // owned
    };

    // Asked at every evaluation: the calculator of that order when it is made, and for the
    // text `expression`; null otherwise. Texts share their buffers, so that one comparison
    // of pointers shows that nothing was set.
    ICalculator* iReady(int order, const CString& expression) const
    {
        return order >= 0 && order <= 3 && expression.SharesBuffer(confirmedExpression_)
                   ? formula_.made(order)
                   : nullptr;
    }
    MFCURVES_LOCAL bool iPrepare();

    mfSegment_c* segment_ = nullptr;       // lent: it embeds this object
    CompiledFormula formula_;              // of the texts last handed to the engine, or noted for it
    mutable CString confirmedExpression_;  // last text found to equal that expression
};
