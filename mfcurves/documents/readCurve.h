// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "mfcurves/documents/xmlDocument.h"
#include "mfcurves/interfaces/CString.h"
#include "mfcurves/motion/mfEnumerations.h"

class mfFunctionData_c;

namespace mf::documents {

/// One place where a curve is not what its document says.
struct Remark {
    /// "row 3" or "point 3": rows count from 0, the one that states the start, and
    /// points from 1. Empty where it is about the whole document.
    std::string place;
    std::string message;  ///< UTF-8, first letter in lower case, no full stop
};

/// What became of the read of a curve document.
struct ReadOutcome {
    /// What readXMLData answers: false when the document could not be loaded or
    /// does not fit.
    bool taken = false;
    /// Why no curve was read, in one sentence of UTF-8; empty when one was. A
    /// document of another version is taken and gives no curve.
    std::string reason;
    /// Where the XML breaks, if that is the reason.
    XmlProblem xmlProblem;
    /// The motion result that the host lacks, if that is the reason.
    std::string missingResult;
    /// Where the curve is not what the document says, the first kMostRemarks:
    /// numbers and names that read as others, rows that had to move. The document
    /// is taken all the same.
    std::vector<Remark> remarks;
    /// What the document says it is for; none while that is not known.
    MotionObjectType_e objectType = MotionObjectType_None;
};

constexpr std::size_t kMostRemarks = 20;

/// What a document says about motion laws.
struct DocumentLaws {
    struct Definition {
        std::string name;  ///< by which rows call it
        std::string text;
    };
    std::vector<Definition> definitions;  ///< those that parse, in their order
    std::vector<std::string> rowNames;    ///< for each row, the first included; empty where it names none
};

/// What a reader may ask for beyond readXMLData.
struct ReadOptions {
    /// If not null, it receives the names and texts of the laws; then no profile
    /// manager is asked, and rows get neither profile nor formula nor samples.
    DocumentLaws* laws = nullptr;
    /// False leaves the version that later documents of the process carry alone.
    bool setsVersion = true;
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
