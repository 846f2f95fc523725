// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mfcurves/curve/CurveDefinition.h"
#include "mfcurves/curve/Problem.h"
#include "mfcurves/profiles/mfProfile.h"

/// Motion laws and their names.
namespace mf::curve {

struct Law {
    mfProfile_c record;
    LawText text;            // as a definition stores it
    bool isBuiltIn = false;  // a definition does not need its text
};

using Laws = std::vector<std::shared_ptr<const Law>>;

const Laws& builtInLaws();
/// The laws of share/mfcurves/SegmentTypes.txt that are not built in.
const Laws& shippedLaws();
/// The path of the file SegmentTypes.txt in a folder.
std::string definitionFileIn(const std::string& folder);
/// The laws of that file. Reasons why it cannot be read are appended to `problems` as
/// errors, text that the reader skips as warnings. Empty after an error.
Laws lawsOfFolder(const std::string& folder, std::vector<Problem>& problems);

/// "Cubic" for "Cubic (Default)".
std::string withoutSource(const std::string& name);
/// Whether a law with that name and definition is a built-in one: "Cubic" or
/// "Cubic (Default)" with exactly its text.
bool isBuiltIn(const std::string& name, std::string_view definitionText);

/// Finds laws by name: a definition's own, then those of a library, the built-in ones and
/// the shipped ones. Each is parsed once.
///
/// An own law is found by its exact name, else by a name that agrees except for case or
/// the source in brackets. For other laws "(Default)" means only the built-in law, and
/// "(User)" means the same as no source.
class LawFinder {
public:
    /// `own` must outlive the finder.
    explicit LawFinder(const std::vector<LawText>& own, Laws library = {});

    struct Found {
        std::shared_ptr<const Law> law;  // null if there is a problem
        std::string problem;             // "there is no law ..."
        bool isOwn = false;
    };

    const Found& named(const std::string& name);

    /// The texts of all laws found so far that are neither own nor built in.
    std::vector<LawText> borrowedTexts() const;

private:
    const LawText* iOwn(const std::string& name) const;
    std::shared_ptr<const Law> iOther(const std::string& name) const;
    Found iFind(const std::string& name) const;
    std::string iNothingNamed(const std::string& name) const;

    const std::vector<LawText>& own_;
    std::map<std::string, const LawText*> byName_;
    std::map<std::wstring, const LawText*> byLooseName_;  // folded, with and without source
    const Laws library_;
    std::map<std::string, Found> found_;
};

}  // namespace mf::curve
