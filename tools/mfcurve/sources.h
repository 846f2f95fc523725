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

/// The curves described by an expression, by rows and by points. Each throws Failure with the reasons when
/// its input does not describe a curve.
Description describedExpression(const CurveOptions& options);
Description describedRows(const CurveOptions& options);
Description describedPoints(const CurveOptions& options);

/// A curve and where it comes from.
struct Input {
    mf::Curve curve;
    std::string file;   ///< its document, "-" being standard input; empty for one from options
    std::string place;  ///< the start of messages about it; empty for one from options
};

/// The curve of one document. Throws Failure when the document cannot be used, which includes one whose curve
/// differs from what it says. With `oddities`, such differences are stored there and do not throw.
mf::Curve readDocument(const std::string& path, const CurveOptions& options,
                       std::vector<mf::Problem>* oddities = nullptr);

/// The curve of a description. Throws Failure with the places in the command line or its files.
mf::Curve makeCurve(const Description& description);

/// Problems of a document with its path before each place.
std::vector<mf::Problem> placed(const std::string& path, std::vector<mf::Problem> problems);

/// The curves that the options name, in their order. A document that cannot be used is reported and skipped;
/// `status` is that of the last such document.
struct Inputs {
    std::vector<Input> curves;
    int status = 0;
};
Inputs readInputs(const CurveOptions& options);

/// Prints "# FILE" before the output for one of several documents; otherwise nothing.
void printSection(const CurveOptions& options, const Input& input);

/// The value of the key "file" in JSON: the path or null.
std::string jsonFile(const Input& input);

/// The curve's own range; from 0 to 0 when it has none.
mf::Range domainOf(const mf::Curve& curve);

/// Warns when a range goes beyond the curve.
void warnOutside(mf::Range range, const Input& input);

}  // namespace mfcurve
