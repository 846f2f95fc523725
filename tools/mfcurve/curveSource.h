// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "tools/mfcurve/curve.h"
#include "tools/mfcurve/curveOptions.h"

namespace mfcurve {

/// The curve that an expression, rows or points on the command line describe.
/// Fails with the reason when they do not describe one.
Curve describedCurve(const CurveOptions& options);

/// The curve of one document, "-" being standard input. Fails with the reason
/// when it cannot be used.
Curve readDocument(const std::string& path);
/// The curve of a document's text; `name` is what a failure calls it.
Curve readDocumentText(const std::string& text, const std::string& name);

/// Does something with a curve; `section` is the name of its document when there
/// are several, else empty.
using CurveCommand = std::function<void(Curve& curve, const std::string& section)>;

/// What becomes of a document that can be read and is not sound, as problems()
/// tells.
enum class Unsound { Refused, Taken };

/// Runs `command` with each curve that the options name, under a host of its own. A
/// document that cannot be used is reported and keeps no other from its turn.
/// Answers the exit status.
int forEachCurve(const CurveOptions& options, const CurveCommand& command,
                 Unsound unsound = Unsound::Refused);

/// What a message about one of several documents begins with.
std::string sectionPlace(const std::string& section);

}  // namespace mfcurve
