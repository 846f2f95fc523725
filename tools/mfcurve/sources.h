// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "mfcurves/curve/Curve.h"
#include "tools/mfcurve/curveOptions.h"

namespace mfcurve {

/// A definition as the command line describes it, and the places of its parts for messages.
struct Description {
    mf::CurveDefinition definition;
    std::string place;                ///< of the whole
    std::vector<std::string> places;  ///< of its rows or points, the start or nothing first; may be empty
};

/// The curves that an expression, rows and points describe. Each throws Failure with the reasons when what it
/// reads is not one.
Description describedExpression(const CurveOptions& options);
Description describedRows(const CurveOptions& options);
Description describedPoints(const CurveOptions& options);

/// A curve and where it comes from.
struct Input {
    mf::Curve curve;
    std::string file;   ///< its document, "-" being standard input; empty for one from options
    std::string place;  ///< what messages about it begin with; empty for one from options
};

/// The curve of one document. Throws Failure when it cannot be used: a document that says something oddly is
/// one of those, because its curve is not what it says. With `oddities` those are stored there instead.
mf::Curve readDocument(const std::string& path, const CurveOptions& options,
                       std::vector<mf::Problem>* oddities = nullptr);

/// The curve of a description. Throws Failure with the places of the command line.
mf::Curve makeCurve(const Description& description);

/// Problems of a document as a user meets them, its path first.
std::vector<mf::Problem> placed(const std::string& path, std::vector<mf::Problem> problems);

/// The curves that the options name, in their order. A document that cannot be used is reported and keeps no
/// other from its turn; the status is that of the last such.
struct Inputs {
    std::vector<Input> curves;
    int status = 0;
};
Inputs readInputs(const CurveOptions& options);

/// "# FILE" before what is printed about one of several documents; else nothing.
void printSection(const CurveOptions& options, const Input& input);

/// The value of the key "file" in JSON: the path or null.
std::string jsonFile(const Input& input);

/// The curve's own range; from 0 to 0 when it does not say.
mf::Range domainOf(const mf::Curve& curve);

/// A warning when a stretch goes beyond the curve.
void warnOutside(mf::Range range, const Input& input);

}  // namespace mfcurve
