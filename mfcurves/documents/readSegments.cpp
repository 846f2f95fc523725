// SPDX-License-Identifier: MIT

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mfcurves/documents/readState.h"
#include "mfcurves/documents/readTables.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/profiles/definitionReading.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfProfileKey.h"
#include "mfcurves/profiles/mfProfileManager.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"
#include "mfcurves/segments/mfFunctionSegments.h"
#include "mfcurves/segments/mfSegment.h"

namespace mf::documents {
namespace {

class SegmentReader {
public:
    explicit SegmentReader(ReadState& reading) : reading_(reading), laws_(reading.options().laws) {}

    // The text of a nested definition belongs to both definitions. The budget for all
    // definitions depends only on the length of the document; once it is spent, further
    // definitions are not read.
    void readProfileDefinitions()
    {
        int definition = 0;
        definitionBudget_.allowFor(reading_.xml().size());
        for (const XmlNode& node :
             reading_.xml().selectNodes("//Curve//ProfileDefinitions//ProfileDefinition")) {
            if (!definitionBudget_.payForDefinition())
                return;
            std::string uniqueName;
            std::string functionText;
            int position = 0;
            for (XmlNode child = node.firstChild(); child && position < 2;
                 child = child.nextSibling(), ++position)
                if (child.isElement())
                    (position == 0 ? uniqueName : functionText) = laws_ ? child.text() : narrowText(child);
            definitionBudget_.payForNarrowText(uniqueName.size() + functionText.size());
            readDefinition(definition, uniqueName, functionText);
            ++definition;
        }
    }

    bool readRows(mfFunctionSegments_c& function)
    {
        if (!reading_.singleNode("//Curve//SegmentCount"))
            return false;
        mfProfileManager_c* manager = usedManager();
        const std::vector<XmlNode> nodes = reading_.xml().selectNodes("//Curve//Segments//Segment");
        int row = 0;
        for (const XmlNode& node : nodes) {
            reading_.tellRow(static_cast<std::size_t>(row), nodes.size());
            addRow(function, row, readSegment(node, row, manager));
            ++row;
        }
        return true;
    }

private:
    // Null when profiles do not come from a manager.
    mfProfileManager_c* usedManager() const
    {
        const bool isUsed = !laws_ && mfProfileManager_c::s_UseNewProfileManager();
        return isUsed ? interfaces::profileManager() : nullptr;
    }

    // A definition that does not parse is left out.
    void readDefinition(int definition, const std::string& uniqueName, std::string& functionText)
    {
        mfProfileManager_c* manager = usedManager();
        if (!laws_ && !manager)
            return;
        auto profile = std::make_unique<mfProfile_c>();
        mfSegmentTypeParser_c().upgradeKeywords(functionText);
        if (const auto outcome = profiles::parseDefinition(functionText, *profile, definitionBudget_);
            !outcome) {
            if (reading_.mayRemark())
                reading_.remark(
                    "definition " + std::to_string(definition + 1),
                    "the law " + quotedStart(uniqueName) + " is left out: " + outcome.problem().reason);
            return;
        }
        if (laws_)
            laws_->definitions.push_back({uniqueName, functionText});
        else
            registerProfile(*manager, uniqueName, std::move(profile));
    }

    // A definition that equals a known profile is not stored; its name then refers to
    // that profile. If no key could be made, the name is stored with the empty key.
    void registerProfile(mfProfileManager_c& manager, const std::string& uniqueName,
                         std::unique_ptr<mfProfile_c> profile)
    {
        const std::string baseName = mfSegmentTypeParser_c().baseProfileName(uniqueName);
        mfProfileKey_c key;
        const int status = reading_.isFromBuffer()
                               ? manager.addAssemblyProfileFromDocument(baseName, true, profile.get(), key)
                               : manager.addAssemblyProfile(baseName, reading_.path(), profile.get(), key);
        if (status == 0)
            (void)profile.release();  // the manager owns it
        manager.rememberDocumentName(uniqueName, key);
    }

    // Elements are identified by their position, not by name; other children are not
    // counted.
    std::unique_ptr<mfSegment_c> readSegment(const XmlNode& node, int row, mfProfileManager_c* manager)
    {
        auto segment = std::make_unique<mfSegment_c>();
        if (laws_)
            laws_->rowNames.emplace_back();
        XmlNode profile;
        int element = 0;
        for (XmlNode child = node.firstChild(); child && element < 4; child = child.nextSibling()) {
            if (!child.isElement())
                continue;
            switch (++element) {
                case 1:
                    segment->setStartX(segmentX(child, "StartX", row));
                    break;
                case 2:
                    segment->setEndX(segmentX(child, "EndX", row));
                    break;
                case 3:
                    segment->setValue(reading_.number(
                        child, [&] { return std::pair(segmentPlace(row), std::string("\"Value\"")); }));
                    break;
                default:
                    profile = child;
                    setProfile(*segment, child, manager);
            }
        }
        if (element < (row == 0 ? 3 : 4))
            reading_.remark(segmentPlace(row), "it does not hold start, end, value and profile");
        if (manager)
            completeProfile(*segment, profile, row, *manager);
        return segment;
    }

    // The first row has no X of its own; documents have blanks in its place.
    double segmentX(const XmlNode& node, const char* name, int row)
    {
        if (row == 0)
            return platform::readNumber(node.text());
        return reading_.number(node,
                               [&] { return std::pair(segmentPlace(row), '"' + std::string(name) + '"'); });
    }

    // Finds the name among the definitions of the document. If the document has any
    // definition, also finds it among the known profiles.
    void setProfile(mfSegment_c& segment, const XmlNode& node, mfProfileManager_c* manager) const
    {
        if (laws_) {
            laws_->rowNames.back() = node.text();
            return;
        }
        if (!mfProfileManager_c::s_UseNewProfileManager()) {
            segment.setProfileName(wideText(node));
            return;
        }
        if (!manager || !manager->hasDocumentNames())
            return;
        mfProfileKey_c key;
        manager->lookupDocumentName(narrowText(node), key);
        if (key.isEmpty()) {
            key.name = wideText(node);
            manager->currentSourceSuffix(key.source);
        }
        if (manager->findProfile(key))
            segment.setProfileKey(key);
    }

    // A row that still has no profile gets the default one.
    void completeProfile(mfSegment_c& segment, const XmlNode& node, int row, mfProfileManager_c& manager)
    {
        const bool isFound = static_cast<bool>(segment.getProfileKey());
        if (!isFound || segment.getProfileKey()->name.IsEmpty()) {
            CString name;
            manager.defaultDisplayName(name);
            segment.setProfileKey(manager.getProfileKeyFromDisplayName(name));
        }
        if (!segment.getProfile())
            segment.setProfile(manager.findProfile(*segment.getProfileKey()));
        if (!isFound && node && row > 0 && reading_.mayRemark())
            reading_.remark(segmentPlace(row), "\"Profile\" is " + quotedStart(node.text()) +
                                                   ", which the document does not define; the row takes " +
                                                   quoted(segment.getDisplayName()));
    }

    // The first row only states where the curve begins. Each row stores its own copy of
    // the formula with its numbers, so a short document can use a long formula many times.
    // Rows after the end of the budget get no formula.
    void addRow(mfFunctionSegments_c& function, int row, std::unique_ptr<mfSegment_c> segment)
    {
        const double startX = segment->getStartX();
        function.addSegment(segment.get());
        const mfSegment_c& stored = *segment.release();  // the table owns it
        function.checkInvalid(row);
        formulaBudget_.allowForRow();
        if (row == 0)
            return;
        if (stored.getStartX() != startX)
            reading_.remark(segmentPlace(row), "it starts at " + shortNumber(startX) +
                                                   ", where the previous row does not end; it becomes a row "
                                                   "from " +
                                                   shortNumber(stored.getStartX()) + " to " +
                                                   shortNumber(stored.getEndX()) + " with value 0");
        if (laws_)
            return;
        if (formulasFit_) {
            function.parseExpression(row);
            formulasFit_ = formulaBudget_.payForFormula(costOfFormula(stored));
            if (!formulasFit_)
                reading_.remark(
                    segmentPlace(row),
                    "the rows after it get no formula, because those up to it are too long together");
        }
        function.calculateValue(row);
    }

    // In bytes. A formula that exceeded the engine's limit was written up to that limit.
    static std::size_t costOfFormula(const mfSegment_c& segment)
    {
        const CString formula = segment.getProfileExpr();
        if (formula.IsEmpty() && segment.getProfile())
            return engine::kLongestText * sizeof(wchar_t);
        return formula.View().size() * sizeof(wchar_t);
    }

    ReadState& reading_;
    DocumentLaws* const laws_;               // see ReadOptions
    profiles::WorkBudget definitionBudget_;  // of all definitions in the document
    profiles::WorkBudget formulaBudget_;     // of the formulas of all rows
    bool formulasFit_ = true;                // false once formulaBudget_ is spent
};

}  // namespace

bool readSegments(ReadState& reading, mfFunctionSegments_c& function)
{
    SegmentReader reader(reading);
    reader.readProfileDefinitions();
    return reader.readRows(function);
}

}  // namespace mf::documents
