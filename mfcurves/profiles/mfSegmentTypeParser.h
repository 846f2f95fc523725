// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class mfProfile_c;

/// The reader of profile definitions in the current dialect: the built-in table,
/// files named "SegmentTypes.txt" and the definitions stored in curve documents.
///
/// It holds nothing and is made where it is needed. Two things outlive a call and
/// make reading an affair of one thread at a time: whether the text read so far
/// stands between double quotes, and the built-in table, which is normalised in
/// place at its first use.
///
/// Errors: false; an output keeps what was stored in it so far. A definition
/// whose reduction outgrows the largest text of the expression engine is refused.
class mfSegmentTypeParser_c {
public:
    /// Appends one new record for each definition of the file to `out`; the caller
    /// owns them. An empty file name means the built-in table. False at the first
    /// definition that does not parse; the records before it stay in `out`.
    bool readProfiles(const std::string& fileName, std::vector<mfProfile_c*>& out);

    /// Fills `record` from one definition in normal form. With `upgradeKeywords`
    /// the older keywords in `text` are rewritten first.
    bool parseDefinition(std::string& text, mfProfile_c* record, bool upgradeKeywords);

    /// A display name without its bracketed source and without blanks at its ends.
    std::string baseProfileName(const std::string& displayName);

    /// Replaces `out` by the definitions of a file, each in normal form and through
    /// its closing keyword. False when the file does not open or holds none.
    bool readDefinitions(const std::string& fileName, std::vector<std::string>& out);

    /// Appends the rest of the stream in normal form: without white space and comment
    /// lines, lowered outside quotes. False when the stream cannot be read to its
    /// end.
    bool readNormalText(std::istream& stream, std::string& out);

    /// Rewrites the older keywords, lowered, to the current ones. Always true.
    bool upgradeKeywords(std::string& text);

    /// Splits a definition behind its first ")"; the closing keyword and what
    /// follows it are dropped.
    bool splitDefinition(const std::string& definition, std::string& header, std::string& body);

    /// Stores the name and the five argument names of a header. False, with the
    /// record untouched, unless the header falls into its seven pieces.
    bool parseHeader(const std::string& header, mfProfile_c* record);

    /// Reduces a body to one expression and stores it with its tokens.
    bool parseBody(const std::string& body, mfProfile_c* record);

    /// Splits a body into its statements. `variables` gets one entry more than
    /// `values`: the return statement.
    bool splitStatements(const std::string& body, std::vector<std::string>& variables,
                         std::vector<std::string>& values);

    /// Puts each value, in brackets, for its variable in everything behind it, and
    /// answers what is left of the return statement.
    bool expandStatements(const std::vector<std::string>& variables, const std::vector<std::string>& values,
                          std::string& result);

    /// Replaces each occurrence by plain text, from left to right; what was put in is
    /// not looked at again. An empty pattern is nowhere. Always true.
    bool replaceAll(std::string& text, const std::string& pattern, const std::string& replacement);

    /// Splits a text at the delimiters. With `keep` they become pieces of one
    /// character. A text that does not end in a delimiter loses its last
    /// character, and one that does loses that delimiter.
    void splitTokens(const std::string& text, const std::string& delimiters, bool keep,
                     std::vector<std::string>& out);

    /// Takes every white-space character out of `text`.
    void removeWhiteSpace(std::string& text);

    /// The character as it is to be stored: lowered, except between double quotes,
    /// whose state belongs to the process and outlives every text.
    char lowerOutsideQuotes(char character);
};
