// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "mfcurves/platform/mfExport.h"

/// The parsed form of one profile definition: a named formula that gives a
/// segment its shape between two end points.
///
/// All texts are narrow. Only the reader of definitions writes the fields.
/// Ownership: the parsing code allocates it on the heap; once stored in the profile
/// manager, the manager owns it.
class MFCURVES_API mfProfile_c {
public:
    virtual ~mfProfile_c();

    std::string name;                 ///< as written in the definition, without its quotes
    std::string definitionText;       ///< the whole definition as parsed; what a curve document stores
    std::string independentVariable;  ///< name of the independent variable in the expression
    std::string x1;                   ///< parameter for the segment's start X
    std::string x2;                   ///< parameter for the segment's end X
    std::string y1;                   ///< parameter for the start value: that of the previous segment
    std::string y2;                   ///< parameter for the segment's own value
    std::string resultExpression;     ///< the returned expression with all assignments substituted
    /// resultExpression split at the operators, which are tokens themselves; without
    /// the last character of the expression.
    std::vector<std::string> resultTokens;
};
