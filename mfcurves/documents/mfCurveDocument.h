// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "mfcurves/documents/xmlDocument.h"
#include "mfcurves/interfaces/CString.h"

/// Holds one XML document for one read or one write of a curve, and loads it from or
/// saves it to a file or a text buffer.
///
/// Errors: load, loadBuffer and document() report a failure; save does not.
/// Exceptions of the text conversion are passed on to the caller.
/// Ownership: the object owns the document. It does not own the starts of the XML
/// engine: initialize raises their count for the calling thread, and only shutdown
/// lowers it.
class mfCurveDocument_c {
public:
    /// What a load returns: -1 for true, 0 for false.
    using VariantBool = std::int16_t;

    mfCurveDocument_c() = default;  ///< no path, no text, no document
    mfCurveDocument_c(const mfCurveDocument_c&) = delete;
    mfCurveDocument_c& operator=(const mfCurveDocument_c&) = delete;

    void setPath(const CString& path) { path_ = path; }
    const CString& getPath() const { return path_; }
    /// Only records where the document comes from; this class does not use it.
    void setFromBuffer(bool fromBuffer) { fromBuffer_ = fromBuffer; }
    bool getFromBuffer() const { return fromBuffer_; }
    void setXmlText(std::string text) { xmlText_ = std::move(text); }
    std::string getXmlText() const { return xmlText_; }

    /// Starts the XML engine and makes a document without nodes, unless one exists.
    bool initialize();
    /// Deletes the document and undoes one start of the XML engine. Always true.
    bool shutdown();

    /// Reads the file at the path, in the encoding that it declares. False,
    /// leaving no nodes, when it cannot be read or used.
    VariantBool load();
    /// Reads the text up to its first zero byte as UTF-8, whatever it declares
    /// and with or without a byte order mark. Bytes that are not UTF-8 become
    /// U+FFFD. False, leaving no nodes, when it cannot be used.
    VariantBool loadBuffer();
    /// Replaces the file at the path by the document. A failed save leaves the old file
    /// unchanged.
    void save() const;
    /// Replaces the text by the document's, in the narrow encoding.
    void extractXmlText();

    /// Adds a node as the last child of `parent`; a null parent is the document itself.
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
