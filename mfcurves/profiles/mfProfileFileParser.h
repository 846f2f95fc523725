// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "mfcurves/profiles/OlderProfile.h"
#include "mfcurves/profiles/workBudget.h"

/// The reader of profile definitions in the older dialect: files named "profile.txt"
/// and the text of the default profile.
///
/// Make one for each text. It keeps one record for each definition.
///
/// Errors: operations return false. Records of the definitions before the failing one
/// are kept; the failing one leaves no record.
/// Copying: not copyable.
class mfProfileFileParser_c {
public:
    mfProfileFileParser_c();
    ~mfProfileFileParser_c();
    mfProfileFileParser_c(const mfProfileFileParser_c&) = delete;
    mfProfileFileParser_c& operator=(const mfProfileFileParser_c&) = delete;

    /// Reads all definitions of a file, or of `text` when `isText` is true. The text
    /// has to end with the closing keyword of its last definition. White space is
    /// removed from a file, but not from `text`.
    bool parseProfiles(const std::string& fileName, bool isText, std::string text);

    /// Appends the rest of the stream, without white space.
    void readCompactText(std::string& out);

    /// Reads the header of definition `index` into its record. Returns the position
    /// just after it; std::string::npos when a part of it is missing.
    std::size_t parseHeader(std::size_t index);

    /// Reduces the statements of definition `index`, which begin at `start`, to its
    /// result, the value of the last one. False when a part is missing, no variable is
    /// assigned, or a value becomes longer than the expression engine allows.
    bool parseBody(std::size_t start, std::size_t index);

    /// Appends one list of tokens to `output`: the operators of the expression and the
    /// texts between them.
    void tokenize(std::vector<std::vector<std::string>>& output, const std::string& expression);

    /// In statement `index`, replaces each token that is the variable of an earlier
    /// statement by that statement's value in brackets. False when the value becomes
    /// longer than the expression engine allows.
    bool substituteTokens(const std::vector<std::string>& variables, std::vector<std::string>& values,
                          std::vector<std::vector<std::string>>& tokenLists, std::size_t index);

    /// One record for each definition, in their order.
    const std::vector<mf::profiles::OlderProfile>& profiles() const { return profiles_; }
    /// Each getter appends one text of every record, in the order of the definitions.
    void getNames(std::vector<std::string>& out);
    void getResults(std::vector<std::string>& out);
    void getIndepVars(std::vector<std::string>& out);
    void getX1(std::vector<std::string>& out);
    void getY1(std::vector<std::string>& out);
    void getX2(std::vector<std::string>& out);
    void getY2(std::vector<std::string>& out);
    void getResultTokens(std::vector<std::vector<std::string>>& out);

private:
    bool iReadFile(const std::string& fileName, std::string& text);
    bool iParseNext(const std::string& definition);

    std::ifstream stream_;
    std::vector<mf::profiles::OlderProfile> profiles_;
    mf::profiles::WorkBudget budget_;
};
