// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

#include "mfcurves/functions/mfFunctionDataPoints.h"
#include "mfcurves/host/Context.h"
#include "mfcurves/interfaces/QelSession.h"
#include "mfcurves/motion/mfFunctionData.h"
#include "mfcurves/platform/xmlRuntime.h"
#include "mfcurves/segments/mfFunctionSegments.h"

// The properties of a function into which any curve document was read.

namespace document_fuzz {

/// Longer documents find nothing new, slowly.
constexpr std::size_t kLongestDocument = 32768;

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// A new host for each input, so that profiles of earlier inputs are not known.
class Host {
public:
    Host()
    {
        QelSession_c::setMotionFunctionContext(&context_);
        context_.services().setMotionResultNames({L"Slip Speed", L"Shaft Speed", L"a"});
    }

private:
    mf::host::Context context_;
};

inline void evaluate(mfFunctionData_c& function)
{
    for (const double x : {-1.0, 0.0, 0.5, 90.0, 1e300})
        for (int order = 0; order < 4; ++order)
            function.evaluate(x, order);
}

inline std::string write(mfFunctionData_c& function)
{
    function.createXMLData(L"name", false, L"");
    return function.getXMLData() ? function.getXMLData() : "";
}

/// A curve that was read can be evaluated, and its document can be read as a function of
/// the same type.
inline void checkCurve(mfFunctionData_c& function)
{
    evaluate(function);
    const mf::FunctionType_e type = function.getFunctionType();
    const int starts = mf::platform::xmlStartCount();
    const std::string first = write(function);
    require(function.readXMLData(L"", true, first));
    require(function.getFunctionType() == type);
    require(mf::platform::xmlStartCount() == starts);
    evaluate(function);
    require(!write(function).empty());
}

}  // namespace document_fuzz
