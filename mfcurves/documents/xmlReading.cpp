// SPDX-License-Identifier: MIT

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <new>
#include <system_error>

#include "mfcurves/documents/xmlTree.h"
#include "mfcurves/platform/files.h"
#include "mfcurves/platform/narrowText.h"

namespace mf::documents {
namespace {

#if LIBXML_VERSION >= 21200
using ErrorPointer = const xmlError*;
#else
using ErrorPointer = xmlError*;
#endif

// Fills a buffer of that size and returns the number of bytes written: 0 at the end, -1
// on a failure.
using Source = std::function<int(char*, int)>;

// The engine's messages about its limits name the option that removes them.
constexpr std::string_view kAdviceOfEngine = " use XML_PARSE_HUGE option";

std::string sentence(const char* message)
{
    std::string text = message ? message : "not readable as XML";
    if (const std::size_t advice = text.find(kAdviceOfEngine); advice != std::string::npos)
        text.erase(advice, kAdviceOfEngine.size());
    std::replace(text.begin(), text.end(), '\n', ' ');
    text.erase(text.find_last_not_of(" .") + 1);
    return text;
}

// The engine uses one code for lack of memory and for a text beyond its limits. Only the
// message distinguishes them.
bool isMemoryFailure(const xmlError& error)
{
    if (error.code != XML_ERR_NO_MEMORY)
        return false;
    const std::string_view message = error.message ? error.message : "";
    for (const char* limit : {"too long", "huge", "overflow"})
        if (message.find(limit) != std::string_view::npos)
            return false;
    return true;
}

}  // namespace

// One read from a source. After the first problem the source returns no more bytes, so
// that a document that cannot be read takes no more time.
class XmlDocument::Reader {
public:
    Reader(Source source, XmlProblem& problem, std::size_t& size)
        : source_(std::move(source)), problem_(problem), size_(size), parser_(xmlNewParserCtxt())
    {
        if (!parser_)
            throw std::bad_alloc();
        parser_->_private = this;
        parser_->sax->internalSubset = refuseTypeDeclaration;
        parser_->sax->characters = takeText;
        parser_->sax->ignorableWhitespace = takeText;
        parser_->sax->cdataBlock = takeSection;
        parser_->sax->serror = parserError;
    }
    ~Reader() { xmlFreeParserCtxt(parser_); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    // Returns the document. If it cannot be used, sets the problem and returns a document
    // without nodes.
    std::unique_ptr<Tree> run(int options)
    {
        // Receives the errors that do not belong to a parser, such as a failed conversion.
        xmlSetStructuredErrorFunc(this, engineError);
        auto tree = std::make_unique<Tree>();
        tree->document = xmlCtxtReadIO(parser_, readBlock, nullptr, this, nullptr, nullptr,
                                       options | XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_BIG_LINES);
        if (outOfMemory_)
            throw std::bad_alloc();
        // The engine takes a zero byte after the root for the end of the text.
        if (tree->document && parser_->input && parser_->input->cur < parser_->input->end)
            report("Extra content after the end of the document");
        if (!tree->document)
            report("Not readable as XML");
        return problem_.message.empty() ? std::move(tree) : emptyTree();
    }

private:
    static Reader& of(void* parser)
    {
        return *static_cast<Reader*>(static_cast<xmlParserCtxt*>(parser)->_private);
    }

    static int readBlock(void* context, char* buffer, int size)
    {
        Reader& reader = *static_cast<Reader*>(context);
        reader.checkLimits();
        if (!reader.problem_.message.empty())
            return 0;
        const int got = reader.source_(buffer, size);
        if (got < 0)
            reader.report("The file cannot be read to its end");
        const int taken = std::max(got, 0);
        reader.size_ += static_cast<std::size_t>(taken);
        return taken;
    }

    // The engine compares the attributes of a tag with each other when the tag is complete,
    // so too many are refused before that. It looks up names in lists that grow with their
    // number.
    void checkLimits()
    {
        constexpr int kFieldsOfAttribute = 5;
        constexpr int kFieldsOfPrefix = 2;
        if (parser_->maxatts > 2 * kFieldsOfAttribute * kMostAttributes ||
            parser_->nsNr > kFieldsOfPrefix * kMostAttributes)
            reportHere("Too many attributes");
        if (xmlDictSize(parser_->dict) > kMostNames)
            reportHere("Too many distinct names");
    }

    static void takeText(void* parser, const xmlChar* text, int length)
    {
        of(parser).count(length);
        xmlSAX2Characters(parser, text, length);
    }

    static void takeSection(void* parser, const xmlChar* text, int length)
    {
        of(parser).count(length);
        xmlSAX2CDataBlock(parser, text, length);
    }

    // nodeNr is the number of open elements, all of which contain this text.
    void count(std::int64_t length)
    {
        text_ += length;
        textReadings_ += length * parser_->nodeNr;
        if (textReadings_ > kFreeTextReadings && textReadings_ > kMostTextReadings * text_)
            reportHere("Too much text in nested elements");
    }

    static void refuseTypeDeclaration(void* parser, const xmlChar*, const xmlChar*, const xmlChar*)
    {
        of(parser).reportHere("A document type declaration is not allowed");
        xmlStopParser(static_cast<xmlParserCtxt*>(parser));
    }

    static void parserError(void* parser, ErrorPointer error) { of(parser).take(*error); }
    static void engineError(void* context, ErrorPointer error)
    {
        static_cast<Reader*>(context)->take(*error);
    }

    // A name with an undeclared prefix is an error. The engine's messages about validity are
    // ignored, because these documents have no document type.
    void take(const xmlError& error)
    {
        if (problem_.message.empty() && isMemoryFailure(error))
            outOfMemory_ = true;
        if (error.level < XML_ERR_ERROR || error.domain == XML_FROM_VALID || error.domain == XML_FROM_DTD)
            return;
        report(error.message, error.line, error.int2);
    }

    void reportHere(const char* message)
    {
        report(message, parser_->input ? parser_->input->line : 0, parser_->input ? parser_->input->col : 0);
    }

    // Keeps the first problem, because later ones usually follow from it. No exception may
    // pass through the engine, which is C.
    void report(const char* message, int line = 0, int column = 0) noexcept
    {
        if (!problem_.message.empty() || outOfMemory_)
            return;
        try {
            problem_ = {sentence(message), line, column};
        } catch (const std::bad_alloc&) {
            outOfMemory_ = true;
        }
    }

    const SilentEngine engine_;  // restores the thread's error handler at the end
    Source source_;
    XmlProblem& problem_;
    std::size_t& size_;
    xmlParserCtxt* parser_;
    bool outOfMemory_ = false;
    std::int64_t text_ = 0;          // in bytes
    std::int64_t textReadings_ = 0;  // in bytes, counted once for every enclosing element
};

bool XmlDocument::readFile(const wchar_t* path)
{
    errno = 0;  // so that a value found later is the reason of this failure
    std::ifstream file = platform::openFile(path);
    int failure = file.is_open() ? 0 : errno;
    const Source source = [&](char* buffer, int size) {
        file.read(buffer, size);
        failure = file.bad() ? errno : 0;
        return file.bad() ? -1 : static_cast<int>(file.gcount());
    };
    problem_ = {};
    size_ = 0;
    if (file.is_open()) {
        tree_ = Reader(source, problem_, size_).run(0);
    } else {
        tree_ = emptyTree();
        problem_.message = "The file cannot be opened";
    }
    if (failure != 0)
        problem_.message += ": " + std::generic_category().message(failure);
    return problem_.message.empty();
}

bool XmlDocument::readUtf8(std::string_view text)
{
    const Source source = [&text](char* buffer, int size) {
        return static_cast<int>(platform::moveValidUtf8(text, buffer, static_cast<std::size_t>(size)));
    };
    problem_ = {};
    size_ = 0;
    tree_ = Reader(source, problem_, size_).run(XML_PARSE_IGNORE_ENC);
    return problem_.message.empty();
}

}  // namespace mf::documents
