// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class mfProfile_c;

/// The reader of profile definitions in the current dialect: the built-in table,
/// files named "SegmentTypes.txt" and the definitions stored in curve documents.
///
/// The object has no state; make one where it is needed. But only one thread at a time
/// may read, because two things outlive a call: whether the text read so far ends
/// between double quotes, and the built-in table, which is normalised in place at its
/// first use.
///
/// Errors: operations return false; an output keeps what was stored in it so far. A
/// definition is refused when its reduction becomes longer than the expression engine
/// allows.
class mfSegmentTypeParser_c {
public:
    /// Appends one new record for each definition of the file to `out`; the caller
    /// owns them. An empty file name means the built-in table. False at the first
    /// definition that does not parse; the records before it stay in `out`.
    bool readProfiles(const std::string& fileName, std::vector<mfProfile_c*>& out);

    /// Fills `record` from one definition in normal form. With `upgradeKeywords`,
    /// first replaces the older keywords in `text`.
    bool parseDefinition(std::string& text, mfProfile_c* record, bool upgradeKeywords);

    /// A display name without its bracketed source and without blanks at its ends.
    std::string baseProfileName(const std::string& displayName);

    /// Replaces `out` by the definitions of a file, each in normal form and including
    /// its closing keyword. False when the file does not open, cannot be read to its
    /// end, or has no definition.
    bool readDefinitions(const std::string& fileName, std::vector<std::string>& out);

    /// Appends the rest of the stream in normal form: without white space and comment
    /// lines, in lower case outside quotes. False when the stream cannot be read to
    /// its end; the state of quotes is then as before.
    bool readNormalText(std::istream& stream, std::string& out);

    /// Replaces the older keywords, in lower case, by the current ones. Always true.
    bool upgradeKeywords(std::string& text);

    /// Splits a definition after its first ")". Drops the closing keyword and the text
    /// after it. False when nothing follows the ")" or there is no ")".
    bool splitDefinition(const std::string& definition, std::string& header, std::string& body);

    /// Stores the name and the five argument names of a header. False, with the record
    /// unchanged, unless the header consists of seven pieces, its keyword first.
    bool parseHeader(const std::string& header, mfProfile_c* record);

    /// Reduces a body to one expression and stores it with its tokens.
    bool parseBody(const std::string& body, mfProfile_c* record);

    /// Splits a body into its statements. `variables` gets one entry more than
    /// `values`: the return statement.
    bool splitStatements(const std::string& body, std::vector<std::string>& variables,
                         std::vector<std::string>& values);

    /// Replaces each variable by its value in brackets in all later values and in the
    /// return statement, and sets `result` to the expression that is returned.
    bool expandStatements(const std::vector<std::string>& variables, const std::vector<std::string>& values,
                          std::string& result);

    /// Replaces each occurrence of `pattern`, from left to right, without searching the
    /// replacements. An empty pattern changes nothing. Always true.
    bool replaceAll(std::string& text, const std::string& pattern, const std::string& replacement);

    /// Splits a text at the delimiters. With `keep`, each delimiter becomes a piece of
    /// one character. A text that does not end in a delimiter loses its last character;
    /// one that does loses that delimiter.
    void splitTokens(const std::string& text, const std::string& delimiters, bool keep,
                     std::vector<std::string>& out);

    /// Removes every white-space character from `text`.
    void removeWhiteSpace(std::string& text);

    /// The character in lower case, or unchanged between double quotes. The state of
    /// quotes belongs to the process and carries over from one text to the next.
    char lowerOutsideQuotes(char character);
};
