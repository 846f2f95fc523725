// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "mfcurves/interfaces/CString.h"

class mfSegment_c;

namespace mfcurve {

/// Why a text is no expression of at most one variable, in lines for the user:
/// the reason, the text around the place, a caret below the place. Nothing when
/// it is one.
std::optional<std::string> expressionProblem(const CString& text);

/// The same of the formula of a row, where the variable of its law is the one name.
std::optional<std::string> lawProblem(mfSegment_c& segment);

}  // namespace mfcurve
