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

/// What the readers of a curve document's parts share.
namespace mf::documents {

CString wideText(const XmlNode& node);
/// In the narrow encoding of the host.
std::string narrowText(const XmlNode& node);

// For sentences about a document, in UTF-8:

std::string quoted(const CString& text);
/// A text may be as long as the document; its start is enough to find it.
std::string quotedStart(const std::string& text);
/// "row 3" or "point 3", for the element that has that index in the document.
std::string segmentPlace(int index);
std::string pointPlace(int index);
std::string shortNumber(double number);
/// "//Curve//RangeX//MinX" as `"MinX" within "RangeX" within "Curve"`.
std::string placeOf(std::string_view path);

/// A read on its way: the document, why it fails, and where the curve is not what
/// the document says.
class ReadState {
public:
    ReadState(const CString& path, bool fromBuffer, const ReadOptions& options);

    mfCurveDocument_c& document() { return document_; }
    /// What the document holds, once it is loaded or its loading has failed.
    XmlDocument& xml() { return *document_.document(); }
    const CString& path() const { return path_; }
    bool isFromBuffer() const { return fromBuffer_; }
    const ReadOptions& options() const { return options_; }

    /// Answers false, for the step that fails to pass on.
    bool fail(std::string reason);
    bool fail(const XmlProblem& problem);
    bool failForResult(const CString& name, std::string reason);

    bool mayRemark() const { return remarks_.size() < kMostRemarks; }
    void remark(std::string place, std::string message);

    /// The number in a node. `where` returns which number this is, a place and a
    /// name; it is called only if the text is not a number.
    template <class Where>
    double number(const XmlNode& node, Where where)
    {
        // Every narrow encoding has the characters of a number where UTF-8 has them.
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

    /// A node that every document holds; null, which fails the read, where this one
    /// does not.
    XmlNode singleNode(const char* path);
    /// Its text; false, which fails the read, where it is missing.
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
