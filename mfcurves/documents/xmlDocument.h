// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/interfaces/CString.h"

struct _xmlNode;  // of the XML engine; NOLINT(bugprone-reserved-identifier)

namespace mf::documents {

/// An element with more attributes, or with more name prefixes in scope, may be
/// refused, because the engine compares each with each. A curve document needs one.
constexpr int kMostAttributes = 1000;
/// A document with more distinct names may be refused, because the engine searches
/// each name among the previous ones. A curve document has fewer than a hundred.
constexpr int kMostNames = 100'000;
/// A document with much text in deeply nested elements may be refused, because the
/// text of each enclosing element includes it, and reads it again. Readings are counted
/// in bytes; the first limit or, if larger, the second limit times the text of the
/// document is allowed. A curve document has its text within four elements.
constexpr std::int64_t kFreeTextReadings = std::int64_t{1} << 26;
constexpr int kMostTextReadings = 32;

/// One node of a document, owned by the document. Null when a search found nothing.
///
/// A child is an element, a text, a CDATA section, a comment or a processing
/// instruction. White space between elements is not a child, so that an indented
/// document has the same children as a flat one.
class XmlNode {
public:
    XmlNode() = default;
    explicit XmlNode(_xmlNode* node) : node_(node) {}

    explicit operator bool() const { return node_ != nullptr; }
    bool isElement() const;
    XmlNode firstChild() const;
    XmlNode nextSibling() const;

    /// The text and the CDATA sections at all depths below an element, in
    /// document order and without comments, as UTF-8. White space is removed from
    /// both ends.
    std::string text() const;

private:
    friend class XmlDocument;
    _xmlNode* node_ = nullptr;
};

/// Why a document could not be read.
struct XmlProblem {
    std::string message;  ///< one sentence without its full stop; empty for no problem
    int line = 0;         ///< from 1; 0 when the place is not known
    int column = 0;       ///< from 1
};

/// While this object exists, the XML engine prints no errors of the calling thread. A
/// read reports errors by its result, and lack of memory by an exception.
class SilentEngine {
public:
    SilentEngine();
    ~SilentEngine();
    SilentEngine(const SilentEngine&) = delete;
    SilentEngine& operator=(const SilentEngine&) = delete;

private:
    void (*handler_)();  // the thread's previous error handler
    void* context_;
};

/// One XML document as a tree; the only class that uses the XML engine.
///
/// A document type declaration is refused, and so is every entity but the five that XML
/// defines. Nothing is fetched. Nesting deeper than 256 elements and a text longer than
/// ten million characters are refused. A name with a namespace matches nothing. Lack of
/// memory is reported by std::bad_alloc.
/// Errors: a failed read leaves a document without nodes, and problem() says why.
class XmlDocument {
public:
    XmlDocument();  ///< no nodes
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    /// Reads a file in the encoding that it declares, block by block. False when it
    /// cannot be read or is not valid; problem() says why.
    bool readFile(const wchar_t* path);
    /// Reads text as UTF-8, with or without a byte order mark and whatever encoding
    /// it declares. Bytes that are not UTF-8 become U+FFFD. False as for readFile.
    bool readUtf8(std::string_view text);
    const XmlProblem& problem() const { return problem_; }
    /// The number of bytes that the last read processed.
    std::size_t size() const { return size_; }

    /// The first element in document order on a path such as "//Curve//RangeX//MinX":
    /// an element with the last name, which has ancestors with the other names, in this
    /// order. Null if not found.
    XmlNode selectSingleNode(std::string_view path) const;
    /// All such elements, in document order.
    std::vector<XmlNode> selectNodes(std::string_view path) const;

    /// A node that is not in a tree yet.
    class NewNode {
    public:
        explicit NewNode(_xmlNode* node) : node_(node) {}

    private:
        friend class XmlDocument;
        struct Free {
            void operator()(_xmlNode* node) const;
        };
        std::unique_ptr<_xmlNode, Free> node_;
    };

    NewNode createElement(const char* name) const;
    NewNode createProcessingInstruction(const char* target, const char* data) const;
    /// Adds a node as the last child of `parent`; a null parent is the document itself.
    XmlNode append(XmlNode parent, NewNode child);
    /// Sets the text of an element without children. Characters that XML does not
    /// allow become U+FFFD; an empty text adds nothing.
    void setText(XmlNode element, const CString& text);
    void setAttribute(XmlNode element, const char* name, const CString& value);

    /// The document as UTF-8, with nothing added between elements and a line feed after
    /// each node of the top level. Empty for a document without nodes.
    std::string serialise() const;

private:
    struct Tree;
    class Reader;
    static std::unique_ptr<Tree> emptyTree();

    std::unique_ptr<Tree> tree_;
    XmlProblem problem_;
    std::size_t size_ = 0;
};

}  // namespace mf::documents
