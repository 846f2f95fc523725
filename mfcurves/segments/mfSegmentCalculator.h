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
/// Each order is built at its first request, once for each text. A new text is noticed
/// at the next request, which releases all orders: calculators returned before that
/// are then invalid.
///
/// Errors: null for a text that does not compile, for an order that cannot be made and
/// for an order outside 0 to 3. A text that does not compile is compiled again at each
/// request.
/// Copying: copy construction and assignment share the compiled forms and keep
/// the segment of the source, so only one of the two objects may be destroyed.
class MFCURVES_API mfSegmentCalculator_c {
public:
    /// For the text of `segment`, which embeds this object. With null, isUpToDate is
    /// always false and getCalculator returns null.
    explicit mfSegmentCalculator_c(mfSegment_c* segment) : segment_(segment) {}
    mfSegmentCalculator_c(const mfSegmentCalculator_c&) = default;
    mfSegmentCalculator_c& operator=(const mfSegmentCalculator_c&) = default;
    ~mfSegmentCalculator_c();

    /// True when the segment's expression is the one last compiled, ignoring case. The
    /// name of the independent variable is not compared.
    bool isUpToDate() const;

    /// The calculator of that order, 0 the value and 1 to 3 the derivatives; null when
    /// it cannot be made. It belongs to this object.
    ICalculator* getCalculator(int order);

protected:
    ICalculator* iGetCalculator(int order);  ///< builds what is missing, lower orders first
    void iReleaseCalculators();              ///< releases all orders

private:
    friend class mfSegment_c;  // embeds this object, and samples a former formula

    // The two texts of a formula and the calculators that the engine makes of them, each
    // order at its first request.
    class CompiledFormula {
    public:
        CompiledFormula() = default;
        // Stores the texts, to be compiled at the first request.
        MFCURVES_LOCAL CompiledFormula(const CString& expression, const CString& variable);
        CompiledFormula(const CompiledFormula&) = default;
        CompiledFormula& operator=(const CompiledFormula&) = default;
        MFCURVES_LOCAL ~CompiledFormula() { release(); }

        const CString& expression() const { return expression_; }
        const CString& variable() const { return variable_; }
        MFCURVES_LOCAL bool hasTexts(const CString& expression, const CString& variable) const;
        // True when the texts are compiled, or noted for compiling later.
        bool isKnown() const { return calculators_[0] != nullptr || isNoted_; }
        bool isNoted() const { return isNoted_; }
        // True for texts that reach the engine unchanged, whatever the encoder and the locale.
        MFCURVES_LOCAL bool isAscii() const;

        MFCURVES_LOCAL void note(const CString& expression, const CString& variable);
        // Compiles the texts now, after converting them to the narrow encoding and back.
        MFCURVES_LOCAL void compile(const CString& expression, const CString& variable);
        MFCURVES_LOCAL ICalculator* calculator(int order);
        // The calculator of that order, 0 to 3; null when it was not requested yet.
        ICalculator* made(int order) const { return calculators_[order]; }
        MFCURVES_LOCAL void release();

    private:
        CString expression_;
        CString variable_;
        bool isNoted_ = false;
        ICalculator* calculators_[4] = {nullptr, nullptr, nullptr, nullptr};  // owned
    };

    // The calculator of that order if it is made and belongs to the text `expression`; null
    // otherwise. Called at every evaluation: copies of a text share its buffer, so comparing
    // two pointers shows that the text is unchanged.
    ICalculator* iReady(int order, const CString& expression) const
    {
        return order >= 0 && order <= 3 && expression.SharesBuffer(confirmedExpression_)
                   ? formula_.made(order)
                   : nullptr;
    }
    MFCURVES_LOCAL bool iPrepare();

    mfSegment_c* segment_ = nullptr;       // not owned: it embeds this object
    CompiledFormula formula_;              // of the texts last compiled, or noted for compiling
    mutable CString confirmedExpression_;  // last text found equal to the expression of formula_
};
