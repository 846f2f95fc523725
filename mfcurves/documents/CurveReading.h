#pragma once

#include <cstddef>
#include <string>
#include <string_view>
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
/// `"Point" 3`: rows are counted as the attribute ID counts them.
std::string rowPlace(const char* element, int row);
std::string shortNumber(double number);
/// "//Curve//RangeX//MinX" as `"MinX" within "RangeX" within "Curve"`.
std::string placeOf(std::string_view path);

/// A read on its way: the document, why it fails, and where the curve is not what
/// the document says.
class CurveReading {
public:
    CurveReading(const CString& path, bool fromBuffer, const ReadOptions& options);

    mfCurveDocument_c& document() { return document_; }
    /// What the document holds, once it is loaded or its loading has failed.
    XmlDocument& xml() { return *document_.document(); }
    const CString& path() const { return path_; }
    bool isFromBuffer() const { return fromBuffer_; }
    const ReadOptions& options() const { return options_; }

    /// Answers false, for the step that fails to pass on.
    bool fail(std::string reason);

    bool mayRemark() const { return remarks_.size() < kMostRemarks; }
    void remark(std::string text);

    /// The number in a node. `place` answers which number this is; it is asked only
    /// when the text is none.
    template <class Place>
    double number(const XmlNode& node, Place place)
    {
        // Every narrow encoding has the characters of a number where UTF-8 has them.
        const std::string text = node.text();
        const double number = platform::readNumber(text);
        if (!platform::isNumber(text) && mayRemark())
            remark(place() + " is " + quotedStart(text) + ", which is no finite number; it reads as " +
                   shortNumber(number) + '.');
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
    std::vector<std::string> remarks_;
};

}  // namespace mf::documents
