// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>

#include "mfcurves/interfaces/CString.h"

namespace mf::documents {

/// The texts that a curve document uses for the numbers of one enumeration.
class TextTable {
public:
    struct Entry {
        int number;
        const wchar_t* text;
    };
    constexpr explicit TextTable(std::span<const Entry> entries) : entries_(entries) {}

    /// The number of a text, matching case; std::nullopt for a text that is not in the
    /// table.
    std::optional<int> numberOf(const CString& text) const;
    /// The text of a number; `otherwise` for a number that is not in the table.
    const wchar_t* textOf(int number, const wchar_t* otherwise) const;
    /// All texts, for messages: `"Motor", "Force" or "Torque"`.
    std::string list() const;

private:
    std::span<const Entry> entries_;
};

extern const TextTable kFunctionTypes;
extern const TextTable kMotionObjectTypes;
extern const TextTable kXYDataTypes;
extern const TextTable kIndependentVariables;  ///< a motion result is written by its name
extern const TextTable kMotorDriveTypes;
extern const TextTable kForceTorqueTypes;
extern const TextTable kInterpolationTypes;

/// The version that this library reads.
constexpr double kReadableVersion = 1.0;

/// The version of written documents: the one that was read last in this process, 1.0
/// before any read.
double writtenVersion();
void setWrittenVersion(double version);

/// The version as it is written in a document.
std::string versionText(double version);

}  // namespace mf::documents
