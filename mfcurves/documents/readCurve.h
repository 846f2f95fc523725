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

/// One place where a curve differs from its document.
struct Remark {
    /// "row 3" or "point 3": rows count from 0, the row that states the start, and
    /// points from 1. Empty for a remark about the whole document.
    std::string place;
    std::string message;  ///< UTF-8, first letter in lower case, no full stop
};

/// The result of reading a curve document.
struct ReadOutcome {
    /// What readXMLData returns: false when the document could not be loaded or
    /// does not match the function.
    bool taken = false;
    /// Why no curve was read, in one sentence of UTF-8; empty when one was read. For a
    /// document of another version `taken` is true, but no curve is read.
    std::string reason;
    /// Where the XML is broken, if that is the reason.
    XmlProblem xmlProblem;
    /// The motion result that the host lacks, if that is the reason.
    std::string missingResult;
    /// The first kMostRemarks differences between the curve and its document: numbers
    /// and names that read as others, rows that had to move. They do not make the read
    /// fail.
    std::vector<Remark> remarks;
    /// The motion object that the document names; None while it is not known.
    MotionObjectType_e objectType = MotionObjectType_None;
};

constexpr std::size_t kMostRemarks = 20;

/// The motion laws of a document.
struct DocumentLaws {
    struct Definition {
        std::string name;  ///< the name that rows refer to
        std::string text;
    };
    std::vector<Definition> definitions;  ///< those that parse, in their order
    std::vector<std::string> rowNames;    ///< the law of each row, the first included; may be empty
};

/// Options that readXMLData does not have.
struct ReadOptions {
    /// If not null, it receives the names and texts of the laws. The profile manager is
    /// then not used, and rows get neither profile nor formula nor samples.
    DocumentLaws* laws = nullptr;
    /// If false, the version of later documents of the process does not change.
    bool setsVersion = true;
    /// If true, a file also sets the motion object type of the function when it names
    /// one; otherwise the object of a file has to match the function.
    bool takeObjectOfFile = false;
    /// Called before each row of a table is read, with the row's number from 0 and the
    /// number of rows.
    std::function<void(std::size_t row, std::size_t count)> onRow;
};

/// Reads a curve document into `function` like its readXMLData, with the same effects,
/// and reports the reason of a failure: where the XML is broken (line and column), which
/// element is missing, which element has an unknown text and which texts are known,
/// which motion result the host lacks, the version of the document, or its motion
/// object.
ReadOutcome readCurve(mfFunctionData_c& function, const CString& path, bool fromBuffer, std::string buffer,
                      const ReadOptions& options = {});

}  // namespace mf::documents
