#pragma once

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"

class ICalculator;
class mfSegment_c;

/// The compiled forms of one segment's expression: order 0 gives the value at an
/// X, orders 1 to 3 its derivatives, each had from the order below by the
/// engine's symbolic differentiation.
///
/// Each order is built when it is first asked for, once for each text. Nobody
/// announces a new text: it is noticed at the next request, which gives all
/// orders back to the engine. Calculators handed out before dangle from then on.
///
/// Errors: a text that does not compile, an order that cannot be had and an
/// order outside 0 to 3 answer null. A text that does not compile is tried once
/// more at each request.
/// Copying: copy construction and assignment share the compiled forms and keep
/// the segment of the source, so only one of the two objects may be destroyed.
class MFCURVES_API mfSegmentCalculator_c {
public:
    /// For the text of `segment`, which embeds this object. With null nothing is
    /// ever up to date or had.
    explicit mfSegmentCalculator_c(mfSegment_c* segment) : segment_(segment) {}
    mfSegmentCalculator_c(const mfSegmentCalculator_c&) = default;
    mfSegmentCalculator_c& operator=(const mfSegmentCalculator_c&) = default;
    ~mfSegmentCalculator_c();

    /// True when the segment's expression is the one last compiled. Case does not
    /// count, and the name of the independent variable is not looked at.
    bool isUpToDate() const;

    /// The calculator of that order, owned by this object.
    ICalculator* getCalculator(int order)
    {
        return iIsBuilt(order) ? calculators_[order] : iRenewCalculator(order);
    }

protected:
    ICalculator* iGetCalculator(int order);  ///< builds what is missing, lower orders first
    void iReleaseCalculators();              ///< gives all orders back

private:
    friend class mfSegment_c;  // samples what it had at an earlier time

    // The texts that a compile reads.
    struct Formula {
        CString expression;
        CString variable;

        MFCURVES_LOCAL bool sharesBuffers(const Formula& other) const;
        // True for a text that reaches the engine as it is, whatever the encoder and the locale.
        MFCURVES_LOCAL bool isAscii() const;
    };

    explicit mfSegmentCalculator_c(const Formula& postponed) : built_(postponed), postponed_(true) {}

    MFCURVES_LOCAL bool iIsBuilt(int order) const;
    ICalculator* iRenewCalculator(int order);
    MFCURVES_LOCAL void iCompile();
    MFCURVES_LOCAL bool iPostpone();
    MFCURVES_LOCAL bool iHas(const Formula& formula) const;
    MFCURVES_LOCAL ICalculator* iValue();

    mfSegment_c* segment_ = nullptr;       // lent: it embeds this object
    Formula built_;                        // the texts last handed to the engine
    mutable CString confirmedExpression_;  // last text found to equal that expression
    bool postponed_ = false;               // built_ is still to be handed over
    ICalculator* calculators_[4] = {nullptr, nullptr, nullptr, nullptr};  // owned
};
