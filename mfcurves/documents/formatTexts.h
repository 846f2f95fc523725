// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>

#include "mfcurves/interfaces/CString.h"

namespace mf::documents {

/// The texts by which a curve document writes the numbers of one enumeration.
class TextTable {
public:
    struct Entry {
        int number;
        const wchar_t* text;
    };
    constexpr explicit TextTable(std::span<const Entry> entries) : entries_(entries) {}

    /// The number of a text, compared with case; nothing for a text that the
    /// table lacks.
    std::optional<int> numberOf(const CString& text) const;
    /// The text of a number; `otherwise` for a number that the table lacks.
    const wchar_t* textOf(int number, const wchar_t* otherwise) const;
    /// All texts, for a reader: `"Motor", "Force" or "Torque"`.
    std::string list() const;

private:
    std::span<const Entry> entries_;
};

extern const TextTable kFunctionTypes;
extern const TextTable kMotionObjectTypes;
extern const TextTable kXYDataTypes;
extern const TextTable kIndependentVariables;  ///< a motion result bears its own name instead
extern const TextTable kMotorDriveTypes;
extern const TextTable kForceTorqueTypes;
extern const TextTable kInterpolationTypes;

/// The version that this library reads.
constexpr double kReadableVersion = 1.0;

/// The version that written documents carry: the one that was read last in this
/// process, 1.0 before any.
double writtenVersion();
void setWrittenVersion(double version);

/// The version as a document has it.
std::string versionText(double version);

}  // namespace mf::documents
