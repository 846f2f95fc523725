// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mfcurves/documents/mfCurveDocument.h"
#include "mfcurves/documents/readCurve.h"
#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/numbers.h"

/// Shared by the readers of the parts of a curve document.
namespace mf::documents {

CString wideText(const XmlNode& node);
/// The text in the narrow encoding of the host.
std::string narrowText(const XmlNode& node);

// Parts of messages about a document, in UTF-8:

std::string quoted(const CString& text);
/// The start of a text, quoted: a text may be as long as the document.
std::string quotedStart(const std::string& text);
/// "row 3" or "point 3", for the element that has that index in the document.
std::string segmentPlace(int index);
std::string pointPlace(int index);
std::string shortNumber(double number);
/// "//Curve//RangeX//MinX" as `"MinX" within "RangeX" within "Curve"`.
std::string placeOf(std::string_view path);

/// The state of a read: the document, the reason of a failure, and the differences
/// between the curve and its document.
class ReadState {
public:
    ReadState(const CString& path, bool fromBuffer, const ReadOptions& options);

    mfCurveDocument_c& document() { return document_; }
    /// The XML of the document, after loading; without nodes if that failed.
    XmlDocument& xml() { return *document_.document(); }
    const CString& path() const { return path_; }
    bool isFromBuffer() const { return fromBuffer_; }
    const ReadOptions& options() const { return options_; }

    /// Stores the reason and returns false, so that a step can return the call.
    bool fail(std::string reason);
    bool fail(const XmlProblem& problem);
    bool failForResult(const CString& name, std::string reason);

    bool mayRemark() const { return remarks_.size() < kMostRemarks; }
    void remark(std::string place, std::string message);

    /// The number in a node. `where` returns its place and name for a remark; it is
    /// called only if the text is not a number.
    template <class Where>
    double number(const XmlNode& node, Where where)
    {
        // The characters of a number are the same in UTF-8 and every narrow encoding.
        const std::string text = node.text();
        const double number = platform::readNumber(text);
        if (!platform::isNumber(text) && mayRemark()) {
            auto [place, name] = where();
            remark(std::move(place), name + " is " + quotedStart(text) +
                                         ", which is not a finite number; it reads as " +
                                         shortNumber(number));
        }
        return number;
    }

    /// A node that every document must have. If it is missing, fails the read and
    /// returns null.
    XmlNode singleNode(const char* path);
    /// Sets `out` to the text of such a node. If it is missing, fails the read and
    /// returns false.
    bool text(const char* path, CString& out);

    void tellRow(std::size_t row, std::size_t count) const;

    ReadOutcome outcome(bool taken, MotionObjectType_e objectType);

private:
    const CString& path_;
    const bool fromBuffer_;
    const ReadOptions& options_;
    mfCurveDocument_c document_;
    std::string reason_;
    XmlProblem xmlProblem_;
    std::string missingResult_;
    std::vector<Remark> remarks_;
};

}  // namespace mf::documents
