// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

/// The parsed form of one profile definition: a named formula that gives a
/// segment its shape between two end points.
///
/// All texts are narrow. The reader of definitions fills the fields, everybody
/// else only reads them.
/// Ownership: made on the heap by whoever parses it, owned by the profile
/// manager from the moment it is stored there.
class MFCURVES_API mfProfile_c {
public:
    virtual ~mfProfile_c();

    std::string name;                 ///< as written in the definition, without its quotes
    std::string definitionText;       ///< the whole definition as parsed; what a curve document stores
    std::string independentVariable;  ///< name of the independent variable in the expression
    std::string x1;                   ///< parameter for the segment's start X
    std::string x2;                   ///< parameter for the segment's end X
    std::string y1;                   ///< parameter for the value at the start, the previous segment's
    std::string y2;                   ///< parameter for the segment's own value
    std::string resultExpression;     ///< the one expression left after all assignments are put in
    /// resultExpression split at the operators, which are tokens themselves; the
    /// last character of the expression is not among them.
    std::vector<std::string> resultTokens;
};
