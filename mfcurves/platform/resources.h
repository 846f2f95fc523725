// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>

#include "mfcurves/platform/mfExport.h"

namespace mf::platform {

/// The strings of one resource library, by number.
///
/// The file is UTF-8 text, with or without a byte order mark. Each line is
/// `number=text`, split at the first `=`; other lines are skipped.
class MFCURVES_API ResourceModule {
public:
    /// A module with these strings, by number.
    explicit ResourceModule(std::map<unsigned, std::wstring> strings) : strings_(std::move(strings)) {}

    /// The string of that number; empty when the module does not have it. The reference is valid as
    /// long as the module exists.
    const std::wstring& string(unsigned number) const;

    /// True when both hold the same strings under the same numbers.
    bool operator==(const ResourceModule& other) const { return strings_ == other.strings_; }

private:
    std::map<unsigned, std::wstring> strings_;
};

constexpr unsigned kTimeName = 1033;
constexpr unsigned kCycleAngleName = 1034;

/// Loads the resource library at `path`; null when it cannot be read. Modules stay
/// loaded until the process ends. Loading an unchanged library again returns the
/// same module.
MFCURVES_API const ResourceModule* loadResourceModule(const wchar_t* path);

/// The module that string look-ups use; may be null. At first this is a built-in
/// one with kTimeName `Time` and kCycleAngleName `CycleAngle`.
MFCURVES_API const ResourceModule* currentResourceModule();

/// Makes `module`, which may be null, the one that look-ups use.
MFCURVES_API void setCurrentResourceModule(const ResourceModule* module);

/// A string of the current module; empty when it is missing or no module is current. The
/// reference is valid as long as that module exists.
MFCURVES_API const std::wstring& resourceString(unsigned number);

}  // namespace mf::platform
