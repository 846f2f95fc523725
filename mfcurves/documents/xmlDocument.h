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

/// An element with more attributes, or with more name prefixes in force, may be
/// refused: the engine compares each with each. A curve document needs one.
constexpr int kMostAttributes = 1000;
/// So may a document of more distinct names: the engine looks each up among
/// those before it. A curve document has fewer than a hundred.
constexpr int kMostNames = 100'000;
/// So may a document with much text far down: every element around a text can be
/// asked for it, and reads it again. As many bytes as this are always taken, and
/// as many times the text of the whole document. A curve document has its text
/// within four elements.
constexpr std::int64_t kFreeTextReadings = std::int64_t{1} << 26;
constexpr int kMostTextReadings = 32;

/// One node of a document, lent by it. Null where a search found nothing.
///
/// A child is an element, a text, a CDATA section, a comment or a processing
/// instruction. White space between elements is none, so that an indented
/// document has the children of a flat one.
class XmlNode {
public:
    XmlNode() = default;
    explicit XmlNode(_xmlNode* node) : node_(node) {}

    explicit operator bool() const { return node_ != nullptr; }
    bool isElement() const;
    XmlNode firstChild() const;
    XmlNode nextSibling() const;

    /// The text and the CDATA sections at all depths below an element, in
    /// document order and without comments, as UTF-8. White space is taken off
    /// both ends.
    std::string text() const;

private:
    friend class XmlDocument;
    _xmlNode* node_ = nullptr;
};

/// Why a document could not be read.
struct XmlProblem {
    std::string message;  ///< one sentence without its full stop; empty for none
    int line = 0;         ///< from 1; 0 where the place is not known
    int column = 0;       ///< from 1
};

/// Keeps the XML engine from printing what goes wrong on the calling thread, for
/// the life of this object. A read tells by its answer, and missing memory by an
/// exception.
class SilentEngine {
public:
    SilentEngine();
    ~SilentEngine();
    SilentEngine(const SilentEngine&) = delete;
    SilentEngine& operator=(const SilentEngine&) = delete;

private:
    void (*handler_)();  // what the thread did with errors before
    void* context_;
};

/// One XML document as a tree; the only place that knows the XML engine.
///
/// A document type declaration is refused, and with it every entity but the five
/// that XML defines. Nothing is fetched. Nesting deeper than 256 elements and a
/// text longer than ten million characters are refused. Names with a namespace
/// match no name. Missing memory is std::bad_alloc.
/// Errors: a read that fails leaves a document without nodes, and problem() says
/// why.
class XmlDocument {
public:
    XmlDocument();  ///< no nodes
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    /// Reads a file in the encoding that it declares, block by block.
    bool readFile(const wchar_t* path);
    /// Reads text as UTF-8, with or without a byte order mark and whatever
    /// encoding it declares. Bytes that are not UTF-8 become U+FFFD.
    bool readUtf8(std::string_view text);
    const XmlProblem& problem() const { return problem_; }
    /// How many bytes the last read took in.
    std::size_t size() const { return size_; }

    /// The first element in document order on a path such as "//Curve//RangeX//MinX":
    /// one with the last of the names, and with each of the others somewhere
    /// above it, in this order. Null for none.
    XmlNode selectSingleNode(std::string_view path) const;
    /// All such elements, in document order.
    std::vector<XmlNode> selectNodes(std::string_view path) const;

    /// A node that stands in no tree yet.
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
    /// Puts a node under `parent`, behind its other children; a null parent is
    /// the document itself.
    XmlNode append(XmlNode parent, NewNode child);
    /// Gives an element without children a text. Characters that XML cannot hold
    /// become U+FFFD; the empty text adds nothing.
    void setText(XmlNode element, const CString& text);
    void setAttribute(XmlNode element, const char* name, const CString& value);

    /// The document as UTF-8: its nodes as they stand, nothing added between
    /// elements, a line feed behind each node of the top level. Empty for a
    /// document without nodes.
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
