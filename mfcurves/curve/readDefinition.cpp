// SPDX-License-Identifier: MIT

#include "mfcurves/curve/readDefinition.h"

#include <algorithm>
#include <map>
#include <utility>

#include "mfcurves/curve/LawFinder.h"
#include "mfcurves/curve/PlainFunction.h"
#include "mfcurves/curve/definitionOf.h"
#include "mfcurves/curve/problems.h"
#include "mfcurves/documents/readCurve.h"
#include "mfcurves/platform/encoding.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/narrowText.h"

namespace mf::curve {
namespace {

using documents::DocumentLaws;
using documents::ReadOutcome;

// Where a document comes from, for the places of problems.
struct Origin {
    std::string path;  // empty for a text

    std::string line(int number) const
    {
        return path.empty() ? "line " + std::to_string(number) : path + ':' + std::to_string(number);
    }
};

Problem failureOf(const ReadOutcome& outcome, const Origin& origin)
{
    const documents::XmlProblem& xml = outcome.xmlProblem;
    if (xml.line > 0)
        return {Problem::Level::Error, origin.line(xml.line),
                messageOf(xml.message) + " (column " + std::to_string(xml.column) + ')'};
    if (!outcome.missingResult.empty())
        return {Problem::Level::Error, origin.path,
                "it runs over the motion result " + quoted(outcome.missingResult) +
                    ", which is not among the motion results that were given"};
    return {Problem::Level::Error, origin.path, oneLine(messageOf(outcome.reason))};
}

// The laws that the rows of a document name.
class NamedLaws {
public:
    NamedLaws(const DocumentLaws& document, Laws library) : hasDefinitions_(!document.definitions.empty())
    {
        for (const DocumentLaws::Definition& definition : document.definitions)
            own_[definition.name] = definition.text;  // the last one of a name counts
        for (auto& law : library)
            library_.push_back(std::move(law));
    }

    // A name that the document does not define may be that of a library law, or the bare name
    // of a built-in law if the document defines laws at all. For any other name the result is
    // empty.
    RowLaw lawOf(const std::string& name) const
    {
        if (const auto own = own_.find(name); own != own_.end())
            return {own->first, own->second};
        if (const Law* law = lawNamed(withoutSource(name), library_))
            return {law->text.name, law->text.text};
        if (const Law* law = lawNamed(name, builtInLaws()); law && hasDefinitions_)
            return {law->text.name, law->text.text};
        return {};
    }

private:
    static const Law* lawNamed(const std::string& name, const Laws& laws)
    {
        const std::wstring wanted = platform::widen(name);
        for (const auto& law : laws) {
            if (platform::compareNoCase(platform::widen(law->text.name).c_str(), wanted.c_str()) == 0)
                return law.get();
        }
        return nullptr;
    }

    std::map<std::string, std::string> own_;
    Laws library_;
    const bool hasDefinitions_;
};

// A row without a law takes the default one.
void nameRows(SegmentShape& shape, const DocumentLaws& document, Laws library, std::vector<Problem>& warnings)
{
    const NamedLaws laws(document, std::move(library));
    const LawText& defaultLaw = builtInLaws().front()->text;
    std::vector<RowLaw> rowLaws;
    for (std::size_t row = 1; row < document.rowNames.size(); ++row) {
        const std::string& name = document.rowNames[row];
        RowLaw law = laws.lawOf(name);
        if (law.name.empty()) {
            law = {defaultLaw.name, defaultLaw.text};
            warnings.push_back({Problem::Level::Warning, "row " + std::to_string(row),
                                "the document does not define its law " + quoted(name) + "; the row takes " +
                                    quoted(defaultLaw.name)});
        }
        rowLaws.push_back(law);
    }
    nameLaws(shape, rowLaws);
}

Laws libraryOf(const ReadSettings& settings, std::vector<Problem>& problems)
{
    Laws library;
    for (const std::string& folder : settings.libraryFolders) {
        const Laws laws = lawsOfFolder(folder, problems);
        library.insert(library.end(), laws.begin(), laws.end());
    }
    return library;
}

// Sets the meaning of x for the document of an expression. Only the library's own names count:
// those of a host's resource library are for the documents of that host.
void setVariable(CurveDefinition& definition, const std::string& name)
{
    const std::wstring wide = platform::widen(name);
    definition.motionResult.clear();
    if (name.empty() || platform::compareNoCase(wide.c_str(), L"Time") == 0) {
        definition.over = Over::Time;
    } else if (platform::compareNoCase(wide.c_str(), L"CycleAngle") == 0) {
        definition.over = Over::CycleAngle;
    } else {
        definition.over = Over::MotionResult;
        definition.motionResult = name;
    }
}

// Reports what a text loses before it is read as XML.
void checkBytes(std::string_view xml, std::vector<Problem>& problems)
{
    const auto warn = [&](std::size_t position, const char* message) {
        const auto line =
            std::count(xml.begin(), xml.begin() + static_cast<std::ptrdiff_t>(position), '\n') + 1;
        problems.push_back({Problem::Level::Warning, "line " + std::to_string(line), message});
    };
    if (const std::size_t zero = xml.find('\0'); zero != std::string_view::npos) {
        warn(zero, "the text ends at a zero byte, and what follows is not read");
        xml = xml.substr(0, zero);
    }
    if (platform::isAscii(xml))
        return;
    const std::string valid = platform::toUtf8(platform::widen(xml));
    const auto different = std::mismatch(xml.begin(), xml.end(), valid.begin(), valid.end()).first;
    if (different != xml.end())
        warn(static_cast<std::size_t>(different - xml.begin()),
             "the text is not UTF-8 there, and reads as U+FFFD");
}

CurveDefinition definitionFrom(PlainFunction& function, const DocumentLaws& laws, Laws library,
                               std::vector<Problem>& problems)
{
    CurveDefinition definition;
    switch (function.getFunctionType()) {
        case FunctionType_Segments: {
            definition = headOf(function, function.segments, problems);
            SegmentShape shape = rowsOf(function.segments, problems);
            nameRows(shape, laws, std::move(library), problems);
            definition.shape = std::move(shape);
            break;
        }
        case FunctionType_DataPoints:
            definition = headOf(function, function.points, problems);
            definition.shape = pointsOf(function.points);
            break;
        case FunctionType_Expression:
            definition = headOf(function, function.expression, problems);
            setVariable(definition, platform::toUtf8(function.expression.getIndepVar().View()));
            definition.shape = textOf(function.expression);
            break;
    }
    return definition;
}

CurveDefinition read(const Origin& origin, std::string xml, const ReadSettings& settings,
                     std::vector<Problem>& warnings)
{
    std::vector<Problem> problems;
    checkBytes(xml, problems);
    Laws library = libraryOf(settings, problems);
    PlainFunction function(settings.motionResults);
    function.setMotionObjectType(MotionObjectType_Motor);  // a file replaces it by its own
    DocumentLaws laws;
    documents::ReadOptions options;
    options.laws = &laws;
    options.setsVersion = false;
    options.takeObjectOfFile = true;
    const ReadOutcome outcome = documents::readCurve(function, CString(platform::widen(origin.path)),
                                                     origin.path.empty(), std::move(xml), options);
    for (const documents::Remark& remark : outcome.remarks)
        problems.push_back({Problem::Level::Warning, remark.place, oneLine(remark.message)});
    if (outcome.remarks.size() == documents::kMostRemarks)
        problems.push_back(
            {Problem::Level::Warning, "", "after these, numbers and rows were no longer checked"});

    CurveDefinition definition;
    if (!outcome.reason.empty())
        problems.push_back(failureOf(outcome, origin));
    else
        definition = definitionFrom(function, laws, std::move(library), problems);
    if (outcome.reason.empty() && outcome.objectType == MotionObjectType_None)
        problems.push_back(
            {Problem::Level::Warning, "", "it is for neither a motor nor a force nor a torque"});
    if (hasError(problems))
        throw errorOf(std::move(problems));
    warnings.insert(warnings.end(), problems.begin(), problems.end());
    return definition;
}

}  // namespace

CurveDefinition readDefinitionFile(const std::string& path, const ReadSettings& settings,
                                   std::vector<Problem>& warnings)
{
    return read({path}, "", settings, warnings);
}

CurveDefinition readDefinitionText(std::string_view xml, const ReadSettings& settings,
                                   std::vector<Problem>& warnings)
{
    return read({}, std::string(xml), settings, warnings);
}

}  // namespace mf::curve
