// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "mfcurves/documents/xmlDocument.h"
#include "mfcurves/interfaces/CString.h"

/// Holds one XML document for one read or one write of a curve, and is the way
/// in and out of it: a file, or a text buffer.
///
/// Errors: load, loadBuffer and document() say; a save that fails says nothing.
/// Exceptions of the text conversion travel to the caller.
/// Ownership: the document goes with the object. The starts of the XML engine do
/// not: initialize raises their count for the calling thread and only shutdown
/// lowers it.
class mfCurveDocument_c {
public:
    /// What a load answers: -1 for true, 0 for false.
    using VariantBool = std::int16_t;

    mfCurveDocument_c() = default;  ///< no path, no text, no document
    mfCurveDocument_c(const mfCurveDocument_c&) = delete;
    mfCurveDocument_c& operator=(const mfCurveDocument_c&) = delete;

    void setPath(const CString& path) { path_ = path; }
    const CString& getPath() const { return path_; }
    /// Tells only where the document comes from; it changes nothing here.
    void setFromBuffer(bool fromBuffer) { fromBuffer_ = fromBuffer; }
    bool getFromBuffer() const { return fromBuffer_; }
    void setXmlText(std::string text) { xmlText_ = std::move(text); }
    std::string getXmlText() const { return xmlText_; }

    /// Starts the XML engine and makes a document without nodes, unless there is
    /// a document.
    bool initialize();
    /// Drops the document and takes one start of the XML engine back; true.
    bool shutdown();

    /// Reads the file at the path, in the encoding that it declares. False,
    /// leaving no nodes, when it cannot be read or used.
    VariantBool load();
    /// Reads the text up to its first zero byte as UTF-8, whatever it declares
    /// and with or without a byte order mark. Bytes that are not UTF-8 become
    /// U+FFFD. False, leaving no nodes, when it cannot be used.
    VariantBool loadBuffer();
    /// Puts the document in the place of the file at the path. A save that fails
    /// leaves the old file as it was.
    void save() const;
    /// Replaces the text by the document's, in the narrow encoding.
    void extractXmlText();

    /// Puts a node under `parent`, behind its other children; a null parent is
    /// the document itself.
    mf::documents::XmlNode appendNode(mf::documents::XmlNode parent,
                                      mf::documents::XmlDocument::NewNode child);

    /// Null before initialize and after shutdown.
    mf::documents::XmlDocument* document() { return document_.get(); }

private:
    CString path_;
    bool fromBuffer_ = false;
    std::unique_ptr<mf::documents::XmlDocument> document_;
    std::string xmlText_;
};
