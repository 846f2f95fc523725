#pragma once

#include <optional>
#include <string>

#include "mfcurves/interfaces/CString.h"

namespace mfcurve {

/// Why a text is no expression of at most one variable, in lines for the user:
/// the reason, the text around the place, a caret below the place. Nothing when
/// it is one.
std::optional<std::string> expressionProblem(const CString& text);

}  // namespace mfcurve
