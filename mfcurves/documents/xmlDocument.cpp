// SPDX-License-Identifier: MIT

#include "mfcurves/documents/xmlDocument.h"

#include <algorithm>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlsave.h>
#include <new>

#include "mfcurves/documents/xmlTree.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/xmlRuntime.h"

namespace mf::documents {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

const char* narrow(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

const xmlChar* xml(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

bool holdsText(const xmlNode* node)
{
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

std::string_view content(const xmlNode* node)
{
    return node->content ? narrow(node->content) : std::string_view();
}

bool isBlankText(const xmlNode* node)
{
    return node->type == XML_TEXT_NODE &&
           content(node).find_first_not_of(kWhiteSpace) == std::string_view::npos;
}

xmlNode* skipBlanks(xmlNode* node)
{
    while (node && isBlankText(node))
        node = node->next;
    return node;
}

std::string trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1));
}

// The node after `node` in document order, below `top`; null after the last.
xmlNode* nextBelow(const xmlNode* top, xmlNode* node)
{
    if (node->type == XML_ELEMENT_NODE && node->children)
        return node->children;
    while (node != top && !node->next)
        node = node->parent;
    return node == top ? nullptr : node->next;
}

bool hasName(const xmlNode* node, std::string_view name)
{
    return !node->ns && narrow(node->name) == name;
}

std::vector<std::string_view> namesOf(std::string_view path)
{
    std::vector<std::string_view> names;
    while (!path.empty()) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        names.push_back(path.substr(0, path.find('/')));
        path.remove_prefix(names.back().size());
    }
    return names;
}

// Finds the elements on a literal path, in document order, in one walk over the tree.
//
// `above_` holds the ancestors of the current node that match the names before the last
// one. Each name is matched by the first ancestor that has it, which leaves the most
// ancestors for the later names. So an element is on the path exactly if all those names
// are matched above it.
class PathWalk {
public:
    PathWalk(const xmlDoc* document, std::string_view path)
        : document_(document), names_(namesOf(path)), node_(document->children)
    {
    }

    // The next element on the path; null after the last.
    xmlNode* next()
    {
        while (node_) {
            xmlNode* here = node_;
            const bool found = here->type == XML_ELEMENT_NODE && above_.size() + 1 == names_.size() &&
                               hasName(here, names_.back());
            step();
            if (found)
                return here;
        }
        return nullptr;
    }

private:
    void step()
    {
        if (node_->type == XML_ELEMENT_NODE && node_->children) {
            if (above_.size() + 1 < names_.size() && hasName(node_, names_[above_.size()]))
                above_.push_back(node_);
            node_ = node_->children;
            return;
        }
        while (node_ && !node_->next)
            leave();
        if (node_)
            node_ = node_->next;
    }

    void leave()
    {
        xmlNode* parent = node_->parent;
        node_ = parent == reinterpret_cast<const xmlNode*>(document_) ? nullptr : parent;
        if (node_ && !above_.empty() && above_.back() == node_)
            above_.pop_back();
    }

    const xmlDoc* document_;
    std::vector<std::string_view> names_;
    std::vector<const xmlNode*> above_;
    xmlNode* node_;
};

bool isXmlCharacter(wchar_t c)
{
    if (c < 0x20)
        return c == L'\t' || c == L'\n' || c == L'\r';
    return c != 0xFFFE && c != 0xFFFF;
}

std::string xmlText(const CString& text)
{
    std::wstring wide(text.View());
    std::replace_if(
        wide.begin(), wide.end(), [](wchar_t c) { return !isXmlCharacter(c); }, L'\uFFFD');
    return platform::toUtf8(wide);
}

// The XML engine returns null only when memory runs out.
template <class T>
T* made(T* thing)
{
    if (!thing)
        throw std::bad_alloc();
    return thing;
}

}  // namespace

bool XmlNode::isElement() const
{
    return node_->type == XML_ELEMENT_NODE;
}

XmlNode XmlNode::firstChild() const
{
    return XmlNode(skipBlanks(node_->type == XML_ELEMENT_NODE ? node_->children : nullptr));
}

XmlNode XmlNode::nextSibling() const
{
    return XmlNode(skipBlanks(node_->next));
}

std::string XmlNode::text() const
{
    xmlNode* top = node_;
    xmlNode* child = top->children;
    if (child && !child->next && holdsText(child))  // true for nearly every element
        return trimmed(content(child));

    std::string joined;
    for (xmlNode* node = child; node; node = nextBelow(top, node))
        if (holdsText(node))
            joined += content(node);
    return trimmed(joined);
}

// The engine must have been started before its handler can be read.
SilentEngine::SilentEngine()
{
    platform::startXml();
    platform::stopXml();
    handler_ = reinterpret_cast<void (*)()>(xmlStructuredError);
    context_ = xmlStructuredErrorContext;
    xmlSetStructuredErrorFunc(nullptr, [](void*, auto*) {});
}

SilentEngine::~SilentEngine()
{
    xmlSetStructuredErrorFunc(context_, reinterpret_cast<xmlStructuredErrorFunc>(handler_));
}

void XmlDocument::NewNode::Free::operator()(_xmlNode* node) const
{
    xmlFreeNode(node);
}

XmlDocument::Tree::~Tree()
{
    xmlFreeDoc(document);
}

std::unique_ptr<XmlDocument::Tree> XmlDocument::emptyTree()
{
    auto tree = std::make_unique<Tree>();
    tree->document = made(xmlNewDoc(xml("1.0")));
    return tree;
}

XmlDocument::XmlDocument() : tree_(emptyTree()) {}

XmlDocument::~XmlDocument() = default;

XmlNode XmlDocument::selectSingleNode(std::string_view path) const
{
    return XmlNode(PathWalk(tree_->document, path).next());
}

std::vector<XmlNode> XmlDocument::selectNodes(std::string_view path) const
{
    std::vector<XmlNode> found;
    PathWalk walk(tree_->document, path);
    while (xmlNode* node = walk.next())
        found.emplace_back(node);
    return found;
}

// A node from the engine may lack its name or its content, if memory ran out between the
// two allocations.
XmlDocument::NewNode XmlDocument::createElement(const char* name) const
{
    NewNode node(made(xmlNewDocNode(tree_->document, nullptr, xml(name), nullptr)));
    made(node.node_->name);
    return node;
}

XmlDocument::NewNode XmlDocument::createProcessingInstruction(const char* target, const char* data) const
{
    NewNode node(made(xmlNewDocPI(tree_->document, xml(target), xml(data))));
    made(node.node_->name);
    made(node.node_->content);
    return node;
}

XmlNode XmlDocument::append(XmlNode parent, NewNode child)
{
    xmlNode* above = parent ? parent.node_ : reinterpret_cast<xmlNode*>(tree_->document);
    const XmlNode added(made(xmlAddChild(above, child.node_.get())));
    (void)child.node_.release();  // the tree owns it
    return added;
}

void XmlDocument::setText(XmlNode element, const CString& text)
{
    if (text.IsEmpty())
        return;
    NewNode node(made(xmlNewDocText(tree_->document, xml(xmlText(text).c_str()))));
    made(node.node_->content);
    append(element, std::move(node));
}

void XmlDocument::setAttribute(XmlNode element, const char* name, const CString& value)
{
    const xmlAttr* attribute = made(xmlNewProp(element.node_, xml(name), xml(xmlText(value).c_str())));
    made(attribute->name);
    made(made(attribute->children)->content);
}

// CurveWriter adds the XML declaration as a node, so the engine must not add one.
std::string XmlDocument::serialise() const
{
    const std::unique_ptr<xmlBuffer, void (*)(xmlBuffer*)> buffer(made(xmlBufferCreate()), xmlBufferFree);
    xmlSaveCtxt* out = made(xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_NO_DECL));
    const bool written = xmlSaveDoc(out, tree_->document) >= 0;
    if (xmlSaveClose(out) < 0 || !written)
        throw std::bad_alloc();
    return {narrow(xmlBufferContent(buffer.get())), static_cast<std::size_t>(xmlBufferLength(buffer.get()))};
}

}  // namespace mf::documents
