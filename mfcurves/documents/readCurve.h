#pragma once

#include <string>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"

class mfFunctionData_c;

namespace mf::documents {

/// What became of the read of a curve document.
struct ReadOutcome {
    /// What readXMLData answers: false when the document could not be loaded or
    /// does not fit.
    bool taken = false;
    /// Why no curve was read, in one sentence of UTF-8; empty when one was. A
    /// document of another version is taken and gives no curve.
    std::string reason;
    /// What the document says it is for; none while that is not known.
    MotionObjectType_e objectType = MotionObjectType_None;
};

/// Reads a curve document into `function` as its readXMLData does, with the same
/// effects, and tells why when it cannot: where the XML breaks (line and column),
/// which element is missing, which has a text that is not known and which texts
/// are, which motion result the host lacks, which version it is, or which object
/// it is for.
ReadOutcome readCurve(mfFunctionData_c& function, const CString& path, bool fromBuffer, std::string buffer);

}  // namespace mf::documents
