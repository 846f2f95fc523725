// SPDX-License-Identifier: MIT
#pragma once

#include "mfcurves/platform/mfExport.h"

/// The name of one parameter of a parsed expression, and what it stands for.
///
/// Ownership: the text belongs to the parser that handed the name out and lives
/// as long as that parser, until its next parse.
class MFCURVES_API MMEP_WString {
public:
    /// What a name stands for, as the parser found it.
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
