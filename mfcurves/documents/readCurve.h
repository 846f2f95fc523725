#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

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
    /// Where the curve is not what the document says, in one sentence of UTF-8
    /// each, the first kMostRemarks: numbers and names that read as others, rows
    /// that had to move. The document is taken all the same.
    std::vector<std::string> remarks;
    /// What the document says it is for; none while that is not known.
    MotionObjectType_e objectType = MotionObjectType_None;
};

constexpr std::size_t kMostRemarks = 20;

/// What a reader may ask for beyond readXMLData.
struct ReadOptions {
    /// A file, too, sets the motion object type of the function when it names one;
    /// otherwise it has to fit the function.
    bool takeObjectOfFile = false;
    /// Hears, before each row of a table is read, its number from 0 and how many
    /// there are.
    std::function<void(std::size_t row, std::size_t count)> onRow;
};

/// Reads a curve document into `function` as its readXMLData does, with the same
/// effects, and tells why when it cannot: where the XML breaks (line and column),
/// which element is missing, which has a text that is not known and which texts
/// are, which motion result the host lacks, which version it is, or which object
/// it is for.
ReadOutcome readCurve(mfFunctionData_c& function, const CString& path, bool fromBuffer, std::string buffer,
                      const ReadOptions& options = {});

}  // namespace mf::documents
