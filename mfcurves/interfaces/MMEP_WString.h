// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// The name of one parameter of a parsed expression, and its meaning.
///
/// Ownership: the parser that returned this object owns the text, which is valid until
/// its next parse or its destruction.
class MFCURVES_API MMEP_WString {
public:
    /// What the parser takes a name to mean.
    enum class Meaning { Other, Time, CycleAngle, ResultObject };

    /// The text is not copied.
    MMEP_WString(const wchar_t* parameterText, Meaning meaning) : text(parameterText), meaning_(meaning) {}

    const wchar_t* text;  ///< zero-terminated, never null; braces included for a motion result

    /// The parameter is the time variable.
    bool isTime() const { return meaning_ == Meaning::Time; }
    /// The parameter is the cycle angle.
    bool isCycleAngle() const { return meaning_ == Meaning::CycleAngle; }
    /// The parameter names a motion result, written in braces.
    bool isResultObject() const { return meaning_ == Meaning::ResultObject; }

private:
    Meaning meaning_;
};
